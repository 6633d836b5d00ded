#pragma once

#include "platform/dialogs.h"

namespace qt_ports {

/// The toolkit's boxes, over the front window.
class Dialogs : public platform::Dialogs {
  public:
    /// The display is lost: from now on messages go to standard error, and every question is cancelled.
    void useStandardError() { displayGone_ = true; }

    bool message(const std::string& text, const std::string& title, platform::Icon icon,
                 platform::Buttons buttons) override;
    std::optional<std::string> input(const std::string& prompt, const std::string& title,
                                     const std::string& proposed, std::size_t longest) override;
    std::optional<std::string> openFile(const std::string& filter, const std::string& proposed) override;
    /// Adds the filter's extension to the name; replaces an existing file only after a question.
    std::optional<std::string> saveFile(const std::string& filter, const std::string& proposed) override;
    std::optional<std::uint32_t> chooseColour(std::uint32_t initial, const std::string& title) override;

  private:
    bool displayGone_ = false;
};

} // namespace qt_ports
