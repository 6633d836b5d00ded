#pragma once

#include "platform/dialogs.h"
#include "platform/shell.h"
#include "platform/sound.h"

#include <deque>
#include <functional>
#include <utility>
#include <vector>

namespace simulated {

/// Boxes that a script answers. Without an answer left, a box is cancelled.
class Dialogs : public platform::Dialogs {
  public:
    struct Message {
        std::string text, title;
        bool critical = false;
        bool operator==(const Message&) const = default;
    };

    bool message(const std::string& text, const std::string& title, platform::Icon icon,
                 platform::Buttons buttons) override;
    std::optional<std::string> input(const std::string& prompt, const std::string& title,
                                     const std::string& proposed, std::size_t longest) override;
    std::optional<std::string> openFile(const std::string& filter, const std::string& proposed) override;
    std::optional<std::string> saveFile(const std::string& filter, const std::string& proposed) override;
    std::optional<std::uint32_t> chooseColour(std::uint32_t initial, const std::string& title) override;

    /// Answers for the boxes to come, of each kind in order.
    std::deque<bool> okAnswers;
    std::deque<std::optional<std::string>> textAnswers;
    std::deque<std::optional<std::string>> fileAnswers;
    std::deque<std::optional<std::uint32_t>> colourAnswers;
    /// Runs while a message is open.
    std::function<void()> whileOpen;

    std::vector<Message> takeMessages() { return std::exchange(messages_, {}); }
    /// What the last input box asked, and proposed.
    Message lastInput;
    std::string lastProposed;
    std::size_t lastLongest = 0;
    /// The place that the last file box proposed.
    std::string lastPlace;

  private:
    std::vector<Message> messages_;
};

class Shell : public platform::Shell {
  public:
    void openPage(const std::string& file, Failed failed) override {
        pages.push_back(file);
        if (!whyNot.empty()) failed(whyNot);
    }
    void startMail(const std::string& address, const std::string& subject, Failed failed) override {
        mails.push_back(address + "?" + subject);
        if (!whyNot.empty()) failed(whyNot);
    }
    std::string whyNot; // what fails, unless empty
    std::vector<std::string> pages, mails;
};

class Sound : public platform::Sound {
  public:
    void play(const std::string& file) override { played.push_back(file); }
    std::vector<std::string> played;
};

} // namespace simulated
