#include "engine/wiring.h"

namespace engine {

std::optional<WireSwap> wiresToSwap(Turned turned, int trembles) {
    switch (turned) {
    case Turned::kBackward:
        return WireSwap{1, 3}; // one winding the other way round
    case Turned::kTrembled:
        // If outputs 2 and 3 feed one winding already, the first exchange leaves both windings where they
        // are; the second one then takes them apart.
        return trembles % 2 == 1 ? WireSwap{2, 3} : WireSwap{3, 4};
    default:
        return std::nullopt;
    }
}

} // namespace engine
