#pragma once

#include "platform/linux/crash_notice.h"
#include "platform/linux/fd_watcher.h"
#include "platform/linux/watchdog_process.h"

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>

namespace linux_ports {

/// A process of its own that switches the outputs off when this one ends, however it ends, and when it hangs
/// for two seconds while an engine runs. One object at a time.
///
/// A second one stands by, so that a coil does not stay on where the first is killed just before this
/// process: it guards the same and switches it off at the end too, but while an engine runs it writes
/// nothing. It takes the place of a first one that has ended, at once, and another one is started to stand
/// by. Where none can be had to stand by, the first one guards alone.
///
/// Guard a device before its first coil is switched on, and forget it before it is closed: the watchdog
/// shares the port, so that the kernel's claim lasts as long as either has it. A guard that is refused throws
/// runtime::ObjectError, naming the device and the reason; what is guarded otherwise stays so.
class Watchdog {
  public:
    /// Beside this program while it stands in its build folder, else where it is installed.
    static std::filesystem::path installedProgram();

    /// Throws runtime::ObjectError, naming the program and the reason, when it cannot be started.
    explicit Watchdog(std::filesystem::path program = installedProgram());
    Watchdog(const Watchdog&) = delete;
    Watchdog& operator=(const Watchdog&) = delete;
    /// The watchdog switches the outputs off once more, lets go of them and ends; this waits for that, but no
    /// longer than 600 ms.
    ~Watchdog();

    // One port is guarded at a time. A descriptor must stay open until forgetPort. `off` is the byte, or the
    // levels of the lines, at which no coil is energised.

    /// A printer port that ppdev has claimed.
    void guardPort(int descriptor, std::uint8_t off);
    /// The data register of a printer port without a driver, an I/O address from 1 to 0xFFFF.
    void guardPortAddress(unsigned address, std::uint8_t off);
    /// Eight lines of a GPIO chip, in one request.
    void guardLines(int descriptor, std::uint8_t off);
    /// A board on a serial line; `off` is the message that switches its outputs off.
    void guardSerial(int descriptor, std::span<const std::uint8_t> off);
    void forgetPort();
    /// A K8055 board, by its hidraw device ("/dev/hidraw0").
    void guardBoard(const std::string& device);
    void forgetBoard();

    /// This process is alive. Call it some four times a second from the event loop, and at once when an
    /// engine starts or stops.
    void beat(bool engineRuns);

    /// From the event loop, until the returned watch is destroyed, which is before this object is:
    /// `tripped`: the outputs were switched off, because beats stayed away for two seconds.
    /// `unguarded`: the watchdog has ended, and a new one could not take its place, for this reason. It is
    /// tried again when an engine starts, and told again where that fails. A new one that stands is not told.
    std::unique_ptr<FdWatch> watch(FdWatcher& watcher, std::function<void()> tripped,
                                   std::function<void(const std::string& why)> unguarded);

  private:
    class Watching;
    using Clock = std::chrono::steady_clock;
    struct GuardedPort {
        watchdog::Request request;
        int descriptor;
        std::string name;
    };

    void guard(const GuardedPort& port);
    void require(watchdog::Request request, int descriptor, const std::string& device);
    void forget(watchdog::Kind kind);
    /// A new watchdog with all that is guarded.
    std::unique_ptr<WatchdogProcess> start();
    /// This one hears from now on what the last one heard.
    void follow(std::unique_ptr<WatchdogProcess> process);
    /// The one that stands by, or else a new one, takes over.
    void replace();
    void countShortLife();
    void standBy();
    void watchProcess();
    void onTripped();
    void onEnd();

    std::filesystem::path program_;
    CrashNotice crashNotice_;
    std::unique_ptr<WatchdogProcess> process_; // none: it has ended, and could not be replaced
    std::unique_ptr<WatchdogProcess> reserve_; // none: it could not be started
    Clock::time_point started_ = Clock::now();
    int shortLives_ = 0; // in a row
    // What is guarded.
    std::optional<GuardedPort> port_;
    std::optional<std::string> board_;
    bool engineRuns_ = false;
    bool reserveWanted_ = false; // as soon as no engine runs

    FdWatcher* watcher_ = nullptr;
    std::function<void()> tripped_;
    std::function<void(const std::string&)> unguarded_;
    FileDescriptor missing_; // eventfd: an engine has started without a watchdog
    std::unique_ptr<FdWatch> trippedWatch_, endWatch_, reserveWatch_, missingWatch_;
};

} // namespace linux_ports
