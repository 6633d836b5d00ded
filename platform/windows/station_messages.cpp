#include "platform/windows/station_messages.h"

#include "platform/windows/text.h"
#include "runtime/errors.h"

#include <algorithm>

namespace windows_ports {

namespace {

/// Stands for the procedure that all our windows have.
constexpr long kOurProcedure = 1;

/// Another program's window of a title.
class Search {
  public:
    explicit Search(const std::wstring& title) : title_(title), buffer_(title.size() + 2, L'\0') {}

    HWND run() {
        EnumWindows(look, reinterpret_cast<LPARAM>(this));
        return found_;
    }
    bool fits(HWND window) {
        const int length = InternalGetWindowText(window, buffer_.data(), static_cast<int>(buffer_.size()));
        if (std::wstring_view(buffer_.data(), static_cast<std::size_t>(std::max(length, 0))) != title_)
            return false;
        DWORD process = 0;
        GetWindowThreadProcessId(window, &process);
        return process != GetCurrentProcessId();
    }

  private:
    static BOOL CALLBACK look(HWND window, LPARAM argument) noexcept {
        auto& search = *reinterpret_cast<Search*>(argument);
        if (!search.fits(window)) return TRUE;
        search.found_ = window;
        return FALSE;
    }

    const std::wstring& title_;
    std::wstring buffer_; // with room for one character more, so that a longer title shows, and the end
    HWND found_ = nullptr;
};

} // namespace

long StationMessages::registerMessage(const std::string& name) {
    const UINT id = RegisterWindowMessageW(wide(name).c_str());
    if (id == 0) throw runtime::ObjectError("Cannot register a message: " + reason(GetLastError()));
    return static_cast<long>(id);
}

long StationMessages::findWindow(const std::string& title) {
    // Nothing is kept of windows that are gone, so there are never more than windows.
    std::erase_if(found_, [](const auto& known) { return !Search(known.first).fits(known.second); });
    const std::wstring text = wide(title);
    if (text.empty()) return 0;
    if (const auto known = found_.find(text); known != found_.end()) return HandleToLong(known->second);
    const HWND window = Search(text).run();
    if (window) found_[text] = window;
    return HandleToLong(window);
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
