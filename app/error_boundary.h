#pragma once

#include "engine/output_ports.h"
#include "engine/side.h"
#include "form/boxes.h"
#include "form/form1.h"

#include <exception>

namespace app {

/// Where an error arrives that a handler has let through: engines stop, outputs go off, the user reads what
/// failed, and the program goes on.
class ErrorBoundary {
  public:
    ErrorBoundary(form::Form1& form, form::Boxes& boxes, engine::OutputPorts& outputs);

    void handle(const std::exception& error);

    /// Called when the engines stand and the outputs have been switched off.
    std::function<void()> onStopped;

  private:
    form::Form1& form_;
    engine::Sides sides_{form_};
    form::Boxes& boxes_;
    engine::OutputPorts& outputs_;
    bool telling_ = false;
};

} // namespace app
