#include "platform/windows/dde_conversation.h"

#include "platform/windows/text.h"

#include <algorithm>
#include <dde.h>
#include <ddeml.h>
#include <optional>
#include <string_view>
#include <utility>

namespace windows_ports {

namespace {

constexpr DWORD kPatience = 1000;      // milliseconds for a server's answer
constexpr UINT kLookAfterServer = 500; // milliseconds

/// A string as the DDE library keeps it; null where it does not take it.
class Name {
  public:
    Name(DWORD instance, const std::wstring& text)
        : instance_(instance),
          handle_(text.empty() ? nullptr : DdeCreateStringHandleW(instance, text.c_str(), CP_WINUNICODE)) {}
    Name(const Name&) = delete;
    Name& operator=(const Name&) = delete;
    ~Name() {
        if (handle_) DdeFreeStringHandle(instance_, handle_);
    }
    HSZ get() const { return handle_; }

  private:
    DWORD instance_;
    HSZ handle_;
};

/// One instance of the DDE library, and the conversation it is for. The library's callback finds it by its
/// thread.
class Conversation {
  public:
    Conversation(const DdeListener& listener, Cancellation& cancellation)
        : listener_(listener), cancellation_(cancellation) {
        current() = this;
        DdeInitializeW(&instance_, callback,
                       APPCLASS_STANDARD | APPCMD_CLIENTONLY | CBF_SKIP_CONNECT_CONFIRMS |
                           CBF_SKIP_REGISTRATIONS | CBF_SKIP_UNREGISTRATIONS,
                       0);
    }
    Conversation(const Conversation&) = delete;
    Conversation& operator=(const Conversation&) = delete;
    ~Conversation() {
        if (advised_ && !over_) transact(XTYP_ADVSTOP);
        // What still comes in while it ends concerns nobody.
        over_ = true;
        if (conversation_) DdeDisconnect(conversation_);
        item_.reset();
        if (instance_ != 0) DdeUninitialize(instance_);
        current() = nullptr;
    }

    bool open(const DdeItem& item);
    /// Until the server ends the conversation or it is cancelled.
    void listen();

  private:
    static Conversation*& current() {
        thread_local Conversation* conversation = nullptr;
        return conversation;
    }
    static HDDEDATA CALLBACK callback(UINT type, UINT format, HCONV conversation, HSZ topic, HSZ item,
                                      HDDEDATA data, ULONG_PTR first, ULONG_PTR second) noexcept;
    bool goesOn() const { return !over_ && !cancellation_.cancelled(); }
    HWND server() const;
    HDDEDATA transact(UINT type) const;
    void tell(HDDEDATA data) const;

    const DdeListener& listener_;
    Cancellation& cancellation_;
    DWORD instance_ = 0;
    HCONV conversation_ = nullptr;
    std::optional<Name> item_;
    bool advised_ = false;
    bool opened_ = false;
    bool over_ = false;
};

bool Conversation::open(const DdeItem& item) {
    if (instance_ == 0) return false;
    const Name application(instance_, item.application);
    const Name topic(instance_, item.topic);
    item_.emplace(instance_, item.item);
    // To the library, null would mean any application and any topic.
    if (!application.get() || !topic.get() || !item_->get() || !goesOn()) return false;

    conversation_ = DdeConnect(instance_, application.get(), topic.get(), nullptr);
    if (!conversation_ || !goesOn()) return false;
    advised_ = transact(XTYP_ADVSTART) != nullptr;
    if (!advised_ || !goesOn()) return false;
    opened_ = true;
    listener_.opened();

    // Asked for after the link is made, so that no change is missed between the two. A server that gives its
    // item to links alone refuses, and the first change brings the text.
    const HDDEDATA present = transact(XTYP_REQUEST);
    if (present) {
        if (goesOn()) tell(present);
        DdeFreeDataHandle(present);
    }
    return true;
}

HDDEDATA Conversation::transact(UINT type) const {
    return DdeClientTransaction(nullptr, 0, conversation_, item_->get(), CF_TEXT, type, kPatience, nullptr);
}

void Conversation::listen() {
    // A server that crashed says no farewell.
    const UINT_PTR timer = SetTimer(nullptr, 0, kLookAfterServer, nullptr);
    MSG message;
    while (goesOn() && GetMessageW(&message, nullptr, 0, 0) > 0) {
        if (!message.hwnd && message.message == WM_TIMER) {
            if (!IsWindow(server())) over_ = true;
            continue;
        }
        // The library under Wine keeps a server's farewell to itself.
        if (message.message == WM_DDE_TERMINATE && reinterpret_cast<HWND>(message.wParam) == server())
            over_ = true;
        DispatchMessageW(&message);
    }
    KillTimer(nullptr, timer);
    if (!cancellation_.cancelled()) listener_.closed();
}

/// The server's window of this conversation, null when the library knows it is gone.
HWND Conversation::server() const {
    CONVINFO info{};
    info.cb = sizeof info;
    if (DdeQueryConvInfo(conversation_, QID_SYNC, &info) == 0 || (info.wStatus & ST_TERMINATED))
        return nullptr;
    return info.hwndPartner;
}

/// The item's text: what stands before the first zero byte.
void Conversation::tell(HDDEDATA data) const {
    DWORD size = 0;
    const auto* const bytes = reinterpret_cast<const char*>(DdeAccessData(data, &size));
    if (!bytes) return;
    const auto* const end = std::find(bytes, bytes + size, '\0');
    std::string text = utf8FromAnsi({bytes, static_cast<std::size_t>(end - bytes)});
    DdeUnaccessData(data);
    listener_.changed(std::move(text));
}

HDDEDATA CALLBACK Conversation::callback(UINT type, UINT format, HCONV /*conversation*/, HSZ /*topic*/,
                                         HSZ /*item*/, HDDEDATA data, ULONG_PTR /*first*/,
                                         ULONG_PTR /*second*/) noexcept {
    auto* const self = current();
    switch (type) {
    case XTYP_ADVDATA:
        if (self && self->opened_ && self->goesOn() && format == CF_TEXT && data) self->tell(data);
        return reinterpret_cast<HDDEDATA>(static_cast<std::uintptr_t>(DDE_FACK));
    case XTYP_DISCONNECT:
        if (self) {
            self->over_ = true;
            // The loop waits for a message, and this is none.
            PostThreadMessageW(GetCurrentThreadId(), WM_NULL, 0, 0);
        }
        return nullptr;
    default:
        return nullptr;
    }
}

} // namespace

bool DdeItem::isSame(const DdeItem& other) const {
    const auto same = [](const std::wstring& one, const std::wstring& two) {
        return CompareStringOrdinal(one.c_str(), -1, two.c_str(), -1, TRUE) == CSTR_EQUAL;
    };
    return same(application, other.application) && same(topic, other.topic) && same(item, other.item);
}

void Cancellation::cancel() {
    cancelled_ = true;
    // Where there is no thread yet, it finds the mark before it waits.
    if (const DWORD thread = thread_) PostThreadMessageW(thread, WM_NULL, 0, 0);
}

void converse(const DdeItem& item, const DdeListener& listener, Cancellation& cancellation) {
    MSG message;
    PeekMessageW(&message, nullptr, 0, 0, PM_NOREMOVE); // makes the message queue
    cancellation.begin();
    // Given up before it began: what follows is costly.
    if (cancellation.cancelled()) return;
    Conversation conversation(listener, cancellation);
    if (conversation.open(item)) {
        conversation.listen();
    } else if (!cancellation.cancelled()) {
        listener.failed();
    }
}

} // namespace windows_ports
