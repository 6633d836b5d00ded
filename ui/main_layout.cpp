#include "ui/main_layout.h"

#include <QEvent>
#include <QPushButton>

namespace ui {

namespace {

constexpr int kEnginesStretch = 5, kZonesStretch = 4;
constexpr int kSkyHeight = 32 * kGrid; // in a small window
constexpr double kTopShare = 0.4;      // of a small window, for the engines

/// Moving a widget to another parent has hidden it.
void put(QGridLayout& grid, QWidget* widget, int line, int column, int columns = 1) {
    grid.addWidget(widget, line, column, 1, columns);
    widget->show();
}

} // namespace

MainLayout::MainLayout(const Cards& cards, const QSize& usual)
    : cards_(cards), top_(new QWidget(this)), grid_(new QGridLayout(zones_)),
      settingsA_(new Card({}, {}, zones_)), settingsB_(new Card({}, {}, zones_)) {
    auto* tops = new QHBoxLayout(top_);
    tops->setContentsMargins(kGrid, kGrid, kGrid, 0);
    tops->setSpacing(kGrid);
    grid_->setContentsMargins(0, 0, 0, 0);
    grid_->setSpacing(kGrid);
    grid_->setColumnStretch(0, 1);
    grid_->setColumnStretch(1, 1);
    auto* content = new QWidget;
    auto* column = new QVBoxLayout(content);
    column->setContentsMargins(kGrid, kGrid, kGrid, kGrid / 2);
    column->setSpacing(kGrid);
    column->addWidget(zones_, 1);
    column->addWidget(cards_.invitation, 1);
    column->addWidget(cards_.outputs);
    cards_.invitation->hide();
    arrangeWide();
    area_ = new ZoomArea(content, usual);
    need_ = content->minimumSizeHint();

    auto* all = new QVBoxLayout(this);
    all->setContentsMargins(0, 0, 0, 0);
    all->setSpacing(0);
    all->addWidget(top_);
    all->addWidget(area_, 1);
}

void MainLayout::setInviting(bool inviting) {
    inviting_ = inviting;
    arrange();
    // One can go on by the keyboard.
    QWidget* first = inviting ? cards_.invitation->findChild<QPushButton*>() : cards_.engineA->stop();
    first->setFocus();
}

bool MainLayout::event(QEvent* event) {
    // A function that needs more room asks for it by a request.
    if (event->type() == QEvent::Resize || event->type() == QEvent::LayoutRequest) choose();
    return QWidget::event(event);
}

void MainLayout::choose() {
    if (!compact_ && !inviting_) need_ = area_->widget()->minimumSizeHint();
    const bool compact = width() < need_.width() || height() < need_.height();
    constexpr int kScrollBar = 2 * kGrid;
    const int pair = cards_.left->minimumSizeHint().width() + cards_.right->minimumSizeHint().width();
    const bool beside = width() >= pair + 3 * kGrid + kScrollBar;
    const bool changed = compact != compact_ || (compact && beside != beside_);
    compact_ = compact;
    beside_ = beside;
    if (changed) arrange();
    if (compact_) {
        const int least = top_->minimumSizeHint().height();
        top_->setFixedHeight(std::max(least, static_cast<int>(height() * kTopShare)));
    }
}

void MainLayout::arrange() {
    QWidget* focus = window()->focusWidget();
    if (compact_) {
        arrangeCompact();
    } else {
        arrangeWide();
    }
    cards_.invitation->setVisible(inviting_);
    zones_->setVisible(!inviting_);
    top_->setVisible(compact_ && !inviting_);
    cards_.memories->setCompact(compact_);
    cards_.sky->setMinimumHeight(compact_ ? kSkyHeight : 0);
    // The sizes that layouts and their items remember are those of the other arrangement.
    for (QWidget* widget : findChildren<QWidget*>())
        widget->updateGeometry();
    for (QLayout* layout : findChildren<QLayout*>())
        layout->invalidate();
    // Moving a widget has taken the focus from it.
    if (focus) focus->setFocus();
}

void MainLayout::arrangeWide() {
    top_->hide();
    put(*grid_, cards_.left, 1, 0);
    put(*grid_, cards_.right, 1, 1);
    put(*grid_, cards_.engineA, 0, 0);
    put(*grid_, cards_.engineB, 0, 1);
    grid_->setRowStretch(0, kEnginesStretch);
    grid_->setRowStretch(1, kZonesStretch);
    for (const auto& [engine, settings] :
         {std::pair{cards_.engineA, settingsA_}, {cards_.engineB, settingsB_}}) {
        engine->body().addWidget(engine->settings());
        engine->settings()->show();
        engine->setCompact(false);
        settings->hide();
    }
    fold(*cards_.outputs, false);
}

void MainLayout::arrangeCompact() {
    for (const auto& [engine, settings] :
         {std::pair{cards_.engineA, settingsA_}, {cards_.engineB, settingsB_}}) {
        top_->layout()->addWidget(engine);
        engine->show();
        settings->body().addWidget(engine->settings());
        engine->settings()->show();
        engine->setCompact(true);
        settings->show();
    }
    // First of all, whether the antenna fits.
    put(*grid_, cards_.right, 0, beside_ ? 1 : 0, beside_ ? 1 : 2);
    put(*grid_, cards_.left, beside_ ? 0 : 1, 0, beside_ ? 1 : 2);
    put(*grid_, settingsA_, 2, 0);
    put(*grid_, settingsB_, 2, 1);
    grid_->setRowStretch(0, 0);
    grid_->setRowStretch(1, 0);
    fold(*cards_.outputs, true);
}

} // namespace ui
