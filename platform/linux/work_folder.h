#pragma once

#include "platform/linux/file_descriptor.h"

#include <filesystem>

namespace linux_ports {

/// The folder that the program works in, held for this process alone without leaving a file in it; the system
/// frees it with the process.
class WorkFolder {
  public:
    /// Creates the folder where it is missing. Throws runtime::ObjectError when that fails, when nothing can
    /// be written there, or when another instance holds it.
    explicit WorkFolder(const std::filesystem::path& folder);

    /// Absolute.
    const std::filesystem::path& path() const { return path_; }
    /// False on the few file systems that cannot lock a folder (network shares): nothing then keeps a second
    /// instance out.
    bool held() const { return held_; }

  private:
    std::filesystem::path path_;
    FileDescriptor fd_;
    bool held_ = true;
};

} // namespace linux_ports
