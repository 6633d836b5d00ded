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

/// A service that gives real-time scheduling to threads of users who may not take it themselves.
class RealtimeBroker {
  public:
    struct Limits {
        int priority; // the highest that it gives
        std::chrono::microseconds
            withoutRest; // the process must not allow its threads to run longer at a stretch
    };

    virtual ~RealtimeBroker() = default;
    virtual std::string name() const = 0;
    /// Throws runtime::ObjectError when the service cannot be reached, as does raise() when it refuses.
    virtual Limits limits() = 0;
    virtual void raise(pid_t thread, int priority) = 0;
};

/// Scheduling of the thread that made the object, in real time for as long as the object lives where the
/// system allows it: taken by the limit `rtprio`, or else given by a broker. Programs and threads that are
/// started meanwhile do not inherit it. One object at a time.
///
/// A handler that runs for a tenth of a second without a rest would hold up everything else on its
/// processor, and a broker's limit would have the kernel kill the program, with hot coils. The thread then
/// falls back to usual scheduling, and is raised again when it comes back to the event loop, which does not
/// wait for a broker then.
class Realtime {
  public:
    struct State {
        bool granted = false;
        std::string how;  // empty where the thread took it itself, or the broker's name
        int priority = 0; // 1 to 99; higher goes first
        bool memoryLocked = false;
        std::string whyNot; // what kept the thread, or else the memory, from it

        /// "real-time 20 (RealtimeKit)", "not real-time: ...".
        std::string text() const;
    };

    /// `changed` is told when the state is another one later. A refusal is no error: state() tells it.
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
