#include "platform/windows/window.h"

#include "platform/windows/text.h"
#include "runtime/errors.h"

namespace windows_ports {

namespace {

constexpr const wchar_t* kClass = L"TwinstepHiddenWindow";

} // namespace

Window::Window(Kind kind, Procedure procedure)
    : procedure_(std::make_shared<Procedure>(std::move(procedure))) {
    static const ATOM windowClass = [] {
        WNDCLASSEXW description{};
        description.cbSize = sizeof description;
        description.lpfnWndProc = dispatch;
        description.hInstance = GetModuleHandleW(nullptr);
        description.lpszClassName = kClass;
        return RegisterClassExW(&description);
    }();
    handle_ = windowClass == 0
                  ? nullptr
                  : CreateWindowExW(WS_EX_TOOLWINDOW | WS_EX_NOACTIVATE, kClass, L"", WS_POPUP, 0, 0, 0, 0,
                                    kind == Kind::MessageOnly ? HWND_MESSAGE : nullptr, nullptr,
                                    GetModuleHandleW(nullptr), nullptr);
    if (!handle_) throw runtime::ObjectError("Cannot make a window: " + reason(GetLastError()));
    SetWindowLongPtrW(handle_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
}

Window::~Window() {
    SetWindowLongPtrW(handle_, GWLP_USERDATA, 0);
    DestroyWindow(handle_);
}

LRESULT CALLBACK Window::dispatch(HWND handle, UINT message, WPARAM wParam, LPARAM lParam) noexcept {
    const auto* const window = reinterpret_cast<const Window*>(GetWindowLongPtrW(handle, GWLP_USERDATA));
    if (window) {
        // It may go while it works.
        const auto procedure = window->procedure_;
        if (const auto answer = (*procedure)(message, wParam, lParam)) return *answer;
    }
    // Another program must not close what is ours; the system would.
    if (message == WM_CLOSE) return 0;
    return DefWindowProcW(handle, message, wParam, lParam);
}

} // namespace windows_ports
