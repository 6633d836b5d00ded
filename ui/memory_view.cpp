#include "ui/memory_view.h"

#include <QMenu>
#include <QMouseEvent>
#include <QPainter>
#include <QShortcut>
#include <QToolButton>
#include <utility>

namespace ui {

namespace {

constexpr double kLabelSize = 1.15;
constexpr const char* kPositionSamples = "-000.00|Elevation|Engine 2|MMMMMMMM";
constexpr double kCorner = 6;
constexpr int kFinger = 40; // logical pixels that a finger hits
constexpr int kMark = 32;   // the width of a mark beside a whole row that a finger hits

CaptionLabel* positionText(const QString& text) {
    CaptionLabel* label = fixedText(text);
    label->reserve(kPositionSamples);
    label->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    return label;
}

QToolButton* menuButton() {
    auto* button = new QToolButton;
    button->setText(QStringLiteral("⋮"));
    button->setAutoRaise(true);
    button->setFocusPolicy(Qt::NoFocus); // the menu key opens the same menu
    button->setMinimumWidth(kMark);
    button->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Ignored);
    return button;
}

QHBoxLayout* columns(QWidget* first, QWidget* number, QWidget* label, QWidget* a, QWidget* b, QWidget* menu) {
    QHBoxLayout* layout = row();
    layout->setContentsMargins(kGrid / 2, 0, 0, 0);
    layout->addWidget(first);
    layout->addWidget(number);
    layout->addWidget(label, 1);
    layout->addWidget(a);
    layout->addWidget(b);
    layout->addWidget(menu);
    return layout;
}

} // namespace

/// One memory. The one that is selected lies on the accent colour. A click anywhere but on the number, which
/// stores, and on the menu's button recalls it.
class MemoryView::Row : public QWidget {
  public:
    Row(int number, form::Form1& form, Adapters& adapters);

    OptionDot* dot() const { return dot_; }
    QSize sizeHint() const override { return QWidget::sizeHint().expandedTo({0, kFinger}); }

  protected:
    void contextMenuEvent(QContextMenuEvent* event) override { openMenu(event->globalPos()); }
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

  private:
    void openMenu(const QPoint& place);
    void showPositions();

    int n_;
    form::Form1& form_;
    bool pressed_ = false;
    OptionDot* dot_;
    CaptionLabel* number_;
    CaptionLabel* positionA_;
    CaptionLabel* positionB_;
};

MemoryView::Row::Row(int number, form::Form1& form, Adapters& adapters) : n_(number), form_(form) {
    const QString n = QString::number(number);
    dot_ = adapters.option(form.Option[number], {"Recall memory " + n, {}, {}});
    auto* shortcut = new QShortcut(QKeySequence("Ctrl+" + QString::number(number % 10)), dot_);
    shortcut->setAutoRepeat(false);
    QObject::connect(shortcut, &QShortcut::activated, dot_, &QRadioButton::click);

    number_ = adapters.activeLabel(
        form.lblMem[number],
        {"Store memory " + n, "Double-click to store both positions in memory " + n + ".", "Enter"}, "00");
    number_->setAlignment(Qt::AlignCenter);
    CaptionLabel* label = adapters.label(
        form.lblFr[number],
        {"Label of memory " + n, "The beginning of the label of memory " + n +
                                     ": a frequency in MHz, or a band. Automatic recall looks for it."},
        "00.000");
    label->setFont(scaledFont(label->font(), kLabelSize, QFont::DemiBold));
    positionA_ = positionText({});
    positionB_ = positionText({});
    positionA_->setObjectName("strMemPosA" + n);
    positionB_->setObjectName("strMemPosB" + n);
    dot_->setMinimumWidth(kMark);
    dot_->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Expanding);
    QToolButton* menu = menuButton();
    menu->setObjectName("memoryMenu" + n);
    menu->setAccessibleName("Menu of memory " + n);
    menu->setToolTip("Recall, store, rename or clear memory " + n + ".");
    QObject::connect(menu, &QToolButton::clicked, menu,
                     [this, menu] { openMenu(menu->mapToGlobal(menu->rect().bottomLeft())); });
    setLayout(columns(dot_, number_, label, positionA_, positionB_, menu));
    // Whenever a memory changes, so does the tool tip of its option.
    adapters.of(form.Option[number]).onDrawn = [this] { showPositions(); };
}

