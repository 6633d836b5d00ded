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

/// The events of a conversation, on its own thread.
struct DdeListener {
    std::function<void()> opened;
    std::function<void(std::string text)> changed;
    /// The server has ended the open conversation.
    std::function<void()> closed;
    /// The conversation could not be opened.
    std::function<void()> failed;
};

/// Holds a hot link to an item until the server ends it or it is cancelled. The last event is closed or
/// failed, unless it is cancelled. Run it on a separate thread: any hanging program in the system blocks the
/// search for the server.
void converse(const DdeItem& item, const DdeListener& listener, Cancellation& cancellation);

} // namespace windows_ports
