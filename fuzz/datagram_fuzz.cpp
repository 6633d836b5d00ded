// Datagrams as they come from the network.

#include "radio/n1mm.h"
#include "runtime/number.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text = radio::n1mmKilohertz({reinterpret_cast<const char*>(data), size});
    // Seven digits of tens of hertz: never more than this, and always a number.
    if (runtime::parseNumber(text) > 99999.99) std::abort();
    return 0;
}
