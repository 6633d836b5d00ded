#include "platform/windows/outside/devices.h"

#include "config/hardware_settings.h"
#include "platform/firmata/port.h"
#include "platform/hid/k8055.h"
#include "platform/windows/outside/board_library.h"
#include "platform/windows/outside/direct_port.h"
#include "platform/windows/outside/serial_port.h"
#include "runtime/errors.h"

#include <algorithm>
#include <utility>

namespace windows_ports {

namespace {

constexpr const char* kUsualPort = "0x378";

} // namespace

std::string Devices::automaticPort() const {
    return Library::isThere(DirectPort::kLibrary) ? kUsualPort : config::kSimulated;
}

devices::OpenPort Devices::openPort(const std::string& setting, std::uint8_t off) {
    if (const auto address = config::ioAddress(setting)) {
        auto port = std::make_unique<DirectPort>(*address);
        watchdog().guardPortAddress(*address, off);
        return {.port = std::move(port), .name = setting, .unplugged = {}};
    }
    if (const auto board = config::serialBoard(setting)) {
        const firmata::Wiring wiring{board->pins, board->baud, off};
        auto serial = std::make_unique<SerialPort>(board->device, board->baud);
        watchdog().guardSerial(serial->handle(), firmata::offMessage(wiring));
        const std::string name = "Arduino " + board->device;
        return {.port = std::make_unique<firmata::Port>(std::move(serial), name, wiring),
                .name = name,
                .unplugged = board->device};
    }
    throw runtime::ObjectError("\"" + setting +
                               "\" is for Linux; on Windows outputs go to an I/O address such as " +
                               kUsualPort + " or to firmata:COM3");
}

std::optional<std::string> Devices::identity(const std::string& device) const {
    const auto found = serialDevices();
    const auto same = std::ranges::find(found, device, &SerialDevice::port);
    return same == found.end() ? std::nullopt : std::optional(same->name);
}

std::unique_ptr<platform::UsbBoard> Devices::makeBoard(int card) {
    const auto closed = [this] { forgetBoard(); };
    if (Library::isThere(BoardLibrary::kLibrary)) {
        return std::make_unique<BoardLibrary>(
            card, BoardLibrary::Observer{.opened = [this](int opened) { watchdog().guardBoard({}, opened); },
                                         .closed = closed});
    }
    return std::make_unique<hid_ports::K8055>(
        card, hid_ports::K8055::Observer{
                  .opened = [this, card](const std::string& path) { watchdog().guardBoard(path, card); },
                  .closed = closed});
}

std::vector<platform::OutputDevice> Devices::outputDevices() const {
    std::vector<platform::OutputDevice> found;
    for (const SerialDevice& device : serialDevices())
        found.push_back({.port = "firmata:" + device.port, .name = "Arduino " + device.port});
    if (Library::isThere(DirectPort::kLibrary)) found.push_back({.port = kUsualPort, .name = kUsualPort});
    return found;
}

} // namespace windows_ports
