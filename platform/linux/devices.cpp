#include "platform/linux/devices.h"

#include "platform/firmata/port.h"
#include "platform/hid/k8055.h"
#include "platform/linux/device_search.h"
#include "platform/linux/direct_port.h"
#include "platform/linux/gpio_pins.h"
#include "platform/linux/printer_port.h"
#include "platform/linux/serial_port.h"

#include <filesystem>
#include <sys/stat.h>
#include <utility>

namespace linux_ports {

namespace {

constexpr const char* kUsualPort = "/dev/parport0";

} // namespace

std::string Devices::automaticPort() const {
    return std::filesystem::exists(kUsualPort) ? kUsualPort : config::kSimulated;
}

devices::OpenPort Devices::openPort(const std::string& setting, std::uint8_t off) {
    if (const auto address = config::ioAddress(setting)) {
        auto port = std::make_unique<DirectPort>(*address);
        watchdog().guardPortAddress(*address, off);
        return {std::move(port), setting, {}};
    }
    if (const auto board = config::serialBoard(setting)) return openBoard(*board, off);
    if (const auto lines = config::gpioLines(setting)) {
        auto port = std::make_unique<GpioPins>(lines->chip, lines->lines, off);
        watchdog().guardLines(port->descriptor(), off);
        return {std::move(port), lines->chip, {}};
    }
    auto port = std::make_unique<PrinterPort>(setting);
    watchdog().guardPort(port->descriptor(), off);
    return {std::move(port), setting, {}};
}

devices::OpenPort Devices::openBoard(const config::SerialBoard& board, std::uint8_t off) {
    const firmata::Wiring wiring{board.pins, board.baud, off};
    auto serial = std::make_unique<SerialPort>(board.device, board.baud);
    watchdog().guardSerial(serial->descriptor(), firmata::offMessage(wiring));
    std::error_code error;
    const std::filesystem::path device = std::filesystem::canonical(board.device, error);
    const std::string name = "Arduino " + (error ? board.device : device.filename().string());
    return {std::make_unique<firmata::Port>(std::move(serial), name, wiring), name, board.device};
}

std::optional<std::string> Devices::identity(const std::string& device) const {
    struct stat status {};
    if (::stat(device.c_str(), &status) != 0) return std::nullopt;
    return std::to_string(status.st_rdev) + ' ' + std::to_string(status.st_ino);
}

std::unique_ptr<platform::UsbBoard> Devices::makeBoard(int card) {
    return std::make_unique<hid_ports::K8055>(
        card, hid_ports::K8055::Observer{
                  .opened = [this](const std::string& device) { watchdog().guardBoard(device); },
                  .closed = [this] { forgetBoard(); }});
}

std::vector<platform::OutputDevice> Devices::outputDevices() const {
    return findOutputDevices();
}

std::vector<platform::GpioLine> Devices::gpioLines(const std::string& chip) const {
    return gpioLinesOf(chip);
}

} // namespace linux_ports
