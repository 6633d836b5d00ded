#pragma once

#include "platform/windows/mailbox.h"

#include <functional>
#include <memory>

namespace windows_ports {

/// Waits for a handle of the kernel, on one of the system's threads, until the object is destroyed.
class Wait {
  public:
    /// Calls `ready` through the mailbox: once for a process that ends, and at each time that an event is set
    /// which resets itself. The handle must stay open longer than this object.
    Wait(const Mailbox& mailbox, HANDLE handle, std::function<void()> ready, bool once);
    Wait(const Wait&) = delete;
    Wait& operator=(const Wait&) = delete;
    ~Wait();

  private:
    static void CALLBACK signalled(void* context, BOOLEAN timedOut) noexcept;

    Mailbox::Slot slot_;
    std::shared_ptr<std::function<void()>> ready_;
    HANDLE wait_ = nullptr;
};

} // namespace windows_ports
