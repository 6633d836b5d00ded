#pragma once

#include "engine/output_ports.h"
#include "engine/side.h"
#include "form/boxes.h"
#include "form/form1.h"

#include <exception>

namespace app {

/// Handles the exceptions of event handlers: stops the engines, switches the outputs off, shows the error in
/// a box, and lets the program go on.
class ErrorBoundary {
  public:
    ErrorBoundary(form::Form1& form, form::Boxes& boxes, engine::OutputPorts& outputs);

    void handle(const std::exception& error);

    /// Called after the engines have been stopped and the outputs switched off.
    std::function<void()> onStopped;

  private:
    form::Form1& form_;
    engine::Sides sides_{form_};
    form::Boxes& boxes_;
    engine::OutputPorts& outputs_;
    bool telling_ = false;
};

} // namespace app
