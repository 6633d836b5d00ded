#include "app/error_boundary.h"

namespace app {

ErrorBoundary::ErrorBoundary(form::Form1& form, form::Boxes& boxes, engine::OutputPorts& outputs)
    : form_(form), boxes_(boxes), outputs_(outputs) {
    form_.onError = [this](const std::exception& error) { handle(error); };
}

void ErrorBoundary::handle(const std::exception& error) {
    // Directly, and not through the stop commands, which could fail again.
    for (form::Timer* timer : {&form_.Timer1, &form_.Timer2, &form_.Timer3, &form_.Timer4})
        timer->Enabled = false;
    form_.bolMemA = false;
    form_.bolMemB = false;
    form_.cmdOff.Enabled = true;
    outputs_.offWithoutFail();
    // An error behind the box of another one adds nothing for the user.
    if (telling_) return;
    telling_ = true;
    try {
        boxes_.critical(std::string(error.what()) + ". Both engines are stopped and the outputs are off.",
                        "Error!");
    } catch (const std::exception&) { // A second error on this way is swallowed.
    }
    telling_ = false;
}

} // namespace app
