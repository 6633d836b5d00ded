#pragma once

#include "engine/side.h"

#include <QTimer>
#include <functional>

namespace ui {

/// Says four times a second from the event loop, and at once when an engine starts or stops, whether an
/// engine runs. It is the one observer that the step timers can have.
class Heartbeat : private form::ControlObserver {
  public:
    /// The form outlives this object.
    Heartbeat(form::Form1& form, std::function<void(bool engineRuns)> beat);
    Heartbeat(const Heartbeat&) = delete;
    Heartbeat& operator=(const Heartbeat&) = delete;
    ~Heartbeat() override;

  private:
    void say();
    void changed(form::Control& control) override;
    void focusWanted(form::Control& /*control*/) override {}
    void frontWanted(form::Control& /*control*/) override {}

    engine::Sides sides_;
    std::function<void(bool)> beat_;
    bool said_ = false; // what the last beat said
    QTimer timer_;
};

} // namespace ui
