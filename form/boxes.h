#pragma once

#include "form/control.h"
#include "platform/dialogs.h"

namespace form {

/// Every box and dialog of the program goes through here, so that it is known whether one is open.
class Boxes {
  public:
    explicit Boxes(platform::Dialogs& dialogs) : dialogs_(dialogs) {}

    bool isOpen() const { return open_ > 0; }

    /// A message with one OK button and the critical icon.
    void critical(const std::string& text, const std::string& title);
    bool confirm(const std::string& text, const std::string& title);
    std::optional<std::string> input(const std::string& prompt, const std::string& title,
                                     const std::string& proposed);
    std::optional<std::string> openFile(const std::string& filter);
    std::optional<std::string> saveFile(const std::string& filter);
    std::optional<std::uint32_t> chooseColour(std::uint32_t initial, const std::string& title);
    /// Shows a dialog until it is unloaded.
    void showModal(Form& form);
    /// Leaves all dialogs without saving, the last one first.
    void cancelDialogs();

    /// The window's way to show a dialog; returns when it has been unloaded.
    std::function<void(Form&)> modalWindow;
    /// Called before a box takes the input away from the main window.
    std::function<void()> onOpening;

  private:
    class Opened;
    class Shown;
    platform::Dialogs& dialogs_;
    int open_ = 0;
    std::vector<Form*> dialogForms_;
};

} // namespace form
