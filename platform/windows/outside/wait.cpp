#include "platform/windows/outside/wait.h"

#include "platform/windows/text.h"
#include "runtime/errors.h"

#include <utility>

namespace windows_ports {

Wait::Wait(const Mailbox& mailbox, HANDLE handle, std::function<void()> ready, bool once)
    : slot_(mailbox.slot()), ready_(std::make_shared<std::function<void()>>(std::move(ready))) {
    const ULONG flags = WT_EXECUTEINWAITTHREAD | (once ? WT_EXECUTEONLYONCE : 0U);
    if (!RegisterWaitForSingleObject(&wait_, handle, signalled, this, INFINITE, flags))
        throw runtime::ObjectError("Cannot wait for a program: " + reason(GetLastError()));
}

Wait::~Wait() {
    UnregisterWaitEx(wait_, INVALID_HANDLE_VALUE); // a call that is being posted is posted first
}

void Wait::signalled(void* context, BOOLEAN /*timedOut*/) noexcept {
    const auto* const wait = static_cast<const Wait*>(context);
    wait->slot_.post([ready = std::weak_ptr(wait->ready_)] {
        if (const auto alive = ready.lock()) (*alive)();
    });
}

} // namespace windows_ports
