#pragma once

#include <cstdint>

/// What the file behind an emulated printer port holds.
struct EmulatedPortState {
    std::uint8_t data = 0;   // the data lines
    std::int32_t writer = 0; // process that wrote last
    std::int64_t writes = 0;
    bool areLines = false;    // of the GPIO chip, not the printer port
    std::uint8_t pull = 0;    // the lines that are 1 while nobody holds them
    std::int64_t changed = 0; // when the data lines last changed, nanoseconds of CLOCK_MONOTONIC
};
