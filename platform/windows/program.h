#pragma once

#include "platform/windows/window.h"

#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace windows_ports {

/// The words of the command line behind the program's name, in UTF-8.
std::vector<std::string> arguments();

/// The message loop of a program without a visible window, and the ways it is asked to end: by itself, by
/// Ctrl+C or the end of its console, by a polite task manager, by the end of the user's session.
class Program {
  public:
    Program();
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;
    /// Destroy it last: it releases a console that waits for the program's end.
    ~Program();

    /// What to do when the user's session ends, in the loop; after it the system may end the program at any
    /// moment.
    void atSessionEnd(std::function<void()> farewell) { farewell_ = std::move(farewell); }
    /// Runs until quit.
    void run();
    /// From any thread.
    void quit();

  private:
    std::optional<LRESULT> handle(UINT message, WPARAM wParam);
    static BOOL WINAPI consoleEvent(DWORD event) noexcept;

    std::function<void()> farewell_;
    Window window_;
};

} // namespace windows_ports
