#pragma once

#include "platform/windows/outside/handle.h"

#include <filesystem>

namespace windows_ports {

/// The program's folder, held for this process by a file in it that goes with the process, however it ends.
class WorkFolder {
  public:
    static constexpr const char* kLock = "twinstep.lock";

    /// Creates the folder if it is missing. Throws runtime::ObjectError if creating fails, if the folder is
    /// not writable, or if another Twinstep holds it, also one on another computer.
    explicit WorkFolder(const std::filesystem::path& folder);

    /// Absolute.
    const std::filesystem::path& path() const { return path_; }

  private:
    std::filesystem::path path_;
    Handle lock_;
};

/// The folder of the program's own file.
std::filesystem::path programFolder();

} // namespace windows_ports
