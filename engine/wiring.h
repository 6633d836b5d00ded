#pragma once

#include <optional>

namespace engine {

/// What the shaft did while the four coils were energised one after the other, several times round.
enum class Turned { kForward, kBackward, kTrembled, kNotAtAll };

/// Two of an engine's four outputs, 1 to 4, whose wires are to be exchanged.
struct WireSwap {
    int first;
    int second;
};

/// The wires to exchange. Outputs 1 and 3 belong to one winding, 2 and 4 to the other. Of the 24 ways to
/// connect the wires, 4 turn the shaft forward and 4 backward; in the other 16 a winding is on neighbouring
/// outputs, and the shaft trembles. Two exchanges in turn put that right, so the advice depends on how often
/// the shaft has trembled, this time included. Empty if there is nothing to exchange.
std::optional<WireSwap> wiresToSwap(Turned turned, int trembles);

} // namespace engine
