#include "platform/simulated/links.h"

#include "runtime/errors.h"

namespace simulated {

class DdeLinks::Link : public platform::DdeLink {
  public:
    Link(DdeLinks& owner, std::string topic, std::string item, platform::DdeEvents events)
        : owner_(owner), topic_(std::move(topic)), item_(std::move(item)), events_(std::move(events)) {
        owner_.links_.push_back(this);
    }
    Link(const Link&) = delete;
    Link& operator=(const Link&) = delete;
    ~Link() override { leave(); }

    void leave() { std::erase(owner_.links_, this); }
    bool concerns(const std::string& topic) const { return topic == topic_; }
    bool concerns(const std::string& topic, const std::string& item) const {
        return topic == topic_ && item == item_;
    }
    const platform::DdeEvents& events() const { return events_; }

  private:
    DdeLinks& owner_;
    std::string topic_;
    std::string item_;
    platform::DdeEvents events_;
};

std::unique_ptr<platform::DdeLink> DdeLinks::open(const std::string& topic, const std::string& item,
                                                  platform::DdeEvents events) {
    if (!running_.contains(topic)) {
        events.failed();
        return nullptr;
    }
    auto link = std::make_unique<Link>(*this, topic, item, std::move(events));
    link->events().opened();
    return link;
}

void DdeLinks::quit(const std::string& topic) {
    running_.erase(topic);
    const auto links = links_;
    for (Link* link : links) {
        if (!link->concerns(topic)) continue;
        link->leave();
        link->events().closed();
    }
}

void DdeLinks::poke(const std::string& topic, const std::string& item, const std::string& text) {
    const auto links = links_;
    for (Link* link : links) {
        if (link->concerns(topic, item)) link->events().changed(text);
    }
}

long StationMessages::registerMessage(const std::string& name) {
    // The system hands out identifiers of registered messages from 0xC000 on.
    return messages_.emplace(name, 0xC000 + static_cast<long>(messages_.size())).first->second;
}

long StationMessages::findWindow(const std::string& title) {
    const auto found = windows_.find(title);
    return found == windows_.end() ? 0 : found->second;
}

void StationMessages::post(long window, long message, long wParam, long lParam) {
    posted_.push_back({window, message, wParam, lParam});
}

long StationMessages::hook(long window, Receiver receiver) {
    receivers_[window] = std::move(receiver);
    return window + 1;
}

void StationMessages::unhook(long window, long /*previousProcedure*/) {
    receivers_.erase(window);
}

long StationMessages::ownWindow(const std::string& form) {
    return own_.emplace(form, 100 + static_cast<long>(own_.size())).first->second;
}

void StationMessages::deliver(long window, long message, long wParam, long lParam) {
    const auto found = receivers_.find(window);
    if (found != receivers_.end()) found->second(message, wParam, lParam);
}

class UdpSockets::Socket : public platform::UdpSocket {
  public:
    Socket(UdpSockets& owner, int port) : owner_(owner), port_(port) {}
    Socket(const Socket&) = delete;
    Socket& operator=(const Socket&) = delete;
    ~Socket() override { owner_.sockets_.erase(port_); }

  private:
    UdpSockets& owner_;
    int port_;
};

std::unique_ptr<platform::UdpSocket> UdpSockets::bind(int port, Receiver receiver) {
    if (occupied_.contains(port) || sockets_.contains(port)) {
        throw runtime::ObjectError("UDP port " + std::to_string(port) + ": address already in use");
    }
    sockets_[port] = std::move(receiver);
    return std::make_unique<Socket>(*this, port);
}

bool UdpSockets::send(int port, const std::string& datagram) {
    const auto found = sockets_.find(port);
    if (found == sockets_.end()) return false;
    found->second(datagram);
    return true;
}

} // namespace simulated
