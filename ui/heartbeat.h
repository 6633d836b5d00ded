#pragma once

#include "engine/side.h"

#include <QTimer>
#include <functional>

namespace ui {

/// Reports whether an engine runs: four times a second from the event loop, and at once when an engine starts
/// or stops. A step timer can have only one observer: the Heartbeat.
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
    bool said_ = false; // the value of the last beat
    QTimer timer_;
};

} // namespace ui
