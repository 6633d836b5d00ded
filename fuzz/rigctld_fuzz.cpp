// What a peer at rigctld's address answers, in pieces, while time passes and connections end.

#include "fuzz/script.h"
#include "platform/simulated/clock.h"
#include "platform/simulated/tcp_clients.h"
#include "radio/rigctld.h"

#include <cstddef>
#include <cstdint>

using fuzz::require;

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
    const auto say = [&](const std::string& said) {
        tcp.send(said);
        tcp.takeSent();
    };
    fuzz::play(data, size, say, [&](int action, int byte) {
        if (action == 0) tcp.drop();
        if (action == 1) {
            clock.advance(byte * 10);
            tcp.answer();
        }
    });

    // Whatever was said: a real daemon that comes after it is asked everything, and tells the frequency.
    tcp.stopListening(radio::Rigctld::kDefaultPort);
    tcp.drop();
    for (int round = 0; round < 2; ++round) {
        clock.advance(20'000);
        tcp.answer();
        tcp.listen(radio::Rigctld::kDefaultPort);
    }
    tcp.takeSent();
    for (const char* answer : {"0\n", "7050000\n", "0\nVFOA\n", "1\n"})
        tcp.send(answer);
    require(reading == radio::RigReading{.hertz = 7050000, .transmitting = true});
    return 0;
}
