#pragma once

#include "platform/devices/devices.h"

#include <functional>
#include <memory>

namespace devices {

/// What the devices of every system have in common: one watchdog, which starts when the first device needs
/// it.
template <class Watchdog>
class GuardedDevices : public Devices {
  public:
    void forgetPort() override {
        if (watchdog_) watchdog_->forgetPort();
    }

    /// Calls back with the watchdog when the first device needs it, or at once. The watchdog lives as long as
    /// this object.
    void withWatchdog(std::function<void(Watchdog&)> use) {
        onWatchdog_ = std::move(use);
        if (watchdog_) onWatchdog_(*watchdog_);
    }

  protected:
    Watchdog& watchdog() {
        if (!watchdog_) {
            watchdog_ = std::make_unique<Watchdog>();
            if (onWatchdog_) onWatchdog_(*watchdog_);
        }
        return *watchdog_;
    }
    void forgetBoard() {
        if (watchdog_) watchdog_->forgetBoard();
    }

  private:
    std::unique_ptr<Watchdog> watchdog_;
    std::function<void(Watchdog&)> onWatchdog_;
};

} // namespace devices
