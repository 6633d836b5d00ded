#include "ui/redraw.h"

#include "ui/adapter.h"

#include <algorithm>

namespace ui {

namespace {

/// The time of one drawing. Two engines at full speed leave a gap of this length in every millisecond.
constexpr std::chrono::microseconds kDrawing{450};
/// If there is no gap, the drawing comes at most this late.
constexpr int kLongestWaitMilliseconds = 4;

} // namespace

Redraw::Redraw(std::function<std::chrono::nanoseconds()> untilStep) : untilStep_(std::move(untilStep)) {
    timer_.setSingleShot(true);
    timer_.setTimerType(Qt::PreciseTimer);
    QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] { drawBetweenSteps(); });
    sinceLast_.start();
}

void Redraw::mark(Adapter& adapter) {
    waiting_.push_back(&adapter);
    if (timer_.isActive()) return;
    const auto rest = kRoundMilliseconds - std::min<qint64>(sinceLast_.elapsed(), kRoundMilliseconds);
    timer_.start(static_cast<int>(rest));
}

void Redraw::forget(Adapter& adapter) {
    std::erase(waiting_, &adapter);
}

void Redraw::drawBetweenSteps() {
    const bool late = sinceLast_.elapsed() >= kRoundMilliseconds + kLongestWaitMilliseconds;
    if (!late && untilStep_() < kDrawing) {
        timer_.start(0);
    } else {
        drawAll();
    }
}

void Redraw::drawAll() {
    timer_.stop();
    sinceLast_.start();
    // The second pass draws what the first one has marked, such as an engine's name in the names of its
    // controls.
    for (int pass = 0; pass < 2; ++pass) {
        for (Adapter* adapter : std::exchange(waiting_, {}))
            adapter->draw();
    }
    if (waiting_.empty()) timer_.stop();
}

} // namespace ui
