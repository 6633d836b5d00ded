#include "platform/windows/mailbox.h"

#include <utility>

namespace windows_ports {

namespace {

constexpr UINT kWakeUp = WM_APP;

} // namespace

void Mailbox::Slot::post(Call call) const {
    const std::lock_guard lock(box_->mutex);
    if (!box_->window) return;
    box_->calls.push_back(std::move(call));
    // One message for all calls that wait: a thread's message queue has an end.
    if (box_->calls.size() == 1) PostMessageW(box_->window, kWakeUp, 0, 0);
}

Mailbox::Mailbox()
    : window_(Window::Kind::MessageOnly,
              [box = box_](UINT message, WPARAM, LPARAM) -> std::optional<LRESULT> {
                  if (message != kWakeUp) return std::nullopt;
                  std::vector<Call> calls;
                  {
                      const std::lock_guard lock(box->mutex);
                      calls.swap(box->calls);
                  }
                  for (const Call& call : calls)
                      call();
                  return 0;
              }) {
    box_->window = window_.handle();
}

Mailbox::~Mailbox() {
    std::vector<Call> dropped; // outside the lock: what goes with a call may post
    const std::lock_guard lock(box_->mutex);
    box_->window = nullptr;
    dropped.swap(box_->calls);
}

} // namespace windows_ports
