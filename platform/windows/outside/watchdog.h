#pragma once

#include "platform/windows/outside/wait.h"
#include "platform/windows/outside/watchdog_process.h"

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace windows_ports {

/// A process of its own that switches the outputs off when this one ends, however it ends, and when it hangs
/// for two seconds while an engine runs. One object at a time.
///
/// A second one stands by, so that no coil stays on where the first is terminated just before this process:
/// it guards the same, but while an engine runs it writes nothing. It takes the place of a first one that has
/// ended, at once, and another one is started to stand by as soon as no engine runs. Where none can be had to
/// stand by, the first one guards alone.
///
/// Guard a device before its first coil is switched on, and forget it before it is closed. A guard that is
/// refused throws runtime::ObjectError, naming the device and the reason; what is guarded otherwise stays so.
class Watchdog {
  public:
    /// Beside this program.
    static std::filesystem::path installedProgram();

    /// Throws runtime::ObjectError, naming the program and the reason, when it cannot be started.
    explicit Watchdog(std::filesystem::path program = installedProgram());
    Watchdog(const Watchdog&) = delete;
    Watchdog& operator=(const Watchdog&) = delete;
    /// The watchdogs switch the outputs off once more and end; this waits for each, 600 ms at most.
    ~Watchdog();

    /// The data register of a printer port, reached through inpoutx64.dll. At `off` no coil is energised.
    void guardPortAddress(unsigned address, std::uint8_t off);
    /// A board on a serial port. The handle stays open until forgetPort; `off` switches all coils off.
    void guardSerial(HANDLE port, std::vector<std::uint8_t> off);
    void forgetPort();
    /// A K8055 board: its HID path, or an empty path and its card address where k8055d.dll has it.
    void guardBoard(const std::string& path, int card);
    void forgetBoard();

    /// This process is alive. Call it some four times a second from the event loop, and at once when an
    /// engine starts or stops.
    void beat(bool engineRuns);

    /// `tripped`: the outputs were switched off, because beats stayed away for two seconds. `unguarded`: the
    /// watchdog has ended, and a new one could not take its place, for this reason. It is tried again when an
    /// engine starts. Not called when another one has taken its place.
    void watch(std::function<void()> tripped, std::function<void(const std::string& why)> unguarded);

  private:
    struct Port {
        unsigned address = 0; // where there is no handle
        HANDLE serial = nullptr;
        std::vector<std::uint8_t> off;
        void guardedBy(WatchdogProcess& process) const;
    };
    struct Board {
        std::string path;
        int card;
        void guardedBy(WatchdogProcess& process) const;
    };

    using Clock = std::chrono::steady_clock;

    void guard(Port port);
    void forget(watchdog::Kind kind);
    /// Asks the first one, and the one that stands by.
    template <class Device>
    void require(const Device& device);
    /// A new watchdog with all that is guarded.
    std::unique_ptr<WatchdogProcess> start();
    /// This one hears from now on what the last one heard.
    void follow(std::unique_ptr<WatchdogProcess> process);
    /// The one that stands by, or else a new one, takes over.
    void replace();
    void ended();
    void countShortLife();
    void standBy();

    const std::filesystem::path program_;
    // What is guarded.
    std::optional<Port> port_;
    std::optional<Board> board_;
    bool engineRuns_ = false;
    bool reserveWanted_ = false; // as soon as no engine runs
    Clock::time_point started_ = Clock::now();
    int shortLives_ = 0; // in a row

    Mailbox mailbox_;
    std::function<void()> tripped_;
    std::function<void(const std::string&)> unguarded_;
    std::unique_ptr<WatchdogProcess> process_; // none: it has ended, and could not be replaced
    std::unique_ptr<WatchdogProcess> reserve_; // none: it could not be started
    std::unique_ptr<Wait> trippedWait_, endWait_, reserveWait_;
};

} // namespace windows_ports
