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
    if (event == sent_ || !(press || release) || !watched->isWindowType()) return false;
    const auto& key = *static_cast<QKeyEvent*>(event);
    if (press && release_ && key.key() == release_->key() && key.timestamp() == release_->timestamp()) {
        wait_.stop();
        release_.reset();
        QKeyEvent repeat(key.type(), key.key(), key.modifiers(), key.nativeScanCode(), key.nativeVirtualKey(),
                         key.nativeModifiers(), key.text(), true);
        send(repeat);
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
    if (const auto release = std::move(release_)) send(*release);
}

/// What this opens may take keys until long after.
void KeyRepeat::send(QKeyEvent& event) {
    sent_ = &event;
    if (window_) QCoreApplication::sendEvent(window_, &event);
    sent_ = nullptr;
}

} // namespace ui
