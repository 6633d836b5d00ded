#pragma once

#include "form/dialogs.h"
#include "platform/hardware.h"

#include <string>
#include <vector>

namespace config {

/// The part of the dialog "Hardware and links" that chooses the outputs: the device, its pins or lines, and
/// the level that energises a coil.
class OutputChoice {
  public:
    OutputChoice(form::FrmHardware& dialog, const platform::Hardware& hardware);

    /// The names of the devices of this computer, and the chosen one.
    static std::vector<std::string> list(const platform::Hardware& hardware);
    void load(const platform::HardwareSettings& settings);
    /// Puts what is chosen into the settings, except what the command line has fixed.
    void take(platform::HardwareSettings& settings) const;

  private:
    /// What the text beside the device says.
    enum class Beside { kNothing, kAddress, kPins, kLines };
    static Beside besideOf(const std::string& port);
    struct Remark {
        std::string text;
        bool isWarning = false;
    };

    const std::string& chosenPort() const;
    void chosePort();
    void showRemark();
    Remark remarkOnLines(const platform::HardwareSettings& settings);
    /// Names all lines of the chosen chip in the tip of the text.
    void listLines();

    form::FrmHardware& dialog_;
    const platform::Hardware& hardware_;
    const std::vector<platform::OutputDevice> devices_; // the entries of the list
    Beside beside_ = Beside::kNothing;
};

} // namespace config
