#include "platform/windows/station_messages.h"

#include "platform/windows/text.h"
#include "runtime/errors.h"

#include <algorithm>

namespace windows_ports {

namespace {

/// Stands for the procedure that all our windows have.
constexpr long kOurProcedure = 1;

struct Search {
    std::wstring title;
    std::wstring buffer; // one longer, so that a longer title shows
    HWND found = nullptr;
};

BOOL CALLBACK look(HWND window, LPARAM argument) noexcept {
    auto& search = *reinterpret_cast<Search*>(argument);
    const int length =
        InternalGetWindowText(window, search.buffer.data(), static_cast<int>(search.buffer.size()));
    if (std::wstring_view(search.buffer.data(), static_cast<std::size_t>(std::max(length, 0))) !=
        search.title)
        return TRUE;
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    if (process == GetCurrentProcessId()) return TRUE;
    search.found = window;
    return FALSE;
}

} // namespace

long StationMessages::registerMessage(const std::string& name) {
    const UINT id = RegisterWindowMessageW(wide(name).c_str());
    if (id == 0) throw runtime::ObjectError("Cannot register a message: " + reason(GetLastError()));
    return static_cast<long>(id);
}

long StationMessages::findWindow(const std::string& title) {
    Search search;
    search.title = wide(title);
    if (search.title.empty()) return 0;
    search.buffer.resize(search.title.size() + 2); // and the end of the text
    EnumWindows(look, reinterpret_cast<LPARAM>(&search));
    return HandleToLong(search.found);
}

void StationMessages::post(long window, long message, long wParam, long lParam) {
    PostMessageW(static_cast<HWND>(LongToHandle(window)), static_cast<UINT>(message),
                 static_cast<WPARAM>(wParam), lParam);
}

long StationMessages::ownWindow(const std::string& form) {
    Own& own = own_[form];
    if (!own.window) {
        own.receiver = std::make_shared<Receiver>();
        try {
            own.window = std::make_unique<Window>(Window::Kind::TopLevel, [receiver = own.receiver](
                                                                              UINT message, WPARAM wParam,
                                                                              LPARAM lParam) {
                // It may unhook itself.
                const Receiver current = *receiver;
                if (current)
                    current(static_cast<long>(message), static_cast<long>(wParam), static_cast<long>(lParam));
                return std::optional<LRESULT>();
            });
        } catch (...) {
            own_.erase(form);
            throw;
        }
    }
    return HandleToLong(own.window->handle());
}

long StationMessages::hook(long window, Receiver receiver) {
    const auto found = std::ranges::find_if(
        own_, [window](const auto& own) { return HandleToLong(own.second.window->handle()) == window; });
    if (found == own_.end()) throw runtime::ObjectError("Only a window of our own can be hooked");
    *found->second.receiver = std::move(receiver);
    return kOurProcedure;
}

void StationMessages::unhook(long window, long /*previousProcedure*/) {
    std::erase_if(own_,
                  [window](const auto& own) { return HandleToLong(own.second.window->handle()) == window; });
}

} // namespace windows_ports
