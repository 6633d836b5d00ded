#include "form/control.h"

#include <exception>

namespace form {

void Form::guard(const std::function<void()>& body) {
    try {
        body();
    } catch (const std::exception& error) {
        if (!onError) throw;
        onError(error);
    }
    if (onEventEnd) onEventEnd();
}

void Form::unload() {
    if (onUnload) onUnload();
}

void Form::cancel() {
    if (onCancel) {
        onCancel();
    } else {
        unload();
    }
}

void Form::beep() {
    if (onBeep) onBeep();
}

Control::Control(Form& form, std::string name) : form_(form), name_(std::move(name)) {
    form.controls_.push_back(this);
}

void Control::setFocus() {
    if (observer_) observer_->focusWanted(*this);
}

void Control::bringToFront() {
    if (observer_) observer_->frontWanted(*this);
}

} // namespace form
