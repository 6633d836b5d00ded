#pragma once

#include "form/control.h"
#include "platform/dialogs.h"

namespace form {

/// Shows every box and dialog of the program, so that the program knows whether a box is open.
class Boxes {
  public:
    explicit Boxes(platform::Dialogs& dialogs) : dialogs_(dialogs) {}

    bool isOpen() const { return open_ > 0; }

    /// A message with one OK button and the critical icon.
    void critical(const std::string& text, const std::string& title);
    bool confirm(const std::string& text, const std::string& title);
    std::optional<std::string> input(const std::string& prompt, const std::string& title,
                                     const std::string& proposed, std::size_t longest = 0);
    std::optional<std::string> openFile(const std::string& filter, const std::string& proposed = {});
    std::optional<std::string> saveFile(const std::string& filter, const std::string& proposed = {});
    std::optional<std::uint32_t> chooseColour(std::uint32_t initial, const std::string& title);
    /// Shows a dialog until it is unloaded.
    void showModal(Form& form);
    /// Shows a window beside the main window, or brings it to the front.
    void showBeside(Form& form);
    /// Cancels all dialogs without saving, the last opened first.
    void cancelDialogs();

    /// Set by the window: shows a dialog and returns when the dialog has been unloaded.
    std::function<void(Form&)> modalWindow;
    /// Set by the window: shows a form that is not modal and returns at once.
    std::function<void(Form&)> windowBeside;
    /// Called before a box takes the input focus from the main window.
    std::function<void()> onOpening;

  private:
    class Opened;
    class Shown;
    platform::Dialogs& dialogs_;
    int open_ = 0;
    std::vector<Form*> dialogForms_;
};

} // namespace form
