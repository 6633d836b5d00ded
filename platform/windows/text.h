#pragma once

#include <string>
#include <string_view>

namespace windows_ports {

/// Between UTF-8 and the system's own UTF-16. What is no character becomes U+FFFD.
std::wstring wide(std::string_view utf8);
std::string utf8(std::wstring_view text);
/// From the system's ANSI code page.
std::string utf8FromAnsi(std::string_view bytes);

/// The system's words for an error code of GetLastError or WSAGetLastError, with the number.
std::string reason(unsigned long code);

} // namespace windows_ports
