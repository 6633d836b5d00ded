#include "platform/windows/timers.h"

#include "platform/windows/text.h"
#include "runtime/errors.h"
#include "runtime/step_schedule.h"

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <utility>

namespace windows_ports {

namespace {

using Time = runtime::StepSchedule::Time;

/// Windows 10 has it from 1803 on; the headers may be older. Without it a timer is as coarse as the system's
/// clock, 1 to 16 ms.
constexpr DWORD kHighResolution = 0x2;

Time now() {
    return std::chrono::steady_clock::now().time_since_epoch();
}

HANDLE createTimer() {
    if (const HANDLE fine = CreateWaitableTimerExW(nullptr, nullptr, kHighResolution, TIMER_ALL_ACCESS))
        return fine;
    return CreateWaitableTimerExW(nullptr, nullptr, 0, TIMER_ALL_ACCESS);
}

/// The kernel's timer is armed anew for each tick, so that the schedule alone decides. One of the system's
/// threads waits for it and posts; the tick runs where the mailbox is.
class KernelTimer : public platform::PeriodicTimer {
  public:
    KernelTimer(Mailbox::Slot slot, std::function<void()> tick)
        : slot_(std::move(slot)), state_(std::make_shared<State>(std::move(tick))), timer_(createTimer()) {
        if (!timer_) throw runtime::ObjectError("Cannot create a timer: " + reason(GetLastError()));
        if (!RegisterWaitForSingleObject(&wait_, timer_, expired, this, INFINITE, WT_EXECUTEINWAITTHREAD)) {
            const DWORD error = GetLastError();
            CloseHandle(timer_);
            throw runtime::ObjectError("Cannot create a timer: " + reason(error));
        }
    }
    KernelTimer(const KernelTimer&) = delete;
    KernelTimer& operator=(const KernelTimer&) = delete;
    ~KernelTimer() override {
        stop();
        UnregisterWaitEx(wait_, INVALID_HANDLE_VALUE); // an expiry that is being posted ends first
        CloseHandle(timer_);
    }

    void start(Time period) override {
        state_->running = true;
        state_->schedule.start(now(), period);
        arm();
    }

    void setPeriod(Time period) override {
        state_->schedule.setInterval(now(), period);
        arm();
    }

    void stop() override {
        state_->running = false;
        CancelWaitableTimer(timer_);
    }

    Time untilTick() const override { return state_->schedule.next() - now(); }

  private:
    struct State {
        explicit State(std::function<void()> toRun) : tick(std::move(toRun)) {}
        std::function<void()> tick;
        runtime::StepSchedule schedule;
        bool running = false;
    };

    static void CALLBACK expired(void* context, BOOLEAN /*timedOut*/) noexcept {
        auto* const timer = static_cast<KernelTimer*>(context);
        timer->slot_.post([timer, state = std::weak_ptr(timer->state_)] {
            // A running callback always belongs to a live timer.
            if (const auto alive = state.lock(); alive && alive->running) timer->due(alive);
        });
    }

    void due(const std::shared_ptr<State>& state) {
        // This expiry is from before a restart, or a little too early: set the timer again.
        if (now() < state->schedule.next()) {
            arm();
            return;
        }
        // Set the timer before the tick: a tick that opens a box must not stop the following ticks.
        state->schedule.ticked(now());
        arm();
        state->tick(); // may destroy this timer
    }

    void arm() {
        constexpr std::int64_t kUnit = 100; // nanoseconds; a negative time is one from now
        LARGE_INTEGER when;
        when.QuadPart = std::min<std::int64_t>(-(state_->schedule.next() - now()).count() / kUnit, -1);
        SetWaitableTimer(timer_, &when, 0, nullptr, nullptr, FALSE);
    }

    Mailbox::Slot slot_;
    std::shared_ptr<State> state_;
    HANDLE timer_;
    HANDLE wait_ = nullptr;
};

} // namespace

std::unique_ptr<platform::PeriodicTimer> Timers::create(std::function<void()> tick) {
    return std::make_unique<KernelTimer>(mailbox_.slot(), std::move(tick));
}

} // namespace windows_ports
