#include "ui/redraw.h"

#include "ui/adapter.h"

#include <algorithm>

namespace ui {

namespace {

/// What a drawing takes. Two engines at full speed leave such a gap in every millisecond.
constexpr std::chrono::microseconds kDrawing{450};
/// A drawing that finds no gap comes so much late.
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
    for (Adapter* adapter : std::exchange(waiting_, {})) {
        adapter->draw();
    }
}

} // namespace ui
