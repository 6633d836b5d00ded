#include "ui/zoom.h"

#include "ui/caption_label.h"

#include <algorithm>

namespace ui {

namespace {

constexpr int kLargest = 200, kStep = 5; // percent

bool hasFontOfItsOwn(const QWidget& widget) {
    return widget.testAttribute(Qt::WA_SetFont);
}

} // namespace

ZoomArea::ZoomArea(QWidget* content, const QSize& smallest) {
    setFrameShape(QFrame::NoFrame);
    setWidgetResizable(true);
    setFocusPolicy(Qt::NoFocus);
    setWidget(content);
    base_ = content->minimumSizeHint().expandedTo(smallest);
    texts_.push_back({content, content->font()});
    for (QWidget* widget : content->findChildren<QWidget*>()) {
        if (hasFontOfItsOwn(*widget)) texts_.push_back({widget, widget->font()});
    }
}

void ZoomArea::resizeEvent(QResizeEvent* event) {
    const int wide = width() * 100 / base_.width(), high = height() * 100 / base_.height();
    zoom(std::clamp(std::min(wide, high) / kStep * kStep, 100, kLargest));
    QScrollArea::resizeEvent(event);
}

void ZoomArea::zoom(int percent) {
    if (percent_ == percent) return;
    percent_ = percent;
    for (const Text& text : texts_) {
        text.widget->setFont(
            scaledFont(text.font, percent / 100.0, static_cast<QFont::Weight>(text.font.weight())));
    }
}

} // namespace ui
