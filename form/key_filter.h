#pragma once

namespace form {

/// Key filters of text boxes: they set a character that may not be typed to 0. Backspace is discarded
/// too: a wrong digit is typed over, or removed with Delete.
inline void keepRange(int& character, int first, int last) {
    if (character < first || character > last) character = 0;
}

inline void keepDigits(int& character) {
    keepRange(character, '0', '9');
}

} // namespace form
