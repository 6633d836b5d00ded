#pragma once

#include <QKeyEvent>
#include <QPointer>
#include <QTimer>
#include <QWindow>
#include <memory>

namespace ui {

/// Knows the repeats of a held key. X11 sends a release and a press of the same time for each; the toolkit
/// knows a release as a repeat only if the press has arrived already. So a release waits a moment for its
/// press: the two together are one repeat. Install it on the application.
class KeyRepeat : public QObject {
  public:
    static constexpr int kWaitMilliseconds = 10;

    explicit KeyRepeat(QObject* parent);

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void deliver();
    void send(QKeyEvent& event);

    QTimer wait_;
    QPointer<QWindow> window_;
    std::unique_ptr<QKeyEvent> release_; // that waits
    const QEvent* sent_ = nullptr;
};

} // namespace ui
