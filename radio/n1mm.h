#pragma once

#include "runtime/checked.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace radio {

/// Default UDP port of N1MM Logger's broadcasts.
constexpr int kN1mmDefaultPort = 12060;

/// The port to listen at, from the stored port; 0 stands for the default.
int n1mmPort(runtime::Int16 stored);

/// The kilohertz in a datagram, as the shortest decimal text: the 7 characters after "<TXFreq>" are tens of
/// hertz. Deliberate: without the tag, the 7 characters from the eighth on are read. Without digits the text
/// is "0". Only 7 characters are read, so from 100 MHz on the last digits are lost.
std::string n1mmKilohertz(std::string_view datagram);

/// The hertz in a datagram, from all digits after the tag; empty without digits.
std::optional<std::int64_t> n1mmHertz(std::string_view datagram);

/// Whether the transceiver transmits, according to a datagram; empty if the datagram does not say.
std::optional<bool> n1mmTransmitting(std::string_view datagram);

} // namespace radio
