#include "ui/card.h"

#include "ui/caption_label.h"
#include "ui/colours.h"

#include <QPainter>

namespace ui {

namespace {
constexpr double kCorner = 10;
constexpr double kTitleSize = 1.15;
} // namespace

Card::Card(const QString& title, const QString& tip, QWidget* parent)
    : QWidget(parent), body_(new QVBoxLayout(this)) {
    setAccessibleName(title);
    setToolTip(tip);
    body_->setContentsMargins(2 * kGrid, kGrid + kGrid / 2, 2 * kGrid, kGrid + kGrid / 2);
    body_->setSpacing(kGrid);
}

void Card::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(hairline(palette()));
    painter.setBrush(cardColour(palette()));
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), kCorner, kCorner);
}

CaptionLabel* fixedText(const QString& text, const QString& tip) {
    auto* label = new CaptionLabel(text);
    label->setTone(CaptionLabel::Tone::Quiet);
    label->setToolTip(tip);
    return label;
}

CaptionLabel* groupTitle(const QString& text, const QString& tip) {
    auto* label = new CaptionLabel(text);
    label->setFont(scaledFont(label->font(), kTitleSize, QFont::DemiBold));
    label->setToolTip(tip);
    return label;
}

QWidget* divider() {
    class Line : public QWidget {
      protected:
        void paintEvent(QPaintEvent* /*event*/) override {
            QPainter(this).fillRect(rect(), hairline(palette()));
        }
    };
    auto* line = new Line;
    line->setFixedWidth(1);
    return line;
}

namespace {
constexpr const char* kFolds = "foldingRow";
constexpr const char* kMirrored = "mirrored";
} // namespace

QBoxLayout* foldingRow(bool mirrored) {
    QBoxLayout* layout = row(mirrored);
    layout->setObjectName(kFolds);
    layout->setProperty(kMirrored, mirrored);
    return layout;
}

void fold(QWidget& widget, bool folded) {
    for (auto* layout : widget.findChildren<QBoxLayout*>(kFolds)) {
        const bool mirrored = layout->property(kMirrored).toBool();
        layout->setDirection(folded     ? QBoxLayout::TopToBottom
                             : mirrored ? QBoxLayout::RightToLeft
                                        : QBoxLayout::LeftToRight);
    }
}

QHBoxLayout* row(bool mirrored) {
    auto* layout = new QHBoxLayout;
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(kGrid);
    layout->setDirection(mirrored ? QBoxLayout::RightToLeft : QBoxLayout::LeftToRight);
    return layout;
}

} // namespace ui
