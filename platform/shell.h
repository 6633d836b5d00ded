#pragma once

#include <string>

namespace platform {

/// The user's desktop.
class Shell {
  public:
    virtual ~Shell() = default;
    /// Opens a page that ships with the program, named by its file, in the user's browser.
    /// Throws runtime::ObjectError when the page is missing or no browser takes it.
    virtual void openPage(const std::string& file) = 0;
    /// Starts a mail in the user's mail program; an empty address leaves it to the user.
    virtual void startMail(const std::string& address, const std::string& subject) = 0;
};

} // namespace platform
