#include "form/controls.h"

#include <algorithm>

namespace form {

void CheckBox::userClick() {
    MouseDown.fire();
    form().guard([this] { Value = ticked() ? 0 : 1; });
}

void OptionButton::userClick() {
    if (Value) {
        Click.fire();
    } else {
        form().guard([this] { Value = true; });
    }
}

int ScrollBar::inRange(int value) const {
    return std::clamp(value, Limits.min, Limits.max);
}

void ScrollBar::userScroll(int value) {
    form().guard([this, value] { set(value); });
}

int TextBox::press(int characterCode) {
    KeyPress.fire(characterCode);
    return characterCode;
}

void TextBox::selectAll() {
    if (onSelectAll) onSelectAll();
}

} // namespace form
