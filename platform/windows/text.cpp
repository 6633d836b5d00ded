#include "platform/windows/text.h"

#include <windows.h>

namespace windows_ports {

namespace {

std::wstring decode(unsigned codePage, std::string_view bytes) {
    const int size = static_cast<int>(bytes.size());
    std::wstring text(
        static_cast<std::size_t>(MultiByteToWideChar(codePage, 0, bytes.data(), size, nullptr, 0)), L'\0');
    MultiByteToWideChar(codePage, 0, bytes.data(), size, text.data(), static_cast<int>(text.size()));
    return text;
}

} // namespace

std::wstring wide(std::string_view utf8) {
    return decode(CP_UTF8, utf8);
}

std::string utf8(std::wstring_view text) {
    const int size = static_cast<int>(text.size());
    std::string bytes(static_cast<std::size_t>(
                          WideCharToMultiByte(CP_UTF8, 0, text.data(), size, nullptr, 0, nullptr, nullptr)),
                      '\0');
    WideCharToMultiByte(CP_UTF8, 0, text.data(), size, bytes.data(), static_cast<int>(bytes.size()), nullptr,
                        nullptr);
    return bytes;
}

std::string utf8FromAnsi(std::string_view bytes) {
    return utf8(decode(CP_ACP, bytes));
}

std::string reason(unsigned long code) {
    if (code == 0) return "the system gives no reason; perhaps there is no desktop";
    wchar_t text[256];
    const auto size = FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS |
                                         FORMAT_MESSAGE_MAX_WIDTH_MASK,
                                     nullptr, code, 0, static_cast<wchar_t*>(text), std::size(text), nullptr);
    std::string words = utf8({static_cast<wchar_t*>(text), size});
    while (words.ends_with(' ') || words.ends_with('.'))
        words.pop_back();
    return words + (words.empty() ? "error " : " (error ") + std::to_string(code) +
           (words.empty() ? "" : ")");
}

} // namespace windows_ports
