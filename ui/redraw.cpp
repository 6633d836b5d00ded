#include "ui/redraw.h"

#include "ui/adapter.h"

#include <algorithm>

namespace ui {

Redraw::Redraw() {
    timer_.setSingleShot(true);
    timer_.setTimerType(Qt::PreciseTimer);
    QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] { drawAll(); });
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

void Redraw::drawAll() {
    timer_.stop();
    sinceLast_.start();
    for (Adapter* adapter : std::exchange(waiting_, {})) {
        adapter->draw();
    }
}

} // namespace ui
