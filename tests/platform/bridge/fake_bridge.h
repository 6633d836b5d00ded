#pragma once

#include "platform/bridge/connection.h"
#include "platform/simulated/clock.h"
#include "platform/simulated/tcp_clients.h"

#include <string>
#include <vector>

/// A bridge that exists only in memory and says what a test has it say. What the controller pings is not
/// listed, nor is its greeting.
class FakeBridge {
  public:
    simulated::TcpClients tcp;

    void run() { tcp.listen(bridge::kPort); }
    void quit() {
        tcp.stopListening(bridge::kPort);
        tcp.drop();
    }
    /// Accepts a controller and greets it.
    void accept() {
        tcp.answer();
        say("hello 1 twinstep-bridge 1.2.3");
    }
    void say(const std::string& line) { tcp.send(line + "\n"); }

    /// The lines that have come since the last call.
    std::vector<std::string> heard() {
        std::vector<std::string> lines;
        reader_.feed(tcp.takeSent());
        while (const auto line = reader_.next()) {
            if (line->tooLong) lines.emplace_back("(too long)");
            if (line->text.starts_with("ping ") || line->text == "hello 1 twinstep 9.9") continue;
            lines.push_back(line->text);
        }
        return lines;
    }

  private:
    bridge::LineReader reader_;
};
