#pragma once

#include "platform/dde_links.h"
#include "platform/station_messages.h"
#include "platform/udp_sockets.h"

#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace simulated {

/// DDE servers that exist only in memory. With none running, every link fails at once.
class DdeLinks : public platform::DdeLinks {
  public:
    std::unique_ptr<platform::DdeLink> open(const std::string& topic, const std::string& item,
                                            platform::DdeEvents events) override;

    /// Starts a server of this topic ("application|topic").
    void run(const std::string& topic) { running_.insert(topic); }
    /// Ends it, and with it the links to it.
    void quit(const std::string& topic);
    /// The server changes an item.
    void poke(const std::string& topic, const std::string& item, const std::string& text);

  private:
    class Link;
    std::set<std::string> running_;
    std::vector<Link*> links_;
};

/// A desktop that exists only in memory, where a station program may be running.
class StationMessages : public platform::StationMessages {
  public:
    struct Posted {
        long window, message, wParam, lParam;
        bool operator==(const Posted&) const = default;
    };

    long registerMessage(const std::string& name) override;
    long findWindow(const std::string& title) override;
    void post(long window, long message, long wParam, long lParam) override;
    long hook(long window, Receiver receiver) override;
    void unhook(long window, long previousProcedure) override;
    long ownWindow(const std::string& form) override;

    void showWindow(const std::string& title, long handle) { windows_[title] = handle; }
    void closeWindow(const std::string& title) { windows_.erase(title); }
    std::vector<Posted> takePosted() { return std::exchange(posted_, {}); }
    /// Brings a message to one of our windows, hooked or not.
    void deliver(long window, long message, long wParam, long lParam);
    bool hooked(long window) const { return receivers_.contains(window); }

  private:
    std::map<std::string, long> windows_;
    std::map<std::string, long> messages_;
    std::map<std::string, long> own_;
    std::map<long, Receiver> receivers_;
    std::vector<Posted> posted_;
};

/// A network that exists only in memory.
class UdpSockets : public platform::UdpSockets {
  public:
    std::unique_ptr<platform::UdpSocket> bind(int port, Receiver receiver) override;

    /// Another program takes the port.
    void occupy(int port) { occupied_.insert(port); }
    void release(int port) { occupied_.erase(port); }
    /// Sends a datagram; returns whether a socket was listening.
    bool send(int port, const std::string& datagram);
    bool listening(int port) const { return sockets_.contains(port); }

  private:
    class Socket;
    std::set<int> occupied_;
    std::map<int, Receiver> sockets_;
};

} // namespace simulated
