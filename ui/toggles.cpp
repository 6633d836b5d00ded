#include "ui/toggles.h"

#include "ui/caption_label.h"
#include "ui/colours.h"

#include <QKeyEvent>
#include <QPainter>

namespace ui {

namespace {

constexpr int kGap = 7;
constexpr int kSide = 4;
constexpr int kPlateMargin = 6;
constexpr double kPlateCorner = 6;

/// The mark's side, in step with the font.
int markSide(const QFontMetrics& metrics) {
    return qMax(13, metrics.height() - 1);
}

QSize toggleSize(const QAbstractButton& toggle, QString samples) {
    const QFontMetrics metrics = toggle.fontMetrics();
    const int textWidth = widest(metrics, samples.remove(QLatin1Char('&')));
    return {markSide(metrics) + 2 * kSide + (textWidth > 0 ? kGap + textWidth + 1 : 0), metrics.height() + 8};
}

QRectF markPlace(const QAbstractButton& toggle) {
    const int side = markSide(toggle.fontMetrics());
    return QRectF(kSide, (toggle.height() - side) / 2, side, side).adjusted(0.5, 0.5, -0.5, -0.5);
}

/// The mark's edge and ground. What is on has the accent colour.
void prepareMark(QPainter& painter, const QAbstractButton& toggle) {
    const QPalette& palette = toggle.palette();
    const QColor card = cardColour(palette), ink = palette.color(QPalette::Active, QPalette::WindowText);
    const QColor accent = palette.color(QPalette::Active, QPalette::Highlight);
    QColor ground = toggle.isChecked() ? accent : mixed(card, ink, toggle.underMouse() ? 0.12 : 0.05);
    QColor edge = toggle.isChecked() || toggle.hasFocus() ? accent : mixed(card, ink, 0.5);
    if (!toggle.isEnabled()) {
        ground = mixed(card, toggle.isChecked() ? ink : card, 0.3);
        edge = mixed(card, ink, 0.26);
    }
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(edge, toggle.hasFocus() ? 2 : 1));
    painter.setBrush(ground);
}

void drawText(QPainter& painter, const QAbstractButton& toggle, const QColor& ink) {
    painter.setPen(toggle.isEnabled() ? ink : mixed(cardColour(toggle.palette()), ink, 0.5));
    const int left = kSide + markSide(toggle.fontMetrics()) + kGap;
    painter.drawText(toggle.rect().adjusted(left, 0, 0, 0),
                     Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine | Qt::TextShowMnemonic,
                     toggle.text());
    if (!toggle.hasFocus()) return;
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(toggle.palette().color(QPalette::Active, QPalette::Highlight), 1));
    painter.drawRoundedRect(QRectF(toggle.rect()).adjusted(0.5, 0.5, -0.5, -0.5), kPlateCorner, kPlateCorner);
}

} // namespace

TickBox::TickBox(QWidget* parent) : QCheckBox(parent) {
    setAttribute(Qt::WA_Hover);
}

void TickBox::setPlate(std::optional<QColor> plate) {
    plate_ = plate;
    updateGeometry();
    update();
}

QSize TickBox::sizeHint() const {
    return toggleSize(*this, samples_.isEmpty() ? text() : samples_) + QSize(kPlateMargin, 0);
}

void TickBox::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QColor ink = palette().color(QPalette::Active, QPalette::WindowText);
    if (plate_) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(isEnabled() ? *plate_ : mixed(cardColour(palette()), *plate_, 0.5));
        painter.drawRoundedRect(QRectF(rect()), kPlateCorner, kPlateCorner);
        ink = readableOn(*plate_);
    }
    const QRectF mark = markPlace(*this);
    const double side = mark.width();
    prepareMark(painter, *this);
    painter.drawRoundedRect(mark, side / 4.5, side / 4.5);
    if (isChecked()) {
        painter.setPen(QPen(palette().color(QPalette::Active, QPalette::HighlightedText), side / 7,
                            Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        const QPointF tick[] = {mark.topLeft() + QPointF(side * 0.24, side * 0.52),
                                mark.topLeft() + QPointF(side * 0.43, side * 0.71),
                                mark.topLeft() + QPointF(side * 0.77, side * 0.31)};
        painter.drawPolyline(tick, 3);
    }
    drawText(painter, *this, ink);
}

OptionDot::OptionDot(QWidget* parent) : QRadioButton(parent) {
    setAutoExclusive(false);
    setAttribute(Qt::WA_Hover);
}

void OptionDot::setNeighbours(OptionDot* previous, OptionDot* next) {
    previous_ = previous;
    next_ = next;
}

QSize OptionDot::sizeHint() const {
    return toggleSize(*this, text());
}

void OptionDot::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    const QRectF mark = markPlace(*this);
    prepareMark(painter, *this);
    painter.drawEllipse(mark);
    if (isChecked()) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(palette().color(QPalette::Active, QPalette::HighlightedText));
        painter.drawEllipse(mark.center(), mark.width() * 0.22, mark.width() * 0.22);
    }
    drawText(painter, *this, palette().color(QPalette::Active, QPalette::WindowText));
}

void OptionDot::keyPressEvent(QKeyEvent* event) {
    const int key = event->key();
    const bool back = key == Qt::Key_Up || key == Qt::Key_Left;
    const bool on = key == Qt::Key_Down || key == Qt::Key_Right;
    if (!back && !on) {
        QRadioButton::keyPressEvent(event);
        return;
    }
    const auto neighbour = [back](const OptionDot* dot) { return back ? dot->previous_ : dot->next_; };
    OptionDot* target = neighbour(this);
    while (target && !target->isEnabled()) {
        target = neighbour(target);
    }
    if (target) target->setFocus(Qt::TabFocusReason);
}

} // namespace ui
