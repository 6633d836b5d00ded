#include "platform/simulated/desktop.h"

namespace simulated {

namespace {

template <class Answer>
Answer take(std::deque<Answer>& answers) {
    if (answers.empty()) return {};
    Answer answer = std::move(answers.front());
    answers.pop_front();
    return answer;
}

} // namespace

bool Dialogs::message(const std::string& text, const std::string& title, platform::Icon icon,
                      platform::Buttons /*buttons*/) {
    messages_.push_back({text, title, icon == platform::Icon::Critical});
    if (whileOpen) whileOpen();
    return take(okAnswers);
}

std::optional<std::string> Dialogs::input(const std::string& prompt, const std::string& title,
                                          const std::string& proposed, std::size_t longest) {
    lastLongest = longest;
    lastInput = {prompt, title};
    lastProposed = proposed;
    return take(textAnswers);
}

std::optional<std::string> Dialogs::openFile(const std::string& /*filter*/, const std::string& proposed) {
    lastPlace = proposed;
    return take(fileAnswers);
}

std::optional<std::string> Dialogs::saveFile(const std::string& /*filter*/, const std::string& proposed) {
    lastPlace = proposed;
    return take(fileAnswers);
}

std::optional<std::uint32_t> Dialogs::chooseColour(std::uint32_t /*initial*/, const std::string& /*title*/) {
    return take(colourAnswers);
}

} // namespace simulated
