#pragma once

#include "tests/emulated_board/sketch.h"

#include <atomic>
#include <filesystem>
#include <mutex>
#include <thread>

/// The sketch on a board at a serial device, which stands for a link to a pseudo-terminal. Opening the device
/// resets the board.
class PtyBoard {
  public:
    explicit PtyBoard(std::filesystem::path device, Sketch::Kind kind = {});
    PtyBoard(const PtyBoard&) = delete;
    PtyBoard& operator=(const PtyBoard&) = delete;
    ~PtyBoard();

    const std::filesystem::path& device() const { return device_; }
    void plugIn();
    /// The board loses its power: all its pins are 0.
    void unplug();
    void setMute(bool mute);
    /// It does not read any more: the line stalls.
    void setDeaf(bool deaf);

    int levels();
    std::vector<Sketch::Change> takeChanges();
    std::vector<std::string> faults();
    static Sketch::Time now() { return std::chrono::steady_clock::now().time_since_epoch(); }

  private:
    void run();
    void work();

    const std::filesystem::path device_;
    std::mutex mutex_; // guards all members below
    Sketch sketch_;
    bool deaf_ = false;
    int master_ = -1, slave_ = -1, opens_ = -1;
    std::atomic<bool> ends_ = false;
    std::thread thread_;
};
