#include "ui/push_button.h"

#include "ui/caption_label.h"
#include "ui/colours.h"

#include <QKeyEvent>
#include <QPainter>
#include <QStyle>

namespace ui {

namespace {
constexpr double kCorner = 6;
constexpr int kSidePadding = 14;
} // namespace

PushButton::PushButton(Kind kind, QWidget* parent) : QPushButton(parent), kind_(kind) {
    setAttribute(Qt::WA_Hover);
}

void PushButton::hold() {
    if (std::exchange(held_, true)) return;
    if (onPress) onPress();
}

void PushButton::letGo() {
    if (!std::exchange(held_, false)) return;
    update();
    if (onRelease) onRelease();
}

void PushButton::lose() {
    setDown(false);
    letGo();
}

void PushButton::setBackground(std::optional<QColor> background) {
    background_ = background;
    update();
}

QSize PushButton::sizeHint() const {
    const QString samples = samples_.isEmpty() ? text() : samples_;
    const int lines = kind_ == Kind::Stop ? 2 : 1;
    return {widest(fontMetrics(), samples) + 2 * kSidePadding, fontMetrics().height() * lines + 14};
}

QSize PushButton::minimumSizeHint() const {
    const int height = fontMetrics().height();
    return {sizeHint().width(), (kind_ == Kind::Stop ? height * 3 / 2 : height) + 10};
}

QColor PushButton::face() const {
    const QColor ink = palette().color(QPalette::Active, QPalette::WindowText), paper = cardColour(palette());
    QColor face = kind_ == Kind::Stop ? mixed(ink, paper, 0.08) : mixed(paper, ink, 0.07);
    if (background_) face = *background_;
    if (!isEnabled()) return mixed(paper, face, 0.5);
    if (isDown() || held_) return mixed(face, readableOn(face), 0.22);
    return underMouse() ? mixed(face, readableOn(face), 0.08) : face;
}

void PushButton::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QColor fill = face();
    const QColor accent = palette().color(QPalette::Active, QPalette::Highlight);
    const QRectF edge = QRectF(rect()).adjusted(1, 1, -1, -1);
    painter.setPen(hasFocus()    ? QPen(accent, 2)
                   : isDefault() ? QPen(accent, 1)
                                 : QPen(mixed(fill, readableOn(fill), 0.18), 1));
    painter.setBrush(fill);
    painter.drawRoundedRect(edge, kCorner, kCorner);

    QColor ink = readableOn(fill);
    if (!background_ && kind_ == Kind::Normal) ink = palette().color(QPalette::Active, QPalette::WindowText);
    if (!isEnabled()) ink = mixed(fill, ink, 0.45);
    painter.setPen(ink);
    if (background_) {
        QFont bold = font();
        bold.setWeight(QFont::Bold);
        painter.setFont(bold);
    }
    painter.drawText(rect(), Qt::AlignCenter | Qt::TextShowMnemonic | Qt::TextSingleLine, text());
}

void PushButton::mousePressEvent(QMouseEvent* event) {
    focusedByCode_ = false;
    QPushButton::mousePressEvent(event);
    if (event->button() == Qt::LeftButton) hold();
}

void PushButton::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton) letGo();
    QPushButton::mouseReleaseEvent(event);
}

void PushButton::keyPressEvent(QKeyEvent* event) {
    if (guardsSpace_ && focusedByCode_ && event->key() == Qt::Key_Space) {
        event->ignore();
        return;
    }
    QPushButton::keyPressEvent(event);
    if (event->key() == Qt::Key_Space && !event->isAutoRepeat()) hold();
}

void PushButton::keyReleaseEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Space && !event->isAutoRepeat()) letGo();
    QPushButton::keyReleaseEvent(event);
}

void PushButton::focusInEvent(QFocusEvent* event) {
    // Another window's focus comes and goes for other reasons: they change nothing.
    const Qt::FocusReason reason = event->reason();
    if (reason == Qt::OtherFocusReason) focusedByCode_ = true;
    if (reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason) focusedByCode_ = false;
    QPushButton::focusInEvent(event);
}

void PushButton::focusOutEvent(QFocusEvent* event) {
    lose();
    QPushButton::focusOutEvent(event);
}

void PushButton::hideEvent(QHideEvent* event) {
    lose();
    QPushButton::hideEvent(event);
}

void PushButton::changeEvent(QEvent* event) {
    const bool lost = event->type() == QEvent::EnabledChange || event->type() == QEvent::ActivationChange;
    if (lost && (!isEnabled() || !isActiveWindow())) lose();
    QPushButton::changeEvent(event);
}

} // namespace ui
