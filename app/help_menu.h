#pragma once

#include "form/boxes.h"
#include "form/form1.h"
#include "platform/shell.h"

namespace app {

/// The help page, the mail, and the about box.
class HelpMenu {
  public:
    HelpMenu(form::Form1& form, form::Boxes& boxes, platform::Shell& shell);

    void mnuHelp_Click();
    void mnuMail_Click();
    void mnuSplash_Click();

  private:
    void tell(const std::string& why);

    form::Form1& form_;
    form::Boxes& boxes_;
    platform::Shell& shell_;
};

} // namespace app
