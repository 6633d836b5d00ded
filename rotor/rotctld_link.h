#pragma once

#include "form/form1.h"
#include "platform/hardware.h"
#include "rotor/rotctld_server.h"
#include "rotor/rotctld_source.h"

#include <string>

namespace rotor::rotctld {

/// The server as the settings want it, and its state in lblRotctld.
class Link {
  public:
    Link(form::Form1& form, Sources& sources, RotorCommands& commands, platform::TcpServers& tcp,
         platform::Timers& timers, std::string version);
    Link(const Link&) = delete;
    Link& operator=(const Link&) = delete;

    /// Satellite Rotor is on, with these settings; they fit together.
    void use(const platform::HardwareSettings& settings);
    void leave();

  private:
    void show();

    form::Form1& form_;
    Sources& sources_;
    Source source_;
    Server server_;
    std::string place_;      // where it listens, or should; empty for nowhere
    bool reachable_ = false; // for other computers
};

} // namespace rotor::rotctld
