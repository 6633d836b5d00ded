#pragma once

#include <QElapsedTimer>
#include <QTimer>
#include <chrono>
#include <functional>
#include <vector>

namespace ui {

class Adapter;

/// Draws what has changed, all at once, at most 30 times a second, and out of the way of the engines' steps.
/// Costs nothing while nothing changes.
class Redraw {
  public:
    /// `untilStep` says how long the next step of an engine is away.
    explicit Redraw(std::function<std::chrono::nanoseconds()> untilStep);

    void mark(Adapter& adapter);
    void forget(Adapter& adapter);
    /// Draws what is waiting without waiting for the next round.
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
