#include "platform/windows/timers.h"

#include "platform/windows/text.h"
#include "runtime/errors.h"

#include <algorithm>
#include <array>
#include <chrono>

namespace windows_ports {

namespace {

using Time = schedule::ScheduledTimers::Time;

/// Windows 10 has it from 1803 on; the headers may be older.
constexpr DWORD kHighResolution = 0x2;

/// What a timer may be early by.
constexpr Time kNearly = std::chrono::milliseconds(1);

Time systemTime() {
    return std::chrono::steady_clock::now().time_since_epoch();
}

HANDLE createTimer() {
    if (const HANDLE fine = CreateWaitableTimerExW(nullptr, nullptr, kHighResolution, TIMER_ALL_ACCESS))
        return fine;
    if (const HANDLE coarse = CreateWaitableTimerExW(nullptr, nullptr, 0, TIMER_ALL_ACCESS)) return coarse;
    throw runtime::ObjectError("Cannot create a timer: " + reason(GetLastError()));
}

void set(HANDLE timer, Time wait) {
    constexpr Time::rep kUnit = 100; // nanoseconds; a negative time is one from now
    LARGE_INTEGER when;
    when.QuadPart = std::min<LONGLONG>(-wait.count() / kUnit, -1);
    SetWaitableTimer(timer, &when, 0, nullptr, nullptr, FALSE);
}

/// How long before the moment a wait must end: nothing where the system waits as long as it is asked to. The
/// median of a few waits, which says nothing of a busy machine.
Time measuredEarly(HANDLE timer) {
    constexpr Time kWait = std::chrono::microseconds(900);
    constexpr Time kCoarse = std::chrono::milliseconds(1);
    constexpr Time kReserve = std::chrono::microseconds(200);
    std::array<Time, 5> waits{};
    for (Time& wait : waits) {
        const Time begun = systemTime();
        set(timer, kWait);
        WaitForSingleObject(timer, INFINITE);
        wait = systemTime() - begun;
    }
    std::ranges::sort(waits);
    const Time usual = waits[waits.size() / 2];
    return usual < kCoarse ? Time() : usual + kReserve;
}

} // namespace

Timers::Timers() : timer_(createTimer()), early_(measuredEarly(timer_)), when_(0) {
    thread_ = std::thread([this] { waitForAlarms(); });
}

Timers::~Timers() {
    ending_ = true;
    set(timer_, {});
    thread_.join();
    CloseHandle(timer_);
}

Timers::Time Timers::now() const {
    return systemTime();
}

void Timers::setAlarm(Time when) {
    when_ = when.count();
    ++alarms_;
    // A thread that is awake sees an alarm that is soon due.
    if (!awake_ || when - now() > early_) set(timer_, when - early_ - now());
}

void Timers::waitForAlarms() {
    // A wait that yields keeps others from the processor if it goes before them.
    if (early_ == Time()) SetThreadPriority(GetCurrentThread(), THREAD_PRIORITY_TIME_CRITICAL);
    const Mailbox::Slot slot = mailbox_.slot();
    const Time soon = early_ + kNearly;
    const auto left = [this] { return Time(when_) - systemTime(); };
    unsigned done = 0;
    while (!ending_) {
        awake_ = false;
        if (alarms_ == done || left() > soon) WaitForSingleObject(timer_, INFINITE);
        awake_ = true;
        // The next alarm may be as near as this one.
        Time::rep rest = (systemTime() + early_).count();
        while (!ending_) {
            const unsigned alarm = alarms_;
            if (alarm == done ? systemTime().count() > rest : left() > soon) break;
            if (alarm == done || left() > Time()) {
                SwitchToThread();
                continue;
            }
            done = alarm;
            rest = (systemTime() + early_).count();
            slot.post([this] { expired(); });
        }
    }
}

} // namespace windows_ports
