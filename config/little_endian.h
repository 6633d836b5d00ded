#pragma once

#include <cstddef>

namespace config {

/// Values in files are little-endian on every machine.
template <class Bytes, class Unsigned>
void put(Bytes& bytes, std::size_t offset, Unsigned value) {
    for (std::size_t i = 0; i < sizeof value; ++i)
        bytes.at(offset + i) = static_cast<char>(value >> (8 * i) & 0xFFU);
}

template <class Unsigned, class Bytes>
Unsigned take(const Bytes& bytes, std::size_t offset = 0) {
    Unsigned value = 0;
    for (std::size_t i = 0; i < sizeof value; ++i) {
        const auto byte = static_cast<unsigned char>(bytes.at(offset + i));
        value = static_cast<Unsigned>(value | static_cast<Unsigned>(byte) << (8 * i));
    }
    return value;
}

} // namespace config
