#pragma once

#include "platform/station_messages.h"
#include "platform/windows/window.h"

#include <map>
#include <memory>
#include <string>

namespace windows_ports {

/// Window messages, through hidden windows of our own. Everything on one thread. A handle, a parameter and
/// the number of a message each have 32 bits that count, on 64-bit systems too.
class StationMessages : public platform::StationMessages {
  public:
    /// Throws runtime::ObjectError when the system does not take the name.
    long registerMessage(const std::string& name) override;
    /// A window of any class and any other program, with this title to the letter. Of several it stays with
    /// the first that it found, as long as that one has the title: their order changes whenever one comes to
    /// the front. Titles are read as the system keeps them, so a program that hangs is not waited for.
    long findWindow(const std::string& title) override;
    void post(long window, long message, long wParam, long lParam) override;
    long hook(long window, Receiver receiver) override;
    /// The window goes with its hook.
    void unhook(long window, long previousProcedure) override;
    /// Makes the window when there is none of this name. Throws runtime::ObjectError when it cannot.
    long ownWindow(const std::string& form) override;

  private:
    struct Own {
        std::unique_ptr<Window> window;
        std::shared_ptr<Receiver> receiver;
    };

    std::map<std::string, Own> own_;
    std::map<std::wstring, HWND> found_; // by title; each window still has it, or did at the last look
};

} // namespace windows_ports
