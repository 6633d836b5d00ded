#include "platform/linux/chosen_port.h"

#include "platform/firmata/port.h"
#include "platform/linux/direct_port.h"
#include "platform/linux/gpio_pins.h"
#include "platform/linux/printer_port.h"
#include "platform/linux/serial_port.h"
#include "platform/simulated/outputs.h"
#include "runtime/errors.h"

#include <filesystem>
#include <sys/stat.h>
#include <utility>

namespace linux_ports {

using platform::HardwareSettings;

namespace {

constexpr const char* kUsualPort = "/dev/parport0";
constexpr std::uint8_t kAll = 0xFF; // outputs

} // namespace

/// Stands for a board that was unplugged.
class ChosenPort::Lost : public platform::PrinterPort {
  public:
    explicit Lost(std::string why) : why_(std::move(why)) {}
    void clearBit(int /*bit*/) override { refuse(); }
    void setBit(int /*bit*/) override { refuse(); }
    void endPattern() override { refuse(); }
    bool taken(int /*mask*/) override { refuse(); }
    std::string notReady() override { return why_; }

  private:
    [[noreturn]] void refuse() const { throw runtime::ObjectError(why_); }
    std::string why_;
};

void ChosenPort::open(const HardwareSettings& settings) {
    close();
    high_ = config::coilsOnHigh(settings);
    const std::uint8_t off = high_ ? 0 : kAll;
    const std::string& setting = settings.port;
    if (setting == config::kSimulated) {
        behind_ = std::make_unique<simulated::PrinterPort>();
        name_ = setting;
    } else if (setting == config::kAutomatic) {
        HardwareSettings found = settings;
        found.port = std::filesystem::exists(kUsualPort) ? kUsualPort : config::kSimulated;
        return open(found);
    } else if (const auto address = config::ioAddress(setting)) {
        auto port = std::make_unique<DirectPort>(*address);
        watchdog_().guardPortAddress(*address, off);
        hold(std::move(port), setting);
    } else if (const auto board = config::serialBoard(setting)) {
        openBoard(*board, off);
    } else if (const auto lines = config::gpioLines(setting)) {
        auto port = std::make_unique<GpioPins>(lines->chip, lines->lines, off);
        watchdog_().guardLines(port->descriptor(), off);
        hold(std::move(port), lines->chip);
    } else {
        auto port = std::make_unique<linux_ports::PrinterPort>(setting);
        watchdog_().guardPort(port->descriptor(), off);
        hold(std::move(port), setting);
    }
    works_ = true;
}

void ChosenPort::openBoard(const config::SerialBoard& board, std::uint8_t off) {
    const firmata::Wiring wiring{board.pins, board.baud, off};
    auto serial = std::make_unique<SerialPort>(board.device, board.baud);
    watchdog_().guardSerial(serial->descriptor(), firmata::offMessage(wiring));
    std::error_code error;
    const std::filesystem::path device = std::filesystem::canonical(board.device, error);
    const std::string name = "Arduino " + (error ? board.device : device.filename().string());
    hold(std::make_unique<firmata::Port>(std::move(serial), name, wiring), name);
    node_ = Node::of(board.device);
}

void ChosenPort::simulate() {
    open(HardwareSettings{.port = config::kSimulated});
    works_ = false;
}

void ChosenPort::look(const HardwareSettings& settings) {
    if (works_) {
        call([this] { ready_ = behind_->notReady().empty(); });
        return;
    }
    if (!node_) return;
    const auto node = Node::of(node_->device);
    // A board that never was ready has no coil on, so others may have it. A board that is gone keeps its
    // device's name until nobody holds it.
    if (!ready_ || !node) lose(notReady());
    if (!node) node_->file = 0; // whatever comes back is another one
    if (!node || *node == *node_) return;
    const std::string why = notReady();
    const Node gone = *node_;
    try {
        open(settings);
    } catch (const runtime::ObjectError&) { // the rights to a new device come a moment later
        lose(why);
        node_ = gone;
    }
}

std::string ChosenPort::name() const {
    if (!node_ || (works_ && ready_)) return name_;
    return name_ + (works_ ? " is starting" : " is lost");
}

void ChosenPort::clearBit(int bit) {
    call([&] { high_ ? behind_->setBit(bit) : behind_->clearBit(bit); });
}

void ChosenPort::setBit(int bit) {
    call([&] { high_ ? behind_->clearBit(bit) : behind_->setBit(bit); });
}

void ChosenPort::endPattern() {
    // A board that has not been ready yet has not been sent any pattern; look reports its failure, which must
    // not end the program's start half-way.
    if (node_ && works_ && !ready_) {
        try {
            return behind_->endPattern();
        } catch (const runtime::ObjectError&) {
            return;
        }
    }
    call([this] { behind_->endPattern(); });
}

bool ChosenPort::taken(int mask) {
    return call([&] { return behind_->taken(mask); });
}

std::string ChosenPort::notReady() {
    if (works_) {
        std::string why = call([this] { return behind_->notReady(); });
        ready_ = ready_ || why.empty();
        return why;
    }
    // The failure has been reported already.
    try {
        return behind_->notReady();
    } catch (const runtime::ObjectError& error) {
        return error.what();
    }
}

std::optional<ChosenPort::Node> ChosenPort::Node::of(const std::string& device) {
    struct stat status {};
    if (::stat(device.c_str(), &status) != 0) return std::nullopt;
    return Node{device, status.st_rdev, status.st_ino};
}

template <class Access>
auto ChosenPort::call(const Access& access) -> decltype(access()) {
    try {
        return access();
    } catch (...) {
        works_ = false;
        throw;
    }
}

void ChosenPort::hold(std::unique_ptr<platform::PrinterPort> port, const std::string& name) {
    behind_ = std::move(port);
    name_ = name;
    guarded_ = true;
}

void ChosenPort::lose(const std::string& why) {
    release();
    behind_ = std::make_unique<Lost>(why);
}

void ChosenPort::release() {
    behind_.reset(); // guarded until its last pattern is out
    if (std::exchange(guarded_, false)) watchdog_().forgetPort();
}

void ChosenPort::close() {
    release();
    node_.reset();
    ready_ = false;
}

} // namespace linux_ports
