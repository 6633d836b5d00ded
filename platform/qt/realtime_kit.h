#pragma once

#include "platform/linux/realtime.h"

namespace qt_ports {

/// RealtimeKit on the system bus, as desktops have it. Through the toolkit's D-Bus, because that comes with
/// the toolkit: nothing else needs to be installed or linked for two calls at the start.
///
/// Interface: org.freedesktop.RealtimeKit1.xml of rtkit 0.13.
class RealtimeKit : public linux_ports::RealtimeBroker {
  public:
    std::string name() const override { return "RealtimeKit"; }
    Limits limits() override;
    void raise(pid_t thread, int priority) override;
};

} // namespace qt_ports
