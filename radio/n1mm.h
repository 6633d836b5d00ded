#pragma once

#include "runtime/checked.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace radio {

/// UDP port that N1MM Logger broadcasts to unless it is told otherwise.
constexpr int kN1mmDefaultPort = 12060;

/// The port to listen at for a stored port; 0 stands for the default.
int n1mmPort(runtime::Int16 stored);

/// The kilohertz that a datagram tells, as the shortest decimal text: the 7 characters behind "<TXFreq>" are
/// tens of hertz. Where the tag is missing the 7 characters from the eighth on are read all the same; no
/// digits give "0". Only 7 are taken, so from 100 MHz on the last digits are lost.
std::string n1mmKilohertz(std::string_view datagram);

/// The hertz that a datagram tells, from all digits behind the tag. Nothing where there are none.
std::optional<std::int64_t> n1mmHertz(std::string_view datagram);

/// Whether a datagram says that the transceiver transmits; nothing where it does not say.
std::optional<bool> n1mmTransmitting(std::string_view datagram);

} // namespace radio
