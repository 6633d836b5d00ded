#pragma once

#include "platform/windows/window.h"

#include <functional>
#include <memory>
#include <mutex>
#include <vector>

namespace windows_ports {

/// Brings calls from any thread to the thread that made the mailbox, in order, through its message loop: also
/// while a message box or a menu runs a loop of its own.
class Mailbox {
  public:
    using Call = std::function<void()>;

  private:
    struct Box {
        std::mutex mutex;
        std::vector<Call> calls;
        HWND window = nullptr; // null when the mailbox is gone
    };

  public:
    /// The object for other threads. It outlives the mailbox; later posts are dropped.
    class Slot {
      public:
        void post(Call call) const;

      private:
        friend Mailbox;
        explicit Slot(std::shared_ptr<Box> box) : box_(std::move(box)) {}
        std::shared_ptr<Box> box_;
    };

    Mailbox();
    Mailbox(const Mailbox&) = delete;
    Mailbox& operator=(const Mailbox&) = delete;
    ~Mailbox();

    Slot slot() const { return Slot(box_); }

  private:
    std::shared_ptr<Box> box_ = std::make_shared<Box>();
    Window window_;
};

} // namespace windows_ports
