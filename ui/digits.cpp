#include "ui/digits.h"

#include "ui/colours.h"

#include <QEvent>
#include <QPainter>
#include <algorithm>
#include <cmath>

namespace ui {

namespace {

constexpr int kCells = 7; // "-998.76"
constexpr int kMargin = 16;
constexpr double kCorner = 8;
constexpr double kPointShare = 0.5; // the point's cell, in digits
constexpr int kRoomy = 80;          // logical pixels of a display's height
constexpr double kMovementSize = 1.25;

/// Whole pixels, so that every cell is painted alike.
int digitWidth(const QFontMetricsF& metrics) {
    double width = 0;
    for (char16_t digit = u'0'; digit <= u'9'; ++digit) {
        width = std::max(width, metrics.horizontalAdvance(QChar(digit)));
    }
    return static_cast<int>(std::ceil(width));
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

Digits::Digits(const QString& text, QWidget* parent) : CaptionLabel(text, parent) {
    // Opaque, so that a step need not paint anything below.
    setAttribute(Qt::WA_OpaquePaintEvent);
}

void Digits::setDigitColour(const QColor& colour) {
    if (colour_ == colour) return;
    colour_ = colour;
    repaintAnew();
}

void Digits::setPaper(const QColor& colour) {
    if (paper_ == colour) return;
    paper_ = colour;
    repaintAnew();
}

void Digits::repaintAnew() {
    cells_.clear();
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
    const double cells = std::max(cellsOf(text()), kCells - 1 + kPointShare);
    if (cells != cellsShown_ || devicePixelRatioF() != ratioShown_) {
        cells_.clear();
        cellsShown_ = cells;
        ratioShown_ = devicePixelRatioF();
    }
    QPainter painter(this);
    painter.fillRect(rect(), paper_);
    int right = width();
    for (auto character = text().crbegin(); character != text().crend(); ++character) {
        const QPixmap& picture = cell(*character);
        right -= qRound(picture.width() / ratioShown_);
        painter.drawPixmap(right, 0, picture);
    }
    if (hasFocus()) {
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(QPen(palette().color(QPalette::Highlight), 2));
        painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), kCorner / 2, kCorner / 2);
    }
}

/// The font system computes the outlines of such large digits again for each drawing: with both engines
/// running, this took half of all processor time. So each character is painted only once and kept as a
/// picture.
const QPixmap& Digits::cell(QChar character) {
    const auto known = cells_.constFind(character);
    if (known != cells_.constEnd()) return *known;

    const int pixels =
        static_cast<int>(fontHeight(font(), size()) * (kCells - 1 + kPointShare) / cellsShown_);
    const QFont large = digitFont(font(), std::max(pixels, 1));
    const QFontMetricsF metrics(large);
    const int room = qRound(digitWidth(metrics) * share(character));
    QPixmap picture(QSize(room, height()) * ratioShown_);
    picture.setDevicePixelRatio(ratioShown_);
    picture.fill(paper_);
    QPainter painter(&picture);
    painter.setFont(large);
    painter.setPen(colour_);
    const QPointF place((room - metrics.horizontalAdvance(character)) / 2,
                        (height() + metrics.capHeight()) / 2);
    painter.drawText(place, QString(character));
    painter.end();
    return *cells_.insert(character, picture);
}

void Digits::resizeEvent(QResizeEvent* event) {
    cells_.clear();
    CaptionLabel::resizeEvent(event);
}

void Digits::changeEvent(QEvent* event) {
    cells_.clear();
    CaptionLabel::changeEvent(event);
}

Display::Display(QWidget* parent) : QWidget(parent) {
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
}

void Display::setFill(const QColor& colour) {
    fill_ = colour;
    for (Digits* digits : {position_, angle_, received_}) {
        if (digits) digits->setPaper(colour);
    }
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
    return {240, std::max(64, fontMetrics().height() * 7 / 2 + kMargin * 3 / 4)};
}

void Display::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(hairline(palette()));
    painter.setBrush(fill_);
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), kCorner, kCorner);
}

