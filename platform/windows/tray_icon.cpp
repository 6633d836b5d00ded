#include "platform/windows/tray_icon.h"

#include "platform/windows/mailbox.h"
#include "platform/windows/text.h"
#include "runtime/errors.h"

#include <algorithm>
#include <exception>
#include <future>
#include <optional>
#include <shellapi.h>
#include <string_view>
#include <system_error>
#include <thread>
#include <utility>

namespace windows_ports {

namespace {

constexpr UINT kIconEvent = WM_APP;
constexpr UINT kIconId = 1;
constexpr UINT_PTR kQuit = 1;

/// Lives on the icon's thread.
class Icon {
  public:
    Icon(int icon, std::wstring name, std::function<void()> quit)
        : name_(std::move(name)), quit_(std::move(quit)),
          taskbarCreated_(RegisterWindowMessageW(L"TaskbarCreated")),
          window_(Window::Kind::TopLevel, [this](UINT message, WPARAM wParam, LPARAM lParam) {
              return handle(message, wParam, lParam);
          }) {
        // Lets a desktop with fewer rights than ours report its restart.
        ChangeWindowMessageFilterEx(window_.handle(), taskbarCreated_, MSGFLT_ALLOW, nullptr);
        data_.cbSize = sizeof data_;
        data_.hWnd = window_.handle();
        data_.uID = kIconId;
        data_.uFlags = NIF_MESSAGE | NIF_ICON | NIF_TIP | NIF_SHOWTIP;
        data_.uCallbackMessage = kIconEvent;
        data_.uVersion = NOTIFYICON_VERSION_4;
        data_.hIcon = static_cast<HICON>(LoadImageW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(icon),
                                                    IMAGE_ICON, GetSystemMetrics(SM_CXSMICON),
                                                    GetSystemMetrics(SM_CYSMICON), LR_DEFAULTCOLOR));
    }
    Icon(const Icon&) = delete;
    Icon& operator=(const Icon&) = delete;
    ~Icon() {
        Shell_NotifyIconW(NIM_DELETE, &data_);
        if (data_.hIcon) DestroyIcon(data_.hIcon);
    }

    void show(std::wstring state) {
        state_ = std::move(state);
        const std::wstring tip = (name_ + L": " + state_).substr(0, std::size(data_.szTip) - 1);
        *std::ranges::copy(tip, static_cast<wchar_t*>(data_.szTip)).out = L'\0';
        if (!Shell_NotifyIconW(NIM_MODIFY, &data_)) add();
    }

  private:
    void add() {
        if (Shell_NotifyIconW(NIM_ADD, &data_)) Shell_NotifyIconW(NIM_SETVERSION, &data_);
    }

    std::optional<LRESULT> handle(UINT message, WPARAM wParam, LPARAM lParam) {
        if (message == taskbarCreated_) {
            add();
            return 0;
        }
        if (message != kIconEvent) return std::nullopt;
        const UINT event = LOWORD(lParam);
        if (event == WM_CONTEXTMENU || event == NIN_SELECT || event == NIN_KEYSELECT)
            openMenu(xOf(wParam), yOf(wParam));
        return 0;
    }

    static int xOf(WPARAM position) { return static_cast<short>(LOWORD(position)); }
    static int yOf(WPARAM position) { return static_cast<short>(HIWORD(position)); }

    void openMenu(int x, int y) {
        const HMENU menu = CreatePopupMenu();
        if (!menu) return;
        AppendMenuW(menu, MF_STRING | MF_GRAYED, 0, state_.c_str());
        AppendMenuW(menu, MF_SEPARATOR, 0, nullptr);
        AppendMenuW(menu, MF_STRING, kQuit, L"&Quit");
        // Otherwise a click elsewhere would not close the menu.
        SetForegroundWindow(window_.handle());
        const BOOL chosen = TrackPopupMenu(menu, TPM_RETURNCMD | TPM_NONOTIFY | TPM_RIGHTBUTTON, x, y, 0,
                                           window_.handle(), nullptr);
        DestroyMenu(menu);
        if (static_cast<UINT_PTR>(chosen) == kQuit) quit_();
    }

    std::wstring name_;
    std::wstring state_;
    std::function<void()> quit_;
    UINT taskbarCreated_;
    Window window_;
    NOTIFYICONDATAW data_{};
};

} // namespace

class TrayIcon::Impl {
  public:
    Impl(int icon, std::wstring name, std::wstring state, std::function<void()> quit) {
        std::promise<Mailbox::Slot> ready;
        auto slot = ready.get_future();
        try {
            thread_ = std::thread(
                [this, ready = std::move(ready), icon, name = std::move(name), state = std::move(state),
                 quit = std::move(quit)]() mutable { run(ready, icon, name, state, quit); });
        } catch (const std::system_error& error) {
            throw runtime::ObjectError(std::string("Cannot show an icon: ") + error.what());
        }
        try {
            slot_.emplace(slot.get());
        } catch (...) {
            thread_.join();
            throw;
        }
    }
    Impl(const Impl&) = delete;
    Impl& operator=(const Impl&) = delete;
    ~Impl() {
        slot_->post([] { PostQuitMessage(0); });
        thread_.join();
    }

    void show(std::wstring state) {
        slot_->post([this, state = std::move(state)] { icon_->show(state); });
    }

  private:
    /// The life of the icon's thread.
    void run(std::promise<Mailbox::Slot>& ready, int icon, const std::wstring& name,
             const std::wstring& state, const std::function<void()>& quit) {
        std::optional<Mailbox> mailbox;
        std::optional<Icon> shown;
        try {
            mailbox.emplace();
            shown.emplace(icon, name, quit);
        } catch (const runtime::ObjectError&) {
            ready.set_exception(std::current_exception()); // for who wants the icon
            return;
        }
        icon_ = &*shown;
        ready.set_value(mailbox->slot());
        shown->show(state);
        MSG message;
        while (GetMessageW(&message, nullptr, 0, 0) > 0)
            DispatchMessageW(&message);
    }

    Icon* icon_ = nullptr; // for the icon's thread
    std::thread thread_;
    std::optional<Mailbox::Slot> slot_;
};

TrayIcon::TrayIcon(int icon, const std::string& name, const std::string& state, std::function<void()> quit)
    : impl_(std::make_unique<Impl>(icon, wide(name), wide(state), std::move(quit))) {}

TrayIcon::~TrayIcon() = default;

void TrayIcon::show(const std::string& state) {
    impl_->show(wide(state));
}

} // namespace windows_ports
