#include "ui/digits.h"

#include "ui/colours.h"

#include <QPainter>
#include <algorithm>

namespace ui {

namespace {

constexpr int kCells = 7; // "-998.76"
constexpr int kMargin = 16;
constexpr double kCorner = 8;
constexpr double kPointShare = 0.5; // the point's cell, in digits

double digitWidth(const QFontMetricsF& metrics) {
    double width = 0;
    for (char16_t digit = u'0'; digit <= u'9'; ++digit) {
        width = std::max(width, metrics.horizontalAdvance(QChar(digit)));
    }
    return width;
}

double share(QChar character) {
    return character == QLatin1Char('.') || character == QLatin1Char(',') ? kPointShare : 1.0;
}

double cellsOf(const QString& text) {
    double cells = 0;
    for (const QChar character : text) {
        cells += share(character);
    }
    return cells;
}

QFont digitFont(const QFont& base, int pixels) {
    QFont font = base;
    font.setPixelSize(pixels);
    font.setWeight(QFont::DemiBold);
    return font;
}

} // namespace

void Digits::setDigitColour(const QColor& colour) {
    colour_ = colour;
    update();
}

int Digits::fontHeight(const QFont& font, const QSize& room) {
    constexpr int kProbe = 100;
    const QFontMetricsF metrics(digitFont(font, kProbe));
    const double width = digitWidth(metrics) * (kCells - 1 + kPointShare);
    const double fit = std::min(room.width() / width, room.height() / metrics.capHeight() / 1.25);
    return std::max(8, static_cast<int>(fit * kProbe));
}

void Digits::paintEvent(QPaintEvent* /*event*/) {
    int pixels = fontHeight(font(), size());
    const double cells = cellsOf(text());
    if (cells > kCells - 1 + kPointShare) pixels = static_cast<int>(pixels * (kCells - 0.5) / cells);
    QPainter painter(this);
    const QFont large = digitFont(font(), std::max(pixels, 1));
    const QFontMetricsF metrics(large);
    painter.setFont(large);
    painter.setPen(colour_);
    const double cell = digitWidth(metrics);
    const double baseline = (height() + metrics.capHeight()) / 2;
    double right = width();
    for (auto character = text().crbegin(); character != text().crend(); ++character) {
        const double own = cell * share(*character);
        right -= own;
        const double advance = metrics.horizontalAdvance(*character);
        painter.drawText(QPointF(right + (own - advance) / 2, baseline), QString(*character));
    }
    if (hasFocus()) {
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(QPen(palette().color(QPalette::Highlight), 2));
        painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), kCorner / 2, kCorner / 2);
    }
}

Display::Display(QWidget* parent) : QWidget(parent) {
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
}

void Display::setFill(const QColor& colour) {
    fill_ = colour;
    update();
}

void Display::place(Digits& position, Digits& angle, CaptionLabel& unit) {
    position_ = &position;
    angle_ = &angle;
    unit_ = &unit;
    for (QWidget* part :
         {static_cast<QWidget*>(position_), static_cast<QWidget*>(angle_), static_cast<QWidget*>(unit_)}) {
        part->setParent(this);
    }
}

QSize Display::sizeHint() const {
    return {320, std::max(88, fontMetrics().height() * 5)};
}

QSize Display::minimumSizeHint() const {
    return {240, std::max(64, fontMetrics().height() * 7 / 2)};
}

void Display::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(hairline(palette()));
    painter.setBrush(fill_);
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), kCorner, kCorner);
}

void Display::resizeEvent(QResizeEvent* /*event*/) {
    if (!unit_) return;
    // The numbers have a fixed size and no layout, so that a new text never causes one.
    const int unitWidth = unit_->sizeHint().width() + kMargin;
    const QSize room(width() - 2 * (kMargin + unitWidth), height() - kMargin);
    const int pixels = Digits::fontHeight(position_->font(), room);
    const double cell = digitWidth(QFontMetricsF(digitFont(position_->font(), pixels)));
    const QSize number(static_cast<int>(cell * (kCells - 0.5)) + kMargin, height() - kMargin);
    const int left = (width() - number.width()) / 2;
    for (Digits* digits : {position_, angle_}) {
        digits->setFixedSize(number);
        digits->move(left, kMargin / 2);
    }
    unit_->setFixedSize(unit_->sizeHint());
    const int baseline =
        (height() + static_cast<int>(QFontMetricsF(digitFont(position_->font(), pixels)).capHeight())) / 2;
    const QFontMetrics unitMetrics = unit_->fontMetrics();
    const int below = baseline - (unit_->height() + unitMetrics.capHeight()) / 2;
    unit_->move(left - unit_->width() - kMargin / 2, below);
}

} // namespace ui
