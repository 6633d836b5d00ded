#pragma once

#include <QElapsedTimer>
#include <QTimer>
#include <vector>

namespace ui {

class Adapter;

/// Draws what has changed, all at once and at most 30 times a second. Costs nothing while nothing changes.
class Redraw {
  public:
    Redraw();

    void mark(Adapter& adapter);
    void forget(Adapter& adapter);
    /// Draws what is waiting without waiting for the next round.
    void drawAll();

  private:
    static constexpr int kRoundMilliseconds = 34;

    QTimer timer_;
    QElapsedTimer sinceLast_;
    std::vector<Adapter*> waiting_;
};

} // namespace ui
