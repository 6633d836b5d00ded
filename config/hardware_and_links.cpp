#include "config/hardware_and_links.h"

#include "config/hardware_settings.h"
#include "runtime/errors.h"

#include <algorithm>
#include <utility>

namespace config {

using platform::HardwareSettings;

namespace {

constexpr const char* kStopFirst = "Stop the engines first.";
constexpr const char* kHotAlone =
    "An Arduino sets all its pins to 0 when it gets power and after each reset. With Low a 0 energises a "
    "coil: all eight coils are on, and the motors get hot, whenever the Arduino has power and Twinstep is "
    "not connected. Use Low on this Arduino all the same?";

/// A setting's text and the entry that a list shows for it.
struct Entry {
    const char* shown;
    const char* setting;
};

constexpr std::array kBoardEntries = {Entry{"None", kNone},
                                      Entry{"K8055, card 0", "k8055:0"},
                                      Entry{"K8055, card 1", "k8055:1"},
                                      Entry{"K8055, card 2", "k8055:2"},
                                      Entry{"K8055, card 3", "k8055:3"},
                                      Entry{"Simulated", kSimulated}};

struct Link {
    form::TextBox form::FrmHardware::*box;
    std::string HardwareSettings::*setting;
};

constexpr std::array kLinks = {
    Link{&form::FrmHardware::txtN1mmListen, &HardwareSettings::n1mmListen},
    Link{&form::FrmHardware::txtTrackingServer, &HardwareSettings::trackingServer},
    Link{&form::FrmHardware::txtBridge, &HardwareSettings::bridge},
    Link{&form::FrmHardware::txtRotctld, &HardwareSettings::rotctld},
    Link{&form::FrmHardware::txtRotctldAllow, &HardwareSettings::rotctldAllow},
};

void choose(form::ComboBox& box, const std::string& entry) {
    const auto found = std::ranges::find(box.List, entry);
    box.ListIndex = found == box.List.end() ? 0 : static_cast<int>(found - box.List.begin());
}

const std::string& chosenEntry(const form::ComboBox& box) {
    return box.List.at(static_cast<std::size_t>(box.ListIndex.get()));
}

template <std::size_t kCount>
std::string settingOf(const std::array<Entry, kCount>& entries, const std::string& shown) {
    const auto* const found = std::ranges::find(entries, shown, &Entry::shown);
    return found == entries.end() ? shown : found->setting;
}

template <std::size_t kCount>
std::string shownFor(const std::array<Entry, kCount>& entries, const std::string& setting) {
    const auto* const found = std::ranges::find(entries, setting, &Entry::setting);
    return found == entries.end() ? setting : found->shown;
}

template <std::size_t kCount>
std::vector<std::string> shownEntries(const std::array<Entry, kCount>& entries) {
    std::vector<std::string> list(kCount);
    std::ranges::transform(entries, list.begin(), &Entry::shown);
    return list;
}

} // namespace

bool agreesToLow(const HardwareSettings& settings, platform::Hardware& hardware, form::Boxes& boxes) {
    if (!mustAskForLow(settings, hardware.lowAllowed())) return true;
    if (!boxes.confirm(kHotAlone, "Hardware and Links")) return false;
    hardware.allowLow(hotAlone(settings));
    return true;
}

std::vector<std::string> HardwareAndLinks::boardList() {
    return shownEntries(kBoardEntries);
}

HardwareAndLinks::HardwareAndLinks(form::Form1& main, form::FrmHardware& dialog, form::Boxes& boxes,
                                   engine::OutputPorts& outputs, platform::Hardware& hardware)
    : main_(main), dialog_(dialog), boxes_(boxes), outputs_(outputs), hardware_(hardware),
      choice_(dialog, hardware), test_(main, outputs, dialog.tmrCoilTest), before_(hardware.settings()) {
    test_.onCoil = [this](int coil) { showCoil(coil); };
    test_.onWait = [this](const std::string& why) {
        dialog_.lblTest.Caption = "Waits for the Arduino";
        dialog_.lblTest.ToolTip = why;
    };
    dialog_.tmrBridge.Tick.attach([this] { tmrBridge_Timer(); });
    dialog_.cmdTestA.Click.attach([this] { cmdTest_Click(1); });
    dialog_.cmdTestB.Click.attach([this] { cmdTest_Click(2); });
    dialog_.cmdSaveHardware.Click.attach([this] { cmdSaveHardware_Click(); });
    dialog_.cmdExitHardware.Click.attach([this] { cmdExitHardware_Click(); });
    dialog_.onCancel = [this] { cmdExitHardware_Click(); };
}

void HardwareAndLinks::Form_Load() {
    choice_.load(before_);
    const auto card = cardAddress(before_.usb);
    choose(dialog_.cmbUsb, shownFor(kBoardEntries, card ? "k8055:" + std::to_string(*card) : before_.usb));
    dialog_.cmbUsb.Enabled = !hardware_.isFixed(&HardwareSettings::usb);
    for (const Link& link : kLinks) {
        (dialog_.*link.box).Text = before_.*link.setting;
        (dialog_.*link.box).Enabled = !hardware_.isFixed(link.setting);
    }
    dialog_.lblFixed.Visible =
        !dialog_.cmbPort.Enabled || !dialog_.cmbCoilsOn.Enabled || !dialog_.cmbUsb.Enabled ||
        std::ranges::any_of(kLinks, [this](const Link& link) { return hardware_.isFixed(link.setting); });
    tmrBridge_Timer();
    dialog_.tmrBridge.Enabled = true;
}

void HardwareAndLinks::tmrBridge_Timer() {
    dialog_.lblBridge.Caption = hardware_.bridgeStateText();
}

HardwareSettings HardwareAndLinks::chosen() const {
    // A setting fixed by the command line keeps its text; the dialog may show it in other words.
    HardwareSettings settings = before_;
    const auto take = [&](std::string HardwareSettings::*setting, const std::string& text) {
        if (!hardware_.isFixed(setting)) settings.*setting = text;
    };
    choice_.take(settings);
    take(&HardwareSettings::usb, settingOf(kBoardEntries, chosenEntry(dialog_.cmbUsb)));
    for (const Link& link : kLinks)
        take(link.setting, (dialog_.*link.box).Text);
    return settings;
}

bool HardwareAndLinks::refuse(const std::string& why) {
    boxes_.critical(why, dialog_.Caption);
    return false;
}

bool HardwareAndLinks::useChosen() {
    const HardwareSettings settings = chosen();
    return agreesToLow(settings, hardware_, boxes_) && change(settings);
}

bool HardwareAndLinks::change(const HardwareSettings& settings) {
    if (const auto fault = faultOf(settings)) return refuse(*fault);
    const HardwareSettings used = hardware_.settings();
    if (settings == used) return true;
    const bool otherOutputs =
        settings.port != used.port || settings.coilsOn != used.coilsOn || settings.usb != used.usb;
    if (otherOutputs) {
        if (engine::Sides(main_).anyRunning()) return refuse(kStopFirst);
        if (settings.usb != used.usb && main_.chkUsbOn.ticked()) main_.chkUsbOn.Value = 0;
        const bool worked = hardware_.portWorks();
        if (!outputs_.offWithoutFail() && worked) boxes_.critical(engine::kOutputsStillOn, dialog_.Caption);
    }
    try {
        hardware_.use(settings);
    } catch (const runtime::ObjectError& error) {
        if (onChange) onChange(); // the previous port may be lost as well
        return refuse(error.what());
    }
    if (otherOutputs) outputs_.writePortOff();
    if (onChange) onChange();
    return true;
}

bool HardwareAndLinks::portIsOpen() {
    if (hardware_.portWorks()) return true;
    try {
        hardware_.openPortAnew();
    } catch (const runtime::ObjectError& error) {
        if (onChange) onChange();
        return refuse(error.what());
    }
    outputs_.writePortOff();
    if (onChange) onChange();
    return true;
}

void HardwareAndLinks::cmdTest_Click(int motor) {
    form::Button& button = motor == 1 ? dialog_.cmdTestA : dialog_.cmdTestB;
    const bool again = tested_ == &button;
    test_.stop();
    if (again || !useChosen()) return;
    if (engine::Sides(main_).anyRunning()) {
        refuse(kStopFirst);
        return;
    }
    if (!portIsOpen() || !openBoard()) return;
    tested_ = &button;
    button.Caption = "Stop";
    test_.start(motor);
}

/// The test uses the chosen board even if the user has not ticked the USB box.
bool HardwareAndLinks::openBoard() {
    if (hardware_.settings().usb == kNone || main_.chkUsbOn.ticked()) return true;
    main_.chkUsbOn.Value = 1;
    if (!main_.chkUsbOn.ticked()) return false; // a box has given the reason
    boardOpened_ = true;
    if (main_.bolUsbOn) return true;
    const std::string why = main_.lblUsb.Caption;
    closeBoard();
    return refuse(why);
}

void HardwareAndLinks::closeBoard() {
    if (std::exchange(boardOpened_, false) && main_.chkUsbOn.ticked()) main_.chkUsbOn.Value = 0;
}

void HardwareAndLinks::showCoil(int coil) {
    dialog_.lblTest.ToolTip = "";
    if (coil == 0) {
        dialog_.cmdTestA.Caption = form::FrmHardware::kTestA;
        dialog_.cmdTestB.Caption = form::FrmHardware::kTestB;
        dialog_.lblTest.Caption = "";
        tested_ = nullptr;
        closeBoard();
        return;
    }
    const std::string engine =
        tested_ == &dialog_.cmdTestA ? main_.lblEngineA.Caption : main_.lblEngineB.Caption;
    dialog_.lblTest.Caption = engine + ": coil " + std::to_string(coil);
}

void HardwareAndLinks::cmdSaveHardware_Click() {
    test_.stop();
    if (!useChosen()) return;
    // If the port is refused, a box reports it, and the settings are still saved.
    if (!engine::Sides(main_).anyRunning()) portIsOpen();
    try {
        hardware_.keep();
    } catch (const runtime::FileError& error) {
        refuse(error.what());
        return;
    }
    dialog_.unload();
}

void HardwareAndLinks::cmdExitHardware_Click() {
    test_.stop();
    if (hardware_.settings() != before_) change(before_);
    dialog_.unload();
}

} // namespace config
