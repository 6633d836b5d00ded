// What a client sends to the bridge, beside station programs that come, speak and go.

#include "bridge/session.h"
#include "fuzz/script.h"
#include "platform/simulated/links.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace {

using fuzz::require;

constexpr const char* kTopic = "A|T";
constexpr long kStation = 50;

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    simulated::DdeLinks links;
    simulated::StationMessages station;
    bridge::RegisteredMessages messages(station);
    bridge::LinkTurns turns;
    bridge::Session session(
        {links, station, messages, turns}, 1, "1.0.0",
        {[](const std::string& line) {
             // Whatever came in, what goes out is one whole line that the other side can read.
             require(bridge::fits(line) && line.find('\n') == line.size() - 1);
             require(bridge::split(line.substr(0, line.size() - 1)).has_value());
         },
         [](const std::string& text) {
             require(std::ranges::none_of(text, [](char c) { return c == '\n' || c == '\x1b'; }));
         }});
    session.receive("hello 1 fuzz 1\nregister Logger32\nlisten Form1\nwatch Logger32\n");
    const long own = station.ownWindow("1/Form1");
    const long message = station.registerMessage("Logger32");

    const std::string bytes(reinterpret_cast<const char*>(data), size);
    links.run(kTopic);
    station.showWindow("Logger32", kStation);
    session.tick();
    // In two pieces, with the world moving in between.
    session.receive(std::string_view(bytes).substr(0, size / 2));
    links.poke(kTopic, "I", bytes);
    station.deliver(own, message, 100, static_cast<long>(size));
    links.quit(kTopic);
    session.receive(std::string_view(bytes).substr(size / 2));
    for (const auto& posted : station.takePosted())
        require(posted.window == kStation);
    station.closeWindow("Logger32");
    while (!session.over())
        session.tick();
    return 0;
}
