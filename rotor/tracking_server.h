#pragma once

#include "form/form1.h"
#include "platform/tcp_clients.h"
#include "rotor/line_splitter.h"
#include "rotor/sources.h"

#include <chrono>
#include <string>

namespace rotor {

/// Default TCP port of the tracking server.
constexpr int kDefaultTrackingPort = 6969;

/// The client of the tracking server. It stays connected while Satellite Rotor is on. After a loss it tries
/// again after 1, 2, 4 … and at most 30 seconds.
class TrackingServer {
  public:
    TrackingServer(form::Form1& form, platform::TcpClients& clients, Sources& sources, std::string host);

    /// Takes effect at the next connection.
    void setHost(const std::string& host) { host_ = host; }
    /// Connects, or reconnects if host or port has changed. Disconnects while SatPC32 is ticked: SatPC32's
    /// link uses the same label for its state.
    void use();
    void leave();
    /// Timer5: shows the connection's state, in SatPC32's format only.
    void Timer5_Timer();

  private:
    void connect();
    void lost();
    void hideState();
    void received(const std::string& bytes);
    int port() const;

    static constexpr int kShortestRetry = 1000; // milliseconds
    static constexpr int kLongestRetry = 30000; // milliseconds

    form::Form1& form_;
    platform::TcpClients& clients_;
    Sources& sources_;
    const NamedSource source_;
    std::string host_;
    LineSplitter lines_;
    std::unique_ptr<platform::TcpClient> ClientIP_;
    std::string connectedHost_;
    int connectedPort_ = 0;
    int retry_ = kShortestRetry;
    bool stateShown_ = false;
};

} // namespace rotor
