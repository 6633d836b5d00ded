#pragma once

#include "round.h"

#include <chrono>
#include <filesystem>

/// What is measured. Each but the last runs for so many seconds in a process of its own.
namespace bench {

/// A periodic timerfd, read in a loop: the best that an ordinary thread gets on this machine.
Round bareLoop(std::chrono::seconds duration);

/// A QTimer of one millisecond, precise, in a shown window without anything in it.
Round toolkitTimer(std::chrono::seconds duration);

enum class Scheduling { Usual, RealTime };

/// Twinstep's window, controller, timers and traced outputs, with both engines at 1000 steps/s. `folder`
/// takes its files.
Round twinstepWindow(std::chrono::seconds duration, Scheduling scheduling,
                     const std::filesystem::path& folder);

/// LinuxCNC's user-space thread, run by an ordinary user, as its own components report it. `folder` may be
/// written by anyone. Throws std::runtime_error when its programs fail.
Round linuxCncThread(std::chrono::seconds duration, const std::filesystem::path& folder);

} // namespace bench
