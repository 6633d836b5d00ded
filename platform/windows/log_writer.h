#pragma once

#include <memory>
#include <string>

namespace windows_ports {

/// Writes lines to standard output on a thread of its own: a console in which the user marks text takes no
/// more output, and must keep nobody waiting. When too many lines wait, new ones are dropped.
class LogWriter {
  public:
    LogWriter();
    LogWriter(const LogWriter&) = delete;
    LogWriter& operator=(const LogWriter&) = delete;
    /// Gives what waits up to a second.
    ~LogWriter();

    /// `line` is without a line feed.
    void write(std::string line);

  private:
    struct Queue;
    std::shared_ptr<Queue> queue_;
};

} // namespace windows_ports
