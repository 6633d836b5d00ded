#include "platform/linux/chosen_hardware.h"

#include "config/hardware_settings.h"
#include "platform/hid/k8055.h"
#include "platform/linux/direct_port.h"
#include "platform/linux/printer_port.h"
#include "platform/simulated/outputs.h"
#include "runtime/errors.h"

#include <algorithm>
#include <filesystem>

namespace linux_ports {

using platform::HardwareSettings;

namespace {

constexpr const char* kUsualPort = "/dev/parport0";
constexpr const char* kSection = "hardware"; // of the settings

} // namespace

/// The printer port in use and the name of its device.
class ChosenHardware::Port : public platform::PrinterPort {
  public:
    explicit Port(ChosenHardware& owner) : owner_(owner) {}
    Port(const Port&) = delete;
    Port& operator=(const Port&) = delete;
    ~Port() override { close(); }

    /// `setting` is as in platform::HardwareSettings. Throws runtime::ObjectError; then no port is open.
    void open(const std::string& setting) {
        close();
        if (setting == config::kSimulated) {
            behind_ = std::make_unique<simulated::PrinterPort>();
        } else if (setting == config::kAutomatic) {
            return open(std::filesystem::exists(kUsualPort) ? kUsualPort : config::kSimulated);
        } else if (const auto address = config::ioAddress(setting)) {
            auto port = std::make_unique<DirectPort>(*address);
            owner_.watchdog().guardPortAddress(*address);
            hold(std::move(port));
        } else {
            auto port = std::make_unique<linux_ports::PrinterPort>(setting);
            owner_.watchdog().guardPort(port->descriptor());
            hold(std::move(port));
        }
        name_ = setting;
        works_ = true;
    }
    /// Uses a simulated port instead of a refused port.
    void simulate() {
        open(config::kSimulated);
        works_ = false;
    }

    const std::string& name() const { return name_; }
    bool works() const { return works_; }

    void clearBit(int bit) override {
        write([&] { behind_->clearBit(bit); });
    }
    void setBit(int bit) override {
        write([&] { behind_->setBit(bit); });
    }
    void endPattern() override {
        write([&] { behind_->endPattern(); });
    }
    bool taken(int mask) override { return behind_->taken(mask); }

  private:
    template <class Access>
    void write(const Access& access) {
        const bool worked = std::exchange(works_, false);
        access();
        works_ = worked;
    }

    void hold(std::unique_ptr<platform::PrinterPort> port) {
        behind_ = std::move(port);
        guarded_ = true;
    }

    void close() {
        if (std::exchange(guarded_, false)) owner_.watchdog_->forgetPort();
        behind_.reset();
    }

    ChosenHardware& owner_;
    std::unique_ptr<platform::PrinterPort> behind_;
    std::string name_;
    bool guarded_ = false;
    bool works_ = false; // open, and nothing has failed
};

/// The USB board in use.
class ChosenHardware::Board : public platform::UsbBoard {
  public:
    explicit Board(ChosenHardware& owner) : owner_(owner) {}

    /// `setting` is as in platform::HardwareSettings. Precondition: the previous board is closed.
    void choose(const std::string& setting) {
        if (const auto card = config::cardAddress(setting)) {
            behind_ = std::make_unique<hid_ports::K8055>(
                *card,
                hid_ports::K8055::Observer{
                    .opened = [this](const std::string& device) { owner_.watchdog().guardBoard(device); },
                    .closed =
                        [this] {
                            if (owner_.watchdog_) owner_.watchdog_->forgetBoard();
                        }});
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
    ChosenHardware& owner_;
    std::unique_ptr<platform::UsbBoard> behind_;
};

ChosenHardware::ChosenHardware(Texts given, qt_ports::SettingsFile file)
    : given_(std::move(given)), file_(std::move(file)), port_(std::make_unique<Port>(*this)),
      board_(std::make_unique<Board>(*this)) {
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
    try {
        port_->open(settings_.port);
    } catch (const runtime::ObjectError& error) {
        if (settings_.port == config::kAutomatic) {
            port_->open(config::kSimulated); // "auto" falls back to the simulated port
        } else {
            if (isFixed(&HardwareSettings::port)) throw;
            port_->simulate();
        }
        notice_ += std::string(error.what()) + ". The outputs are simulated.\n";
    }
}

ChosenHardware::~ChosenHardware() = default;

void ChosenHardware::readFile() {
    Texts texts;
    try {
        texts = file_.read(kSection);
    } catch (const runtime::FileError& error) {
        notice_ += std::string(error.what()) + ". The usual devices and links are used.\n";
    }
    for (const config::HardwareField& field : config::kHardwareFields) {
        const auto text = texts.find(field.name);
        if (text == texts.end()) continue;
        if (const auto fault = field.fault(text->second)) {
            notice_ +=
                std::string(kSettingsFile) + ": " + field.name + ": " + *fault + ". The usual one is used.\n";
        } else {
            settings_.*field.value = text->second;
        }
    }
}

platform::PrinterPort& ChosenHardware::printer() {
    return *port_;
}

platform::UsbBoard& ChosenHardware::board() {
    return *board_;
}

bool ChosenHardware::isFixed(std::string HardwareSettings::*setting) const {
    return std::ranges::any_of(config::kHardwareFields, [&](const config::HardwareField& field) {
        return field.value == setting && given_.contains(field.name);
    });
}

bool ChosenHardware::portWorks() const {
    return port_->works();
}

void ChosenHardware::openPortAnew() {
    openOrSimulate(settings_.port);
}

void ChosenHardware::openOrSimulate(const std::string& setting) {
    try {
        port_->open(setting);
    } catch (const runtime::ObjectError& error) {
        port_->simulate();
        throw runtime::ObjectError(std::string(error.what()) + ". The outputs are simulated");
    }
}

void ChosenHardware::use(const HardwareSettings& settings) {
    if (settings.port != settings_.port) {
        // Close the old port before opening the new port: both names may stand for the same port, which can
        // be open only once.
        try {
            port_->open(settings.port);
        } catch (const runtime::ObjectError& error) {
            try {
                openOrSimulate(settings_.port);
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

std::vector<std::string> ChosenHardware::printerPorts() const {
    std::vector<std::string> devices;
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator("/dev", error)) {
        if (entry.path().filename().string().starts_with("parport")) devices.push_back(entry.path());
    }
    std::ranges::sort(devices);
    return devices;
}

std::string ChosenHardware::outputsName() const {
    return port_->name();
}

Watchdog& ChosenHardware::watchdog() {
    if (!watchdog_) {
        watchdog_ = std::make_unique<Watchdog>();
        if (onWatchdog_) onWatchdog_(*watchdog_);
    }
    return *watchdog_;
}

void ChosenHardware::withWatchdog(std::function<void(Watchdog&)> use) {
    onWatchdog_ = std::move(use);
    if (watchdog_) onWatchdog_(*watchdog_);
}

} // namespace linux_ports
