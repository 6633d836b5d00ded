#include "ui/key_repeat.h"

#include <QCoreApplication>

namespace ui {

KeyRepeat::KeyRepeat(QObject* parent) : QObject(parent) {
    wait_.setSingleShot(true);
    wait_.setTimerType(Qt::PreciseTimer);
    wait_.setInterval(kWaitMilliseconds);
    wait_.callOnTimeout(this, [this] { deliver(); });
}

bool KeyRepeat::eventFilter(QObject* watched, QEvent* event) {
    const bool press = event->type() == QEvent::KeyPress, release = event->type() == QEvent::KeyRelease;
    if (delivering_ || !(press || release) || !watched->isWindowType()) return false;
    const auto& key = *static_cast<QKeyEvent*>(event);
    if (press && release_ && key.key() == release_->key() && key.timestamp() == release_->timestamp()) {
        wait_.stop();
        release_.reset();
        return true;
    }
    deliver(); // in their order
    if (press || key.isAutoRepeat()) return false;
    window_ = static_cast<QWindow*>(watched);
    release_.reset(key.clone());
    wait_.start();
    return true;
}

void KeyRepeat::deliver() {
    wait_.stop();
    const std::unique_ptr<QKeyEvent> release = std::move(release_);
    if (!release || !window_) return;
    delivering_ = true;
    QCoreApplication::sendEvent(window_, release.get());
    delivering_ = false;
}

} // namespace ui
