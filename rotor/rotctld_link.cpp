#include "rotor/rotctld_link.h"

#include "config/hardware_settings.h"

#include <utility>

namespace rotor::rotctld {

Link::Link(form::Form1& form, Sources& sources, RotorCommands& commands, platform::TcpServers& tcp,
           platform::Timers& timers, std::string version)
    : form_(form), sources_(sources), source_(form, sources, commands, std::move(version)),
      server_(form, tcp, timers, source_) {
    source_.clientThere = [this] { return server_.clients() > 0; };
    server_.onChange = [this] { show(); };
}

void Link::use(const platform::HardwareSettings& settings) {
    const auto endpoint = config::listenEndpoint(settings.rotctld);
    if (!endpoint) {
        leave();
        return;
    }
    place_ = endpoint->host + ":" + std::to_string(endpoint->port);
    reachable_ = config::isReachable(endpoint->host);
    server_.listen({endpoint->host, endpoint->port, *config::addressList(settings.rotctldAllow)});
}

void Link::leave() {
    place_.clear();
    server_.close();
    sources_.drop(source_);
}

void Link::show() {
    form::Label& label = form_.lblRotctld;
    const std::size_t clients = server_.clients();
    const bool failed = !server_.failure().empty();
    label.Visible = !place_.empty();
    label.Caption = failed         ? "rotctld: " + server_.failure()
                    : clients == 0 ? "rotctld " + place_
                    : clients == 1 ? "rotctld " + place_ + ", 1 client"
                                   : "rotctld " + place_ + ", " + std::to_string(clients) + " clients";
    label.ToolTip = failed ? server_.failure() : std::string();
    label.BackColor = failed || reachable_ ? form::kAmber : form::kWindowBackground;
}

} // namespace rotor::rotctld
