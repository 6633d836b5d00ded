#pragma once

#include "platform/linux/realtime.h"

namespace qt_ports {

/// RealtimeKit on the system bus, part of most desktops. Uses the toolkit's D-Bus classes, so that two calls
/// at the start need no other library.
///
/// Interface: org.freedesktop.RealtimeKit1.xml of rtkit 0.13.
class RealtimeKit : public linux_ports::RealtimeBroker {
  public:
    std::string name() const override { return "RealtimeKit"; }
    Limits limits() override;
    void raise(pid_t thread, int priority) override;
};

} // namespace qt_ports
