#pragma once

#include <memory>
#include <string>

namespace windows_ports {

/// Writes lines to standard output on a separate thread: while the user marks text in a console, the console
/// blocks all output. If too many lines wait, new lines are dropped.
class LogWriter {
  public:
    LogWriter();
    LogWriter(const LogWriter&) = delete;
    LogWriter& operator=(const LogWriter&) = delete;
    /// Waits up to a second for the waiting lines.
    ~LogWriter();

    /// `line` is without a line feed.
    void write(std::string line);

  private:
    struct Queue;
    std::shared_ptr<Queue> queue_;
};

} // namespace windows_ports