void Display::placeReceived(Digits& received, CaptionLabel& caption) {
    received_ = &received;
    receivedCaption_ = &caption;
    received_->setParent(this);
    receivedCaption_->setParent(this);
}

void Display::placeMovement(CaptionLabel& target, CaptionLabel& toGo, QWidget& bar) {
    target_ = &target;
    toGo_ = &toGo;
    bar_ = &bar;
    for (QWidget* part : {static_cast<QWidget*>(target_), static_cast<QWidget*>(toGo_), bar_}) {
        part->setParent(this);
    }
}

void Display::resizeEvent(QResizeEvent* /*event*/) {
    arrange();
}

bool Display::event(QEvent* event) {
    // One of the numbers has been shown or hidden, maybe while nothing of the display was to be seen.
    if (event->type() == QEvent::LayoutRequest || event->type() == QEvent::Show) arrange();
    return QWidget::event(event);
}

/// The numbers have a fixed size and no layout, so that a new text never causes one.
void Display::arrange() {
    if (!unit_ || size().isEmpty()) return;
    unit_->setFixedSize(unit_->sizeHint());
    const bool receiving = received_ && received_->isVisibleTo(this);
    // Large, unless there is hardly room for the digits.
    const bool large = !receiving && height() >= kRoomy;
    for (CaptionLabel* movement : {target_, toGo_})
        movement->setFont(scaledFont(font(), large ? kMovementSize : 1));
    const int movement = std::max(target_->sizeHint().width(), toGo_->sizeHint().width()) + kMargin;
    const int line = target_->sizeHint().height();
    if (large) {
        const QRect area = rect().adjusted(unit_->width() + 2 * kMargin, 0, -movement, 0);
        placeNumber(*angle_, area);
        const int baseline = placeNumber(*position_, area);
        unit_->move(kMargin, baseline - (unit_->height() + unit_->fontMetrics().capHeight()) / 2);
        const int left = position_->geometry().right() + kMargin / 2;
        const int room = std::max(0, width() - kMargin / 2 - left);
        target_->setGeometry(left, height() / 2 - line, room, line);
        toGo_->setGeometry(left, height() / 2, room, line);
    } else {
        // All beside the number stands left of it, as the target received stands right of the angle.
        const int parting = receiving ? width() * 3 / 5 : width();
        const int left = std::max(movement, unit_->width() + kMargin) + kMargin / 2;
        for (Digits* number : {angle_, position_})
            placeNumber(*number, {left, 0, parting - left, height()});
        const int tall = unit_->height() + 2 * line;
        const int top = std::max(2, (height() - kMargin / 2 - tall) / 2); // above the bar
        target_->setGeometry(kMargin, top, movement - kMargin, line);
        unit_->move(kMargin, top + line);
        toGo_->setGeometry(kMargin, top + line + unit_->height(), movement - kMargin, line);
        if (receiving) {
            const int right = parting + kMargin, room = width() - parting - 2 * kMargin;
            receivedCaption_->setFixedSize(room, receivedCaption_->sizeHint().height());
            receivedCaption_->move(right, kMargin / 2);
            const int under = receivedCaption_->geometry().bottom();
            placeNumber(*received_, {right, under, room, height() - under});
        }
    }
    constexpr int kBar = 3;
    bar_->setGeometry(kMargin, height() - kMargin / 2 + 1, width() - 2 * kMargin, kBar);
}

/// Centres a number of full length in the area; returns where its digits stand.
int Display::placeNumber(Digits& digits, const QRect& area) {
    const QSize room(area.width(), area.height() - kMargin);
    const QFontMetricsF metrics(digitFont(digits.font(), Digits::fontHeight(digits.font(), room)));
    const int full = static_cast<int>(digitWidth(metrics) * (kCells - 1 + kPointShare)) + kMargin;
    digits.setFixedSize(std::clamp(area.width(), 0, full), std::max(0, room.height()));
    digits.move(area.center() - digits.rect().center());
    return area.center().y() + static_cast<int>(metrics.capHeight()) / 2;
}

} // namespace ui
