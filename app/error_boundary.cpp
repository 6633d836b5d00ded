#include "app/error_boundary.h"

#include "runtime/errors.h"

namespace app {

namespace {

/// The text of an error; our own errors also have a number.
std::string textOf(const std::exception& error) {
    const auto* own = dynamic_cast<const runtime::RunTimeError*>(&error);
    return error.what() + (own ? " (error " + std::to_string(own->number()) + ")" : std::string());
}

} // namespace

ErrorBoundary::ErrorBoundary(form::Form1& form, form::Boxes& boxes, engine::OutputPorts& outputs)
    : form_(form), boxes_(boxes), outputs_(outputs) {
    form_.onError = [this](const std::exception& error) { handle(error); };
}

void ErrorBoundary::handle(const std::exception& error) {
    // Stops the timers directly: the stop commands could fail again.
    for (form::Timer* timer : sides_.timers())
        timer->Enabled = false;
    form_.bolMemA = form_.bolMemB = false;
    form_.bolTargetAz = form_.bolTargetEl = false;
    form_.cmdOff.Enabled = true;
    const bool allOff = outputs_.offWithoutFail();
    try {
        if (onStopped) onStopped();
    } catch (const std::exception&) { // as below
    }
    // While a box shows an error, a second error tells the user nothing new.
    if (telling_) return;
    telling_ = true;
    try {
        boxes_.critical(textOf(error) + ". Both engines are stopped. " +
                            (allOff ? "The outputs are off." : std::string(engine::kOutputsStillOn) + "."),
                        "Error!");
    } catch (const std::exception&) { // an error while handling an error is ignored
    }
    telling_ = false;
}

} // namespace app
