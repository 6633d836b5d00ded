#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <utility>

/// What the targets share.
namespace fuzz {

inline void require(bool holds) {
    if (!holds) std::abort();
}

/// What a peer says and does in turn: a byte of 0x80 and above is one of four actions, what stands between
/// two actions is said. `say` takes the text. `act` takes the action, 0 to 2, and its byte; the fourth is a
/// byte that is no letter.
template <class Say, class Act>
void play(const std::uint8_t* data, std::size_t size, const Say& say, const Act& act) {
    std::string said;
    for (std::size_t at = 0; at < size; ++at) {
        if (data[at] < 0x80 || data[at] % 4 == 3) {
            said += static_cast<char>(data[at]);
            continue;
        }
        say(std::exchange(said, {}));
        act(data[at] % 4, data[at]);
    }
    say(said);
}

} // namespace fuzz
