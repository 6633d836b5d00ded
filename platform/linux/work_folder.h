#pragma once

#include "platform/linux/file_descriptor.h"

#include <filesystem>

namespace linux_ports {

/// The program's folder, locked for this process without a lock file. The system releases the lock when the
/// process ends.
class WorkFolder {
  public:
    /// Creates the folder if it is missing. Throws runtime::ObjectError if creating fails, if the folder is
    /// not writable, or if another instance has locked it.
    explicit WorkFolder(const std::filesystem::path& folder);

    /// Absolute.
    const std::filesystem::path& path() const { return path_; }
    /// False on file systems that cannot lock a folder (some network shares); there a second instance is not
    /// prevented.
    bool held() const { return held_; }

  private:
    std::filesystem::path path_;
    FileDescriptor fd_;
    bool held_ = true;
};

} // namespace linux_ports
