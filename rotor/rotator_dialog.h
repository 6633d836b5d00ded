#pragma once

#include "form/dialogs.h"
#include "rotor/rotor.h"

namespace rotor {

/// The dialog for the rotator's ranges, its parking place, and when it parks.
class RotatorDialog {
  public:
    RotatorDialog(form::FrmRotator& dialog, Rotor& rotor, platform::Settings& file);

    void Form_Load();
    void cmdSaveRotator_Click();

  private:
    form::FrmRotator& dialog_;
    Rotor& rotor_;
    platform::Settings& file_;
};

} // namespace rotor
