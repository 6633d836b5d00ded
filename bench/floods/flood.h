#pragma once

#include <string>
#include <sys/types.h>

namespace bench {

/// A process of its own that pours data into one of the program's inputs as fast as they are taken. It is
/// born at rest.
class Flood {
  public:
    /// `kind` is an argument of pour; `port` is where it sends to or listens.
    Flood(const std::string& kind, int port);
    Flood(const Flood&) = delete;
    Flood& operator=(const Flood&) = delete;
    ~Flood();

    void start();
    void stop();

  private:
    pid_t process_ = 0;
};

/// What the process does: "datagrams" and "long datagrams" to a UDP port; "tracking", "blanks" and "bridge"
/// as a server behind the descriptor of a listening TCP socket; "rotctld" as 14 clients of a TCP port. Does
/// not return. Throws std::runtime_error.
void pour(const std::string& kind, int portOrListener);

/// A port of this computer that nobody uses.
int freePort();

} // namespace bench
