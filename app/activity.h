#pragma once

#include "engine/side.h"

#include <functional>

namespace app {

/// Keeps the window's account of what goes on up to date: after each event while the engines stand, ten times
/// a second while one runs.
class Activity {
  public:
    Activity(form::Form1& form, platform::Timers& timers);

    /// Call after each event.
    void look();
    /// Called to show what goes on.
    std::function<void()> show;

  private:
    static constexpr int kMilliseconds = 100;

    void showAll();
    void showOutputs();

    form::Form1& form_;
    engine::Sides sides_;
    form::Timer tmrActivity_; // runs while an engine runs
};

} // namespace app
