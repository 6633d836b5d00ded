#pragma once

#include <functional>
#include <string>

namespace platform {

/// The user's desktop. Whether one of its programs takes what it is given may turn out later: `failed` is
/// told why not, at once or from the event loop.
class Shell {
  public:
    using Failed = std::function<void(const std::string& why)>;

    virtual ~Shell() = default;
    /// Shows a page that ships with the program, named by its file. Fails when the page is missing.
    virtual void openPage(const std::string& file, Failed failed) = 0;
    /// Starts a mail in the user's mail program; an empty address leaves it to the user.
    virtual void startMail(const std::string& address, const std::string& subject, Failed failed) = 0;
};

} // namespace platform
