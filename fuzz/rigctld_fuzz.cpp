// What a peer at rigctld's address answers, in pieces, while time passes and connections end.

#include "platform/simulated/clock.h"
#include "platform/simulated/tcp_clients.h"
#include "radio/rigctld.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

namespace {

void require(bool holds) {
    if (!holds) std::abort();
}

} // namespace

/// A byte of 0x80 and above is an action; what stands between two actions is what the peer says.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    simulated::Clock clock;
    simulated::TcpClients tcp;
    tcp.listen(radio::Rigctld::kDefaultPort);
    radio::RigReading reading;
    const auto told = [&](const radio::RigReading& now) {
        require(now != reading);
        require(now.hertz.has_value() == now.trouble.empty());
        require(now.hertz.value_or(1) > 0 && (now.hertz || !now.transmitting));
        reading = now;
    };
    radio::Rigctld rig(tcp, clock, "localhost", radio::Rigctld::kDefaultPort, told);
    tcp.answer();
    std::string said;
    const auto say = [&] {
        tcp.send(std::exchange(said, {}));
        tcp.takeSent();
    };
    for (std::size_t at = 0; at < size; ++at) {
        if (data[at] < 0x80) {
            said += static_cast<char>(data[at]);
            continue;
        }
        say();
        switch (data[at] % 4) {
        case 0:
            tcp.drop();
            break;
        case 1:
            clock.advance(data[at] * 10);
            tcp.answer();
            break;
        case 2:
            say();
            break;
        default:
            said += static_cast<char>(data[at]);
        }
    }
    say();

    // Whatever was said: a new connection to a real daemon finds the frequency.
    tcp.drop();
    clock.advance(20'000);
    tcp.answer();
    tcp.takeSent();
    for (const char* answer : {"0\n", "7050000\n", "0\nVFOA\n", "1\n"})
        tcp.send(answer);
    require(reading == radio::RigReading{.hertz = 7050000, .transmitting = true});
    return 0;
}