void MemoryView::Row::showPositions() {
    const auto show = [](CaptionLabel& label, const std::string& stored) {
        label.setText(stored.empty() ? QStringLiteral("–") : shown(stored));
    };
    show(*positionA_, form_.strMemPosA(n_));
    show(*positionB_, form_.strMemPosB(n_));
    const QString tip = plainTip(shown(form_.Option[n_].ToolTip));
    positionA_->setToolTip(tip);
    positionB_->setToolTip(tip);
    if (!form_.Option[n_].Enabled)
        dot_->setToolTip("Empty. Double-click the number to store both positions here.");
    update();
}

void MemoryView::Row::openMenu(const QPoint& place) {
    auto* menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    const bool stored = form_.Option[n_].Enabled;
    const auto entry = [&](const char* text, bool enabled, auto act) {
        QAction* action = menu->addAction(text);
        action->setEnabled(enabled);
        connect(action, &QAction::triggered, this, act);
    };
    entry("&Recall", stored, [this] { form_.Option[n_].userClick(); });
    entry("&Store here…", true, [this] { form_.lblMem[n_].DblClick.fire(); });
    entry("Re&name…", stored, [this] { form_.guard([this] { form_.onRenameMemory(n_); }); });
    entry("&Clear", stored, [this] { form_.guard([this] { form_.onClearMemory(n_); }); });
    menu->popup(place);
}

void MemoryView::Row::mousePressEvent(QMouseEvent* event) {
    pressed_ = event->button() == Qt::LeftButton && childAt(event->pos()) != number_;
}

void MemoryView::Row::mouseReleaseEvent(QMouseEvent* event) {
    const bool recalls = std::exchange(pressed_, false) && event->button() == Qt::LeftButton;
    if (recalls && rect().contains(event->pos())) dot_->click();
}

void MemoryView::Row::paintEvent(QPaintEvent* /*event*/) {
    const QColor accent = palette().color(QPalette::Highlight);
    const QColor card = cardColour(palette());
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    if (form_.Option[n_].Value) {
        painter.setBrush(mixed(card, accent, 0.24));
        painter.drawRoundedRect(QRectF(rect()), kCorner, kCorner);
    } else if (n_ % 2 == 1) {
        painter.setBrush(mixed(card, palette().color(QPalette::WindowText), 0.035));
        painter.drawRoundedRect(QRectF(rect()), kCorner, kCorner);
    }
}

MemoryView::MemoryView(form::Form1& form, Adapters& adapters)
    : Card("Memories", "Ten memories of both positions. Ctrl+1 to Ctrl+0 recall them.") {
    body().setContentsMargins(2 * kGrid, kGrid, 2 * kGrid, kGrid); // the height is the rows'
    body().setSpacing(0);
    engineA_ = positionText({});
    engineB_ = positionText({});
    auto* heading = new QWidget;
    CaptionLabel* title = groupTitle(accessibleName(), toolTip());
    QHBoxLayout* headings = row();
    headings->setContentsMargins(0, 0, 0, 0);
    headings->addWidget(title, 1);
    headings->addWidget(engineA_);
    headings->addWidget(engineB_);
    QToolButton* room = menuButton(); // for the rows' buttons
    QSizePolicy keepsPlace = room->sizePolicy();
    keepsPlace.setRetainSizeWhenHidden(true);
    room->setSizePolicy(keepsPlace);
    headings->addWidget(room);
    room->hide();
    heading->setLayout(headings);
    body().addWidget(heading);

    OptionDot* previous = nullptr;
    std::vector<OptionDot*> dots;
    for (int n = 1; n <= form::Form1::kMemories; ++n) {
        auto* line = new Row(n, form, adapters);
        body().addWidget(line, 1);
        rows_.push_back(line);
        dots.push_back(line->dot());
    }
    for (std::size_t i = 0; i < dots.size(); ++i) {
        dots[i]->setNeighbours(previous, i + 1 < dots.size() ? dots[i + 1] : nullptr);
        previous = dots[i];
    }
}

void MemoryView::setCompact(bool compact) {
    for (Row* line : rows_)
        line->setMinimumHeight(compact ? kFinger : 0);
}

void MemoryView::nameEngines(const QString& a, const QString& b) {
    engineA_->setText(a);
    engineB_->setText(b);
}

} // namespace ui
