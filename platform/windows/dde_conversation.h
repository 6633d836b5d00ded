#pragma once

#include <atomic>
#include <functional>
#include <string>
#include <windows.h>

namespace windows_ports {

/// Ends a conversation from another thread.
class Cancellation {
  public:
    /// From the conversation's thread, which must have a message queue.
    void begin() { thread_ = GetCurrentThreadId(); }
    /// From any thread, once; does not wait.
    void cancel();
    bool cancelled() const { return cancelled_; }

  private:
    std::atomic<bool> cancelled_ = false;
    std::atomic<DWORD> thread_ = 0;
};

struct DdeItem {
    std::wstring application, topic, item;
    /// DDE knows no upper and lower case.
    bool isSame(const DdeItem& other) const;
};

/// What a conversation tells, on its own thread.
struct DdeListener {
    std::function<void()> opened;
    std::function<void(std::string text)> changed;
    /// It was open and is over; the server ended it.
    std::function<void()> closed;
    /// It did not open.
    std::function<void()> failed;
};

/// Holds a hot link to an item until the server ends it or it is cancelled; one of closed and failed is told
/// last, unless it is cancelled. Asking for the server can take as long as some program in the system hangs,
/// so this wants a thread of its own.
void converse(const DdeItem& item, const DdeListener& listener, Cancellation& cancellation);

} // namespace windows_ports
