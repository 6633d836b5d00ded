#pragma once

#include <QElapsedTimer>
#include <QTimer>
#include <chrono>
#include <functional>
#include <vector>

namespace ui {

class Adapter;

/// Draws all changed controls at once, at most 30 times a second and between the engines' steps. Does nothing
/// while nothing changes.
class Redraw {
  public:
    /// `untilStep` returns the time until the next step of an engine.
    explicit Redraw(std::function<std::chrono::nanoseconds()> untilStep);

    void mark(Adapter& adapter);
    void forget(Adapter& adapter);
    /// Draws all waiting changes now.
    void drawAll();

  private:
    void drawBetweenSteps();

    static constexpr int kRoundMilliseconds = 34;

    std::function<std::chrono::nanoseconds()> untilStep_;

    QTimer timer_;
    QElapsedTimer sinceLast_;
    std::vector<Adapter*> waiting_;
};

} // namespace ui
