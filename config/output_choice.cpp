#include "config/output_choice.h"

#include "config/hardware_settings.h"

#include <algorithm>
#include <array>

namespace config {

using platform::HardwareSettings;
using platform::OutputDevice;

namespace {

constexpr const char* kIoAddress = "0x";         // stands for a port whose address the user enters
constexpr const char* kUsualIoAddress = "0x378"; // the first printer port of a PC
/// In the order of the dialog's list.
constexpr std::array<const char*, 3> kLevels = {kAutomatic, kLow, kHigh};

/// Without the text that the user enters beside it.
std::string deviceOf(const std::string& port) {
    if (ioAddress(port)) return kIoAddress;
    if (const auto board = serialBoard(port)) return port.substr(0, port.find(':') + 1) + board->device;
    if (const auto lines = gpioLines(port)) return port.substr(0, port.find(':') + 1) + lines->chip;
    return port;
}

/// A line that is our own now can be had.
bool isTaken(const platform::GpioLine& line) {
    return !line.user.empty() && line.user != "twinstep";
}

std::string nameOf(const std::vector<platform::GpioLine>& lines, std::size_t number) {
    return lines[number].name.empty() ? std::to_string(number) : lines[number].name;
}

std::vector<OutputDevice> entries(const platform::Hardware& hardware) {
    std::vector<OutputDevice> all = {{kAutomatic, "Automatic"}, {kSimulated, "Simulated"}};
    for (const OutputDevice& device : hardware.outputDevices())
        all.push_back(device);
    const std::string used = deviceOf(hardware.settings().port);
    if (used != kIoAddress && std::ranges::find(all, used, &OutputDevice::port) == all.end()) {
        const auto board = serialBoard(used);
        const auto lines = gpioLines(used);
        all.push_back({used, board   ? "Arduino at " + board->device
                             : lines ? "Pins of " + lines->chip
                                     : used});
    }
    all.push_back({kIoAddress, "I/O address"});
    return all;
}

} // namespace

OutputChoice::OutputChoice(form::FrmHardware& dialog, const platform::Hardware& hardware)
    : dialog_(dialog), hardware_(hardware), devices_(entries(hardware)) {
    dialog_.cmbPort.Click.attach([this] { chosePort(); });
    dialog_.cmbCoilsOn.Click.attach([this] { showRemark(); });
    dialog_.txtPortAddress.Change.attach([this] { showRemark(); });
}

std::vector<std::string> OutputChoice::list(const platform::Hardware& hardware) {
    std::vector<std::string> names;
    for (const OutputDevice& entry : entries(hardware))
        names.push_back(entry.name);
    return names;
}

void OutputChoice::load(const HardwareSettings& settings) {
    const std::string device = deviceOf(settings.port);
    dialog_.cmbPort.ListIndex =
        static_cast<int>(std::ranges::find(devices_, device, &OutputDevice::port) - devices_.begin());
    dialog_.cmbCoilsOn.ListIndex =
        static_cast<int>(std::ranges::find(kLevels, settings.coilsOn) - kLevels.begin());
    dialog_.cmbPort.Enabled = !hardware_.isFixed(&HardwareSettings::port);
    dialog_.cmbCoilsOn.Enabled = !hardware_.isFixed(&HardwareSettings::coilsOn);
    chosePort();
    if (beside_ == Beside::kAddress) dialog_.txtPortAddress.Text = settings.port;
    if (settings.port.size() > device.size() && beside_ > Beside::kAddress)
        dialog_.txtPortAddress.Text = settings.port.substr(device.size() + 1);
    showRemark();
}

void OutputChoice::take(HardwareSettings& settings) const {
    if (!hardware_.isFixed(&HardwareSettings::coilsOn))
        settings.coilsOn = kLevels.at(static_cast<std::size_t>(dialog_.cmbCoilsOn.ListIndex.get()));
    if (hardware_.isFixed(&HardwareSettings::port)) return;
    const std::string beside = dialog_.txtPortAddress.Text;
    settings.port = chosenPort();
    if (beside_ == Beside::kAddress) settings.port = beside;
    if (beside_ > Beside::kAddress) settings.port += ":" + beside;
}

OutputChoice::Beside OutputChoice::besideOf(const std::string& port) {
    if (port == kIoAddress) return Beside::kAddress;
    if (serialBoard(port)) return Beside::kPins;
    return gpioLines(port) ? Beside::kLines : Beside::kNothing;
}

const std::string& OutputChoice::chosenPort() const {
    return devices_.at(static_cast<std::size_t>(dialog_.cmbPort.ListIndex.get())).port;
}

void OutputChoice::chosePort() {
    const Beside before = beside_;
    beside_ = besideOf(chosenPort());
    dialog_.txtPortAddress.Enabled = dialog_.cmbPort.Enabled && beside_ != Beside::kNothing;
    if (beside_ != before) {
        const std::array<const char*, 4> usual = {"", kUsualIoAddress, kUsualPins, kUsualLines};
        dialog_.txtPortAddress.Text = usual.at(static_cast<std::size_t>(beside_));
    }
    listLines();
    showRemark();
}

void OutputChoice::showRemark() {
    HardwareSettings settings = hardware_.settings();
    take(settings);
    Remark remark;
    if (beside_ == Beside::kPins && coilsOnHigh(settings)) {
        remark.text = "Pins of coils 1 to 8. The board needs up to 10 s to start";
    } else if (beside_ == Beside::kPins) {
        remark = {"Low: all coils are on while Twinstep is not connected", true};
    } else if (beside_ == Beside::kLines) {
        remark = remarkOnLines(settings);
    }
    dialog_.lblOutputs.Caption = remark.text;
    dialog_.lblOutputs.ToolTip = remark.text;
    dialog_.lblOutputs.ForeColor = remark.isWarning ? form::kRed : form::kWindowText;
}

OutputChoice::Remark OutputChoice::remarkOnLines(const HardwareSettings& settings) {
    const auto chosen = gpioLines(settings.port);
    if (!chosen) return {std::string("Eight different lines, such as ") + kUsualLines, true};
    const std::vector<platform::GpioLine> all = hardware_.gpioLines(chosen->chip);
    if (all.empty()) return {}; // opening it will say why
    std::string names, taken, hot;
    bool isKnown = true; // the level while no program uses the lines
    for (const int line : chosen->lines) {
        const auto number = static_cast<std::size_t>(line);
        if (number >= all.size()) return {"There is no line " + std::to_string(line), true};
        const std::string name = nameOf(all, number);
        names += (names.empty() ? "" : ", ") + name;
        if (isTaken(all[number])) taken += " " + name + " (" + all[number].user + ")";
        if (all[number].atBoot == coilsOnHigh(settings)) hot += " " + name;
        isKnown &= all[number].atBoot.has_value();
    }
    if (!taken.empty()) return {"Taken:" + taken, true};
    if (!hot.empty()) return {"Coils on while Twinstep does not run:" + hot, true};
    return {(isKnown ? "Lines " : "Measure their level at boot: ") + names, false};
}

void OutputChoice::listLines() {
    std::string list;
    if (const auto lines = gpioLines(chosenPort())) {
        const auto all = hardware_.gpioLines(lines->chip);
        for (std::size_t number = 0; number < all.size(); ++number) {
            const std::string user = isTaken(all[number]) ? " (taken by " + all[number].user + ")" : "";
            list += (list.empty() ? "" : ", ") + std::to_string(number) + " " + all[number].name + user;
        }
    }
    dialog_.txtPortAddress.ToolTip = list;
}

} // namespace config
