#include "platform/devices/chosen_hardware.h"

#include "config/hardware_settings.h"
#include "platform/simulated/outputs.h"
#include "runtime/errors.h"

#include <algorithm>
#include <filesystem>

namespace devices {

using platform::HardwareSettings;

namespace {

constexpr const char* kSection = "hardware"; // of the settings
constexpr const char* kLowAllowed = "low-allowed";
constexpr const char* kNotAgreed = "confirm Low in Hardware and links";

} // namespace

bridge_ports::Address bridgeAddress(const HardwareSettings& settings) {
    const auto endpoint = config::parseEndpoint(settings.bridge, bridge::kPort);
    if (!endpoint) throw runtime::ObjectError("\"" + settings.bridge + "\" is no address of a bridge");
    return {endpoint->host, endpoint->port};
}

/// The USB board in use.
class ChosenHardware::Board : public platform::UsbBoard {
  public:
    explicit Board(Devices& devices) : devices_(devices) {}

    /// `setting` is as in platform::HardwareSettings. Precondition: the previous board is closed.
    void choose(const std::string& setting) {
        if (const auto card = config::cardAddress(setting)) {
            behind_ = devices_.makeBoard(*card);
        } else {
            behind_ = std::make_unique<simulated::UsbBoard>(setting == config::kSimulated ? 0 : -1);
        }
    }

    int openDevice(int address) override { return behind_->openDevice(address); }
    std::string refusal() const override { return behind_->refusal(); }
    void writeAllDigital(int outputs) override { behind_->writeAllDigital(outputs); }
    bool taken(int mask) override { return behind_->taken(mask); }
    void closeDevice() override { behind_->closeDevice(); }

  private:
    Devices& devices_;
    std::unique_ptr<platform::UsbBoard> behind_;
};

ChosenHardware::ChosenHardware(Devices& devices, Texts given, qt_ports::SettingsFile file)
    : devices_(devices), given_(std::move(given)), file_(std::move(file)), port_(devices),
      board_(std::make_unique<Board>(devices)) {
    readFile();
    for (const config::HardwareField& field : config::kHardwareFields) {
        if (const auto text = given_.find(field.name); text != given_.end())
            settings_.*field.value = text->second;
    }
    // Two settings may be valid, but not go together.
    if (const auto fault = config::faultOf(settings_)) {
        if (isFixed(&HardwareSettings::rotctld)) throw runtime::ObjectError("--" + *fault);
        notice_ += std::string(kSettingsFile) + ": " + *fault + ". Nobody can turn the antenna from there.\n";
        settings_.rotctld = config::kOff;
    }
    // Gives each card only one spelling.
    if (const auto card = config::cardAddress(settings_.usb))
        settings_.usb = "k8055:" + std::to_string(*card);
    board_->choose(settings_.usb);
    const bool isAutomatic = settings_.port == config::kAutomatic;
    const bool mustOpen = isFixed(&HardwareSettings::port) && !isAutomatic;
    try {
        mustOpen ? open(settings_) : openOrStandIn(settings_);
    } catch (const runtime::ObjectError& error) {
        if (mustOpen) throw;
        notice_ += std::string(error.what()) + ".\n";
        if (isAutomatic) port_.open(HardwareSettings{.port = config::kSimulated});
    }
}

ChosenHardware::~ChosenHardware() = default;

void ChosenHardware::readFile() {
    Texts texts;
    try {
        texts = file_.read(kSection);
    } catch (const runtime::FileError& error) {
        notice_ += std::string(error.what()) + ". Twinstep uses its default devices and links.\n";
    }
    lowAllowed_ = texts[kLowAllowed];
    for (const config::HardwareField& field : config::kHardwareFields) {
        const auto text = texts.find(field.name);
        if (text == texts.end()) continue;
        if (const auto fault = field.fault(text->second)) {
            notice_ += std::string(kSettingsFile) + ": " + field.name + ": " + *fault +
                       ". Twinstep uses its default, \"" + settings_.*field.value + "\".\n";
        } else {
            settings_.*field.value = text->second;
        }
    }
}

platform::PrinterPort& ChosenHardware::printer() {
    return port_;
}

platform::UsbBoard& ChosenHardware::board() {
    return *board_;
}

bool ChosenHardware::isFixed(std::string HardwareSettings::*setting) const {
    return std::ranges::any_of(config::kHardwareFields, [&](const config::HardwareField& field) {
        return field.value == setting && given_.contains(field.name);
    });
}

bool ChosenHardware::choosesBridge() const {
    return isFixed(&HardwareSettings::bridge) || settings_.bridge != HardwareSettings().bridge;
}

bool ChosenHardware::portWorks() const {
    return port_.works();
}

void ChosenHardware::openPortAnew() {
    openOrStandIn(settings_);
}

void ChosenHardware::open(const HardwareSettings& settings) {
    if (config::mustAskForLow(settings, lowAllowed_)) {
        port_.standIn(settings, kNotAgreed);
    } else {
        port_.open(settings);
    }
}

void ChosenHardware::openOrStandIn(const HardwareSettings& settings) {
    try {
        open(settings);
    } catch (const runtime::ObjectError& error) {
        const std::string what = error.what();
        throw runtime::ObjectError(what + ". " + port_.standIn(settings, what));
    }
}

void ChosenHardware::use(const HardwareSettings& settings) {
    if (settings.port != settings_.port || settings.coilsOn != settings_.coilsOn) {
        // Close the old port before opening the new port: both names may stand for the same port, which can
        // be open only once.
        try {
            open(settings);
        } catch (const runtime::ObjectError& error) {
            try {
                openOrStandIn(settings_);
            } catch (const runtime::ObjectError& back) {
                throw runtime::ObjectError(std::string(error.what()) + ". " + back.what());
            }
            throw;
        }
    }
    if (settings.usb != settings_.usb) board_->choose(settings.usb);
    settings_ = settings;
    if (onUse) onUse(settings_);
}

void ChosenHardware::keep() {
    Texts texts;
    for (const config::HardwareField& field : config::kHardwareFields) {
        if (!isFixed(field.value)) texts[field.name] = settings_.*field.value;
    }
    file_.write({{kSection, texts}});
}

void ChosenHardware::allowLow(const std::string& device) {
    lowAllowed_ = device;
    try {
        file_.write({{kSection, {{kLowAllowed, device}}}});
    } catch (const runtime::FileError&) { // the next start asks again
    }
}

void ChosenHardware::lookAtPort() {
    if (!config::mustAskForLow(settings_, lowAllowed_)) port_.look(settings_);
}

std::vector<platform::OutputDevice> ChosenHardware::outputDevices() const {
    return devices_.outputDevices();
}

std::vector<platform::GpioLine> ChosenHardware::gpioLines(const std::string& chip) const {
    return devices_.gpioLines(chip);
}

std::string ChosenHardware::outputsName() const {
    return config::mustAskForLow(settings_, lowAllowed_) ? "Arduino is not used" : port_.name();
}

} // namespace devices
