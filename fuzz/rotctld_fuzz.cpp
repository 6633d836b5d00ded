// What clients of the rotator's server send, in pieces, two at a time, while time passes and they come and
// go.

#include "form/form1.h"
#include "fuzz/script.h"
#include "platform/simulated/clock.h"
#include "platform/simulated/links.h"
#include "platform/simulated/tcp_servers.h"
#include "rotor/rotctld_server.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace {

using fuzz::require;

using rotor::rotctld::Result;

constexpr int kPort = 4533;

struct Rotator : rotor::rotctld::Rotator {
    rotor::Direction position() const override { return {-12.345, 90}; }
    std::string version() const override { return "1"; }
    Result point(const rotor::Direction& target) override {
        require(target.azimuth >= -180 && target.azimuth <= 450);
        require(target.elevation >= -90 && target.elevation <= 180);
        return act();
    }
    Result move(rotor::Axis, int direction, bool) override {
        require(direction == form::kForward || direction == form::kBackward);
        moving = true;
        return act();
    }
    Result stop() override { return act(); }
    Result park() override { return act(); }
    void endMove() override { moving = false; }
    void heard() override {}

    /// Every third act is refused.
    Result act() { return ++acts % 3 == 0 ? Result::kNotAvailable : Result::kOk; }
    unsigned acts = 0;
    bool moving = false;
};

struct Desk {
    simulated::Clock clock;
    simulated::DdeLinks links;
    simulated::TcpServers tcp;
    form::Form1 form{clock, links};
    Rotator rotator;
    rotor::rotctld::Server server{form, tcp, clock, rotator};
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Desk desk;
    desk.server.listen({"0.0.0.0", kPort, {}});
    std::array<std::shared_ptr<simulated::TcpServers::Peer>, 2> peers;
    const auto connect = [&](auto& peer) { peer = desk.tcp.connect(kPort, {"127.0.0.1", "127.0.0.1"}); };
    for (auto& peer : peers)
        connect(peer);
    std::size_t speaker = 0;
    const auto say = [&](const std::string& said) {
        auto& peer = peers.at(speaker);
        peer->send(said);
        const std::string answer = peer->takeReceived();
        require(answer.empty() || answer.ends_with('\n'));
        if (peer->closed()) connect(peer);
    };
    fuzz::play(data, size, say, [&](int action, int byte) {
        if (action == 0) speaker = 1 - speaker;
        if (action == 1) desk.clock.advance(byte);
        if (action == 2) {
            peers.at(speaker)->close();
            connect(peers.at(speaker));
        }
    });
    desk.clock.advance(rotor::rotctld::Server::kMoveSilence);
    require(!desk.rotator.moving);

    // A browser may say what it likes.
    const unsigned acts = desk.rotator.acts;
    auto browser = desk.tcp.connect(kPort, {"127.0.0.1", "127.0.0.1"});
    browser->send("POST ");
    browser->send({reinterpret_cast<const char*>(data), size});
    require(browser->closed() && browser->takeReceived().empty() && desk.rotator.acts == acts);
    return 0;
}
