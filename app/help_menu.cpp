#include "app/help_menu.h"

#include "app/version.h"
#include "form/dialogs.h"
#include "runtime/errors.h"

namespace app {

namespace {

constexpr const char* kHelpPage = "help.html";
constexpr const char* kMailAddress = ""; // the user chooses whom to write to

std::string version() {
    return "Version " + std::string(kVersion);
}

} // namespace

HelpMenu::HelpMenu(form::Form1& form, form::Boxes& boxes, platform::Shell& shell)
    : form_(form), boxes_(boxes), shell_(shell) {
    form_.mnuHelp.Click.attach([this] { mnuHelp_Click(); });
    form_.mnuMail.Click.attach([this] { mnuMail_Click(); });
    form_.mnuSplash.Click.attach([this] { mnuSplash_Click(); });
}

void HelpMenu::mnuHelp_Click() {
    try {
        shell_.openPage(kHelpPage);
    } catch (const runtime::ObjectError& error) {
        // No reason to stop the engines.
        boxes_.critical(error.what(), "Error!");
    }
}

void HelpMenu::mnuMail_Click() {
    try {
        shell_.startMail(kMailAddress, "Twinstep " + version());
    } catch (const runtime::ObjectError& error) {
        boxes_.critical(error.what(), "Error!");
    }
}

void HelpMenu::mnuSplash_Click() {
    form::FrmAbout about;
    about.onError = form_.onError;
    about.lblVersion.Caption = version();
    about.cmdOK.Click.attach([&about] { about.unload(); });
    boxes_.showModal(about);
}

} // namespace app
