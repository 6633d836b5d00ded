#include "form/boxes.h"

namespace form {

/// Counts a box as open while it lives.
class Boxes::Opened {
  public:
    explicit Opened(Boxes& boxes) : boxes_(boxes) {
        if (boxes_.onOpening) boxes_.onOpening();
        ++boxes_.open_;
    }
    Opened(const Opened&) = delete;
    Opened& operator=(const Opened&) = delete;
    ~Opened() { --boxes_.open_; }

  private:
    Boxes& boxes_;
};

/// Keeps a dialog in the list of those on the screen while it lives.
class Boxes::Shown {
  public:
    Shown(Boxes& boxes, Form& form) : boxes_(boxes) { boxes_.dialogForms_.push_back(&form); }
    Shown(const Shown&) = delete;
    Shown& operator=(const Shown&) = delete;
    ~Shown() { boxes_.dialogForms_.pop_back(); }

  private:
    Boxes& boxes_;
};

void Boxes::critical(const std::string& text, const std::string& title) {
    const Opened opened(*this);
    dialogs_.message(text, title, platform::Icon::Critical, platform::Buttons::Ok);
}

bool Boxes::confirm(const std::string& text, const std::string& title) {
    const Opened opened(*this);
    return dialogs_.message(text, title, platform::Icon::None, platform::Buttons::OkCancel);
}

std::optional<std::string> Boxes::input(const std::string& prompt, const std::string& title,
                                        const std::string& proposed, std::size_t longest) {
    const Opened opened(*this);
    return dialogs_.input(prompt, title, proposed, longest);
}

std::optional<std::string> Boxes::openFile(const std::string& filter, const std::string& proposed) {
    const Opened opened(*this);
    return dialogs_.openFile(filter, proposed);
}

std::optional<std::string> Boxes::saveFile(const std::string& filter, const std::string& proposed) {
    const Opened opened(*this);
    return dialogs_.saveFile(filter, proposed);
}

std::optional<std::uint32_t> Boxes::chooseColour(std::uint32_t initial, const std::string& title) {
    const Opened opened(*this);
    return dialogs_.chooseColour(initial, title);
}

void Boxes::showModal(Form& form) {
    const Opened opened(*this);
    const Shown shown(*this, form);
    if (modalWindow) modalWindow(form);
}

void Boxes::showBeside(Form& form) {
    if (windowBeside) windowBeside(form);
}

void Boxes::cancelDialogs() {
    for (std::size_t i = dialogForms_.size(); i > 0; --i)
        dialogForms_[i - 1]->cancel();
}

} // namespace form
