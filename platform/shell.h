#pragma once

#include <functional>
#include <string>

namespace platform {

/// The user's desktop. Opening a page or a mail may fail later: `failed` is called with the reason, at once
/// or from the event loop.
class Shell {
  public:
    using Failed = std::function<void(const std::string& why)>;

    virtual ~Shell() = default;
    /// Shows a page of the program by its file name. Fails if the page is missing.
    virtual void openPage(const std::string& file, Failed failed) = 0;
    /// Starts a mail in the user's mail program; if the address is empty, the user enters it.
    virtual void startMail(const std::string& address, const std::string& subject, Failed failed) = 0;
};

} // namespace platform
