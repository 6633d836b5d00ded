#pragma once

#include "config/output_choice.h"
#include "engine/coil_check.h"
#include "form/boxes.h"
#include "form/dialogs.h"
#include "form/form1.h"
#include "platform/hardware.h"

#include <functional>
#include <string>
#include <vector>

namespace config {

/// Asks the user, once for each device, before an Arduino gets "low". True if the settings need no question,
/// or the user agrees.
bool agreesToLow(const platform::HardwareSettings& settings, platform::Hardware& hardware,
                 form::Boxes& boxes);

/// The dialog for the outputs, the USB board, and the addresses of the links, with a test of the coils. A
/// test switches to the chosen devices at once; Cancel switches back.
class HardwareAndLinks {
  public:
    HardwareAndLinks(form::Form1& main, form::FrmHardware& dialog, form::Boxes& boxes,
                     engine::OutputPorts& outputs, platform::Hardware& hardware);

    void Form_Load();
    void cmdSaveHardware_Click();
    void cmdExitHardware_Click();
    /// Starts the test of engine 1 or 2; pressing the button again ends the test.
    void cmdTest_Click(int motor);
    /// Shows the state of the link to the bridge.
    void tmrBridge_Timer();

    /// Called when other devices or links are in use.
    std::function<void()> onChange;

    /// The entries of the list of boards.
    static std::vector<std::string> boardList();

  private:
    platform::HardwareSettings chosen() const;
    /// Switches to what the dialog shows, if the user agrees to it; as change.
    bool useChosen();
    /// Switches to `settings`. If they are refused, shows the reason in a box and returns false.
    bool change(const platform::HardwareSettings& settings);
    /// Tries a failed port again. If the port is refused, shows the reason in a box and returns false.
    /// Precondition: no engine is running.
    bool portIsOpen();
    bool openBoard();
    void closeBoard();
    void showCoil(int coil);
    bool refuse(const std::string& why);

    form::Form1& main_;
    form::FrmHardware& dialog_;
    form::Boxes& boxes_;
    engine::OutputPorts& outputs_;
    platform::Hardware& hardware_;
    OutputChoice choice_;
    engine::CoilCheck test_;
    const platform::HardwareSettings before_;
    form::Button* tested_ = nullptr;
    bool boardOpened_ = false; // opened only for the test
};

} // namespace config
