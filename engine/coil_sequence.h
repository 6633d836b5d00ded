#pragma once

#include <array>

/// The coil patterns of both step modes. The output numbers are those of engine A, 1 to 4; engine B's are 4
/// higher. A coil is energised by a 0 on the printer port. The USB values are active-high, but they are not
/// the complement of the port's bits. Engine B's USB values are 16 times engine A's.
namespace engine {

struct OutputWrite {
    int output; // 1 to 4
    int state;  // 0 or 1
};

struct Phase {
    std::array<OutputWrite, 4> writes; // in this order
    int usb;
};

constexpr int kLamps = 4;

constexpr std::array<Phase, 4> kFullStep = {{
    {{{{1, 0}, {2, 0}, {3, 1}, {4, 1}}}, 8},
    {{{{2, 0}, {1, 1}, {3, 0}, {4, 1}}}, 4},
    {{{{3, 0}, {2, 1}, {1, 1}, {4, 0}}}, 2},
    {{{{4, 0}, {2, 1}, {3, 1}, {1, 0}}}, 1},
}};

constexpr std::array<Phase, 8> kHalfStep = {{
    {{{{1, 0}, {2, 1}, {3, 1}, {4, 1}}}, 9},
    {{{{2, 0}, {1, 0}, {3, 1}, {4, 1}}}, 8},
    {{{{3, 1}, {2, 0}, {1, 1}, {4, 1}}}, 12},
    {{{{4, 1}, {2, 0}, {3, 0}, {1, 1}}}, 4},
    {{{{1, 1}, {2, 1}, {3, 0}, {4, 1}}}, 6},
    {{{{2, 1}, {1, 1}, {3, 0}, {4, 0}}}, 2},
    {{{{3, 1}, {2, 1}, {1, 1}, {4, 0}}}, 3},
    {{{{4, 0}, {2, 1}, {3, 1}, {1, 0}}}, 1},
}};

/// Outputs are switched off in this order within an engine.
constexpr std::array<int, 4> kOffOrder = {4, 2, 3, 1};

} // namespace engine
