#include "ui/caption_label.h"

#include "ui/colours.h"

#include <QKeyEvent>
#include <QPainter>

namespace ui {

namespace {
constexpr int kPadding = 4;
constexpr int kCorner = 4;
} // namespace

QFont scaledFont(const QFont& font, double factor, QFont::Weight weight) {
    QFont scaled = font;
    if (font.pointSizeF() > 0) {
        scaled.setPointSizeF(font.pointSizeF() * factor);
    } else {
        scaled.setPixelSize(qRound(font.pixelSize() * factor));
    }
    scaled.setWeight(weight);
    return scaled;
}

int widest(const QFontMetrics& metrics, const QString& samples) {
    int width = 0;
    for (const QString& sample : samples.split(QLatin1Char('|'))) {
        width = qMax(width, metrics.horizontalAdvance(sample));
    }
    return width;
}

CaptionLabel::CaptionLabel(const QString& text, QWidget* parent) : QLabel(text, parent), samples_(text) {
    setTextFormat(Qt::PlainText);
    setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
}

void CaptionLabel::reserve(const QString& samples) {
    samples_ = samples;
    updateGeometry();
}

void CaptionLabel::setTone(Tone tone) {
    tone_ = tone;
    update();
}

void CaptionLabel::setColours(std::optional<QColor> text, std::optional<QColor> background) {
    if (text_ == text && background_ == background) return;
    text_ = text;
    background_ = background;
    update();
}

void CaptionLabel::setActivated(std::function<void()> activated) {
    activated_ = std::move(activated);
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_Hover);
    setCursor(Qt::PointingHandCursor);
}

int CaptionLabel::sidePadding() const {
    return activated_ || background_ ? kPadding : 0;
}

bool CaptionLabel::shortened() const {
    return fontMetrics().horizontalAdvance(text()) > width() - 2 * sidePadding();
}

QSize CaptionLabel::sizeHint() const {
    // One extra pixel: text widths are rounded, but eliding uses exact widths.
    return {widest(fontMetrics(), samples_) + 2 * sidePadding() + 1, fontMetrics().height() + 2};
}

QSize CaptionLabel::minimumSizeHint() const {
    return sizeHint();
}

QColor CaptionLabel::textColour() const {
    if (!isEnabled())
        return mixed(cardColour(palette()), palette().color(QPalette::Active, QPalette::WindowText), 0.5);
    if (text_) return *text_;
    if (background_) return readableOn(*background_);
    switch (tone_) {
    case Tone::Quiet:
        return quietText(palette());
    case Tone::Accent:
        return mixed(palette().color(QPalette::Highlight), palette().color(QPalette::WindowText), 0.2);
    case Tone::Normal:
        break;
    }
    return palette().color(QPalette::WindowText);
}

bool CaptionLabel::event(QEvent* event) {
    if (event->type() == QEvent::HoverEnter || event->type() == QEvent::HoverLeave) update();
    return QLabel::event(event);
}

void CaptionLabel::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF edge = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
    const QColor accent = palette().color(QPalette::Highlight);
    if (background_) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(*background_);
        painter.drawRoundedRect(edge, kCorner, kCorner);
    }
    if (activated_ && (hasFocus() || underMouse())) {
        painter.setPen(hasFocus() ? QPen(accent, 1) : QPen(Qt::NoPen));
        painter.setBrush(mixed(cardColour(palette()), accent, 0.12));
        painter.drawRoundedRect(edge, kCorner, kCorner);
    }
    painter.setPen(textColour());
    const QRect room = rect().adjusted(sidePadding(), 0, -sidePadding(), 0);
    painter.drawText(room, static_cast<int>(alignment()) | Qt::TextSingleLine,
                     fontMetrics().elidedText(text(), Qt::ElideRight, room.width()));
}

void CaptionLabel::mouseDoubleClickEvent(QMouseEvent* event) {
    if (activated_ && event->button() == Qt::LeftButton) {
        activated_();
    } else {
        QLabel::mouseDoubleClickEvent(event);
    }
}

void CaptionLabel::keyPressEvent(QKeyEvent* event) {
    const int key = event->key();
    const bool opens =
        key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Space || key == Qt::Key_F2;
    if (activated_ && opens && !event->isAutoRepeat()) {
        activated_();
    } else {
        QLabel::keyPressEvent(event);
    }
}

} // namespace ui
