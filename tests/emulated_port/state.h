#pragma once

#include <cstdint>

/// What the file behind an emulated printer port holds.
struct EmulatedPortState {
    std::uint8_t data = 0;   // the data lines
    std::int32_t writer = 0; // process that wrote last
    std::int64_t writes = 0;
    std::int64_t changed = 0; // when the data lines last changed, nanoseconds of CLOCK_MONOTONIC
};
