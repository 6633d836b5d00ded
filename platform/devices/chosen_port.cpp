#include "platform/devices/chosen_port.h"

#include "config/hardware_settings.h"
#include "platform/simulated/outputs.h"
#include "runtime/errors.h"

#include <utility>

namespace devices {

using platform::HardwareSettings;

namespace {

constexpr std::uint8_t kAll = 0xFF; // outputs

} // namespace

/// Stands for a board that is away.
class ChosenPort::Lost : public platform::PrinterPort {
  public:
    explicit Lost(std::string why) : why_(std::move(why)) {}
    void clearBit(int /*bit*/) override {}
    void setBit(int /*bit*/) override {}
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
        found.port = devices_.automaticPort();
        return open(found);
    } else {
        hold(devices_.openPort(setting, off));
    }
    works_ = true;
}

std::string ChosenPort::standIn(const HardwareSettings& settings, const std::string& why) {
    const auto board = config::serialBoard(settings.port);
    if (!board) {
        open(HardwareSettings{.port = config::kSimulated});
        works_ = false;
        return "The outputs are simulated";
    }
    close();
    works_ = false;
    name_ = "Arduino";
    device_ = board->device;
    lose(why);
    return "The engines do not start until it can be used";
}

void ChosenPort::look(const HardwareSettings& settings) {
    if (works_) {
        call([this] { ready_ = behind_->notReady().empty(); });
        return;
    }
    if (!device_) return;
    const auto identity = devices_.identity(*device_);
    // A board that never was ready has no coil on, so others may have it. A board that is gone keeps its
    // device's name until nobody holds it.
    if (!ready_ || !identity) lose(notReady());
    if (!identity) identity_.reset(); // whatever comes back is another one
    if (!identity || identity == identity_) return;
    const std::string why = notReady();
    const auto device = device_;
    const auto gone = identity_;
    try {
        open(settings);
    } catch (const runtime::ObjectError&) { // the rights to a new device come a moment later
        lose(why);
        device_ = device;
        identity_ = gone;
    }
}

std::string ChosenPort::name() const {
    if (!device_ || (works_ && ready_)) return name_;
    return name_ + (works_ ? " is starting" : " is lost");
}

void ChosenPort::clearBit(int bit) {
    call([&] { high_ ? behind_->setBit(bit) : behind_->clearBit(bit); });
}

void ChosenPort::setBit(int bit) {
    call([&] { high_ ? behind_->clearBit(bit) : behind_->setBit(bit); });
}

void ChosenPort::endPattern() {
    // A board that has not been ready yet has not been sent any pattern; its failure is reported elsewhere,
    // and must not end the program's start half-way.
    if (device_ && !ready_) {
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

template <class Access>
auto ChosenPort::call(const Access& access) -> decltype(access()) {
    try {
        return access();
    } catch (...) {
        works_ = false;
        throw;
    }
}

void ChosenPort::hold(OpenPort open) {
    behind_ = std::move(open.port);
    name_ = std::move(open.name);
    device_ = std::move(open.unplugged);
    if (device_) identity_ = devices_.identity(*device_);
    guarded_ = true;
}

void ChosenPort::lose(const std::string& why) {
    release();
    behind_ = std::make_unique<Lost>(why);
}

void ChosenPort::release() {
    behind_.reset(); // guarded until its last pattern is out
    if (std::exchange(guarded_, false)) devices_.forgetPort();
}

void ChosenPort::close() {
    release();
    device_.reset();
    identity_.reset();
    ready_ = false;
}

} // namespace devices
