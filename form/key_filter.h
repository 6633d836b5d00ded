#pragma once

namespace form {

/// Key filters of text boxes: they set a character that may not be typed to 0. They discard Backspace too:
/// the user types over a wrong digit or removes it with Delete.
inline void keepRange(int& character, int first, int last) {
    if (character < first || character > last) character = 0;
}

inline void keepDigits(int& character) {
    keepRange(character, '0', '9');
}

} // namespace form
