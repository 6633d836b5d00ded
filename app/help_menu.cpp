#include "app/help_menu.h"

#include "app/version.h"
#include "form/dialogs.h"

namespace app {

namespace {

constexpr const char* kHelpPage = "help.html";
constexpr const char* kMailAddress = ""; // empty: the user enters the recipient

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
    shell_.openPage(kHelpPage, [this](const std::string& why) { tell(why); });
}

void HelpMenu::mnuMail_Click() {
    shell_.startMail(kMailAddress, "Twinstep " + version(), [this](const std::string& why) { tell(why); });
}

void HelpMenu::tell(const std::string& why) {
    // Reported here and not by the error boundary, so that the engines run on.
    form_.guard([&] { boxes_.critical(why, "Error!"); });
}

void HelpMenu::mnuSplash_Click() {
    form::FrmAbout about;
    about.onError = form_.onError;
    about.lblVersion.Caption = version();
    about.cmdOK.Click.attach([&about] { about.unload(); });
    boxes_.showModal(about);
}

} // namespace app
