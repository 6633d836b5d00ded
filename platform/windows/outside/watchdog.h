#pragma once

#include "platform/windows/outside/wait.h"
#include "platform/windows/outside/watchdog_process.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace windows_ports {

/// A process of its own that switches the outputs off when this one ends, however it ends, and when it hangs
/// for two seconds while an engine runs. One that ends is replaced. One object at a time.
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
    /// The watchdog switches the outputs off once more and ends; this waits for that, 600 ms at most.
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
    /// engine starts. A new one that stands is not told.
    void watch(std::function<void()> tripped, std::function<void(const std::string& why)> unguarded);

  private:
    struct Port {
        unsigned address = 0; // where there is no handle
        HANDLE serial = nullptr;
        std::vector<std::uint8_t> off;
    };
    struct Board {
        std::string path;
        int card;
    };

    void start();
    void guard(Port port);
    void replace();
    void ended();
    void require(const watchdog::Request& request, const std::string& device);
    void require(const Port& port);
    void require(const Board& board);
    void forget(watchdog::Kind kind);

    const std::filesystem::path program_;
    // What is guarded.
    std::optional<Port> port_;
    std::optional<Board> board_;
    bool engineRuns_ = false;

    Mailbox mailbox_;
    std::function<void()> tripped_;
    std::function<void(const std::string&)> unguarded_;
    std::unique_ptr<WatchdogProcess> process_; // none: it has ended, and could not be replaced
    std::unique_ptr<Wait> trippedWait_, endWait_;
};

} // namespace windows_ports
