#pragma once

#include <cstdint>

namespace platform {

/// Lets the system notice within half a minute that the peer of this connected TCP socket has vanished
/// without a word. Each system has its own implementation.
void noticeSilentEnd(std::intptr_t socket);

} // namespace platform
