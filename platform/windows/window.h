#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <windows.h>

namespace windows_ports {

/// A window that is never shown, for messages alone. It belongs to the thread that makes it, which must
/// destroy it too. It has no title, so that nobody who looks for a station program finds it.
class Window {
  public:
    enum class Kind {
        MessageOnly, // out of reach for other programs, and for what is sent to all windows
        TopLevel
    };
    /// Nothing: the system's own answer. It may destroy the window.
    using Procedure = std::function<std::optional<LRESULT>(UINT message, WPARAM wParam, LPARAM lParam)>;

    /// Throws runtime::ObjectError when the system has no window left.
    Window(Kind kind, Procedure procedure);
    Window(const Window&) = delete;
    Window& operator=(const Window&) = delete;
    ~Window();

    HWND handle() const { return handle_; }

  private:
    static LRESULT CALLBACK dispatch(HWND handle, UINT message, WPARAM wParam, LPARAM lParam) noexcept;

    std::shared_ptr<Procedure> procedure_;
    HWND handle_ = nullptr;
};

} // namespace windows_ports
