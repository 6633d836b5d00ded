#pragma once

#include <functional>
#include <memory>
#include <string>

namespace windows_ports {

/// An icon in the notification area; its menu has a state line and Quit. The icon has its own thread: if the
/// desktop hangs, only the icon waits. Without a desktop there is no icon.
class TrayIcon {
  public:
    /// Throws runtime::ObjectError when the system has no window left. `icon` is the number of the icon in
    /// the program's resources. `quit` is called on the icon's thread.
    TrayIcon(int icon, const std::string& name, const std::string& state, std::function<void()> quit);
    TrayIcon(const TrayIcon&) = delete;
    TrayIcon& operator=(const TrayIcon&) = delete;
    ~TrayIcon();

    /// Shown in the tip, behind the name, and in the menu.
    void show(const std::string& state);

  private:
    class Impl;
    std::unique_ptr<Impl> impl_;
};

} // namespace windows_ports
