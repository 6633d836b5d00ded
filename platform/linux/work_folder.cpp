#include "platform/linux/work_folder.h"

#include "runtime/errors.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>

namespace linux_ports {

WorkFolder::WorkFolder(const std::filesystem::path& folder) : path_(std::filesystem::absolute(folder)) {
    const auto refuse = [this](const std::string& words) {
        throw runtime::ObjectError("folder \"" + path_.string() + "\" " + words);
    };
    std::error_code error;
    std::filesystem::create_directories(path_, error);
    if (error) refuse("cannot be created: " + error.message());
    fd_ = FileDescriptor(::open(path_.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!fd_) refuse("cannot be opened: " + reason(errno));
    if (::access(path_.c_str(), W_OK | X_OK) != 0) refuse("cannot be written: " + reason(errno));
    if (::flock(fd_.get(), LOCK_EX | LOCK_NB) == 0) return;
    if (errno == EWOULDBLOCK) refuse("is in use by another Twinstep");
    held_ = false;
}

} // namespace linux_ports
