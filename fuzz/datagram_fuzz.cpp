// Datagrams as they come from the network.

#include "radio/frequency_text.h"
#include "radio/n1mm.h"
#include "runtime/number.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view datagram(reinterpret_cast<const char*>(data), size);
    const std::string text = radio::n1mmKilohertz(datagram);
    // Seven digits of tens of hertz: never more than this, and always a number.
    if (runtime::parseNumber(text) > 99999.99) std::abort();
    if (radio::n1mmHertz(datagram).value_or(1) < 1) std::abort();
    radio::n1mmTransmitting(datagram);
    // What Ham Radio Deluxe sends is text of any kind, too.
    if (radio::hertzOfMegahertz(datagram).value_or(1) < 1) std::abort();
    return 0;
}
