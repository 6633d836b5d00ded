#pragma once

#include "engine/ramp.h"
#include "engine/side.h"

#include <optional>
#include <string>

namespace engine {

/// What an engine does when its ramp has slowed it down to slow; kReturn goes back to a target that was
/// passed.
enum class ThenDo { kGoOn, kStop, kTurn, kReturn };

/// Sets the periods of one engine's step timers along the ramp between slow and fast. The timers' Interval
/// stays the period of the selected speed. Without a ramp this class changes no timer.
class RampDrive {
  public:
    /// `form` and `side` outlive this object.
    RampDrive(form::Form1& form, const Side& side) : form_(form), side_(side) {}

    /// The engine starts from rest.
    void begin();
    /// The engine stands.
    void end();
    /// The engine has made a step and goes on: sets the period of the next one.
    void stepped();
    /// The selected speed, and so Interval, may have changed while the engine runs.
    void speedChanged();

    /// The time until the target is reached; empty if the engine stands or has no target.
    std::optional<Period> timeToGo() const;
    /// Whether the engine is faster than slow, so that it must slow down before it stops or reverses.
    bool aboveSlow() const { return level_ > 0; }
    /// Sets what the engine does at slow. Unless `then` is kGoOn, the engine slows down from now on.
    void setThen(ThenDo then, int turnTo = 0);
    ThenDo then() const { return then_; }
    int turnTo() const { return turnTo_; } // with kTurn, a direction

  private:
    void plan();
    Pace pace() const;
    void refreshCurve();
    std::optional<std::int64_t> stepsToGo() const;
    form::Timer& timer() const { return side_.forward.Enabled ? side_.forward : side_.backward; }

    form::Form1& form_;
    const Side& side_;
    RampCurve curve_;
    Period interval_{};      // until the next step
    std::int64_t level_ = 0; // after the next step
    std::int64_t from_ = 0;  // before it
    ThenDo then_ = ThenDo::kGoOn;
    int turnTo_ = 0;
};

/// The time from slow to fast that HScroll1 sets.
std::chrono::milliseconds rampTime(const form::Form1& form);
/// The time of the ramp: "0.40 s".
std::string rampText(const form::Form1& form);
/// The ramp of an engine, from its speeds and HScroll1.
RampCurve rampOf(const form::Form1& form, const Side& side);

} // namespace engine
