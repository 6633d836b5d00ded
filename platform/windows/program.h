#pragma once

#include "platform/windows/window.h"

#include <functional>
#include <string>
#include <vector>

namespace windows_ports {

/// The words of the command line behind the program's name, in UTF-8.
std::vector<std::string> arguments();

/// The message loop of a program without a visible window, and the ways it is asked to end: by itself, by
/// Ctrl+C or the end of its console, by a polite task manager, by the end of the user's session.
class Program {
  public:
    /// `sessionEnds` runs in the loop; when it returns, the system may end the program at any moment.
    explicit Program(std::function<void()> sessionEnds);
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;
    /// To be destroyed last: lets go of a console that waits for the program to be done.
    ~Program();

    /// Runs until quit.
    void run();
    /// From any thread.
    void quit();

  private:
    std::optional<LRESULT> handle(UINT message, WPARAM wParam);
    static BOOL WINAPI consoleEvent(DWORD event) noexcept;

    std::function<void()> sessionEnds_;
    Window window_;
};

} // namespace windows_ports
