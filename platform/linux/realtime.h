#pragma once

#include "platform/linux/fd_watcher.h"
#include "platform/linux/file_descriptor.h"

#include <chrono>
#include <functional>
#include <future>
#include <memory>
#include <string>
#include <sys/types.h>

namespace linux_ports {

/// A service that gives real-time scheduling to threads of users without that right.
class RealtimeBroker {
  public:
    struct Limits {
        int priority; // the highest priority that the service gives
        std::chrono::microseconds
            withoutRest; // the process must set RLIMIT_RTTIME to at most this time without a rest
    };

    virtual ~RealtimeBroker() = default;
    virtual std::string name() const = 0;
    /// Throws runtime::ObjectError when the service cannot be reached, as does raise() when it refuses.
    virtual Limits limits() = 0;
    virtual void raise(pid_t thread, int priority) = 0;
};

/// Gives real-time scheduling to the thread that makes the object, as long as the object lives and if the
/// system allows it: by the limit `rtprio` or by a broker. Programs and threads started meanwhile do not
/// inherit it. Only one object may exist at a time.
///
/// A handler that runs for a tenth of a second without a rest would block everything else on its processor,
/// and under a broker's limit the kernel would kill the program while the coils are on. So the thread then
/// falls back to normal scheduling. It becomes real-time again when it returns to the event loop; the event
/// loop does not wait for a broker.
class Realtime {
  public:
    struct State {
        bool granted = false;
        std::string how;  // the broker's name; empty if the thread did not need a broker
        int priority = 0; // 1 to 99; higher goes first
        bool memoryLocked = false;
        std::string whyNot; // why the thread is not real-time, or else why memory is not locked

        /// "real-time 20 (RealtimeKit)", "not real-time: ...".
        std::string text() const;
    };

    /// `changed` is called when the state changes later. A refusal is not an error: state() reports it.
    Realtime(FdWatcher& watcher, RealtimeBroker& broker, std::function<void(const State&)> changed);
    Realtime(const Realtime&) = delete;
    Realtime& operator=(const Realtime&) = delete;
    ~Realtime();

    const State& state() const { return state_; }

  private:
    void raise();
    bool takeIt();
    void askBroker();
    void lockMemory();
    void raiseAgain();
    void brokerAnswered();

    RealtimeBroker& broker_;
    std::function<void(const State&)> changed_;
    State state_;
    FileDescriptor fellBack_, answered_;
    std::unique_ptr<FdWatch> fellBackWatch_, answeredWatch_;
    std::future<std::string> asking_; // why the broker refused, if it did
};

} // namespace linux_ports
