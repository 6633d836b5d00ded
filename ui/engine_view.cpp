#include "ui/engine_view.h"

#include <QEvent>
#include <QKeyEvent>
#include <QShortcut>
#include <QStackedLayout>

namespace ui {

namespace {

constexpr double kNameSize = 1.5;
constexpr double kUseSize = 1.2;
constexpr double kUnitSize = 1.5;
constexpr double kStopSize = 2.0;
constexpr double kJogSize = 1.7;
constexpr const char* kSpace = "Space";
constexpr const char* kOpenKey = "Enter or F2";

constexpr EngineView::Keys kKeysA{"F4", "F5", "F6"}, kKeysB{"F8", "F9", "F7"};

/// Shows a pencil beside a parameter while the pointer or the focus is on it. The label owns this object.
class PencilOnHover : public QObject {
  public:
    PencilOnHover(QWidget& label, LineEdit& box) : QObject(&label), label_(label), box_(box) {
        label.installEventFilter(this);
        box.installEventFilter(this);
    }

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        switch (event->type()) {
        case QEvent::Enter:
        case QEvent::FocusIn:
            box_.setPencil(true);
            break;
        case QEvent::Leave:
        case QEvent::FocusOut:
            box_.setPencil(event->type() == QEvent::Leave && label_.hasFocus());
            break;
        default:
            break;
        }
        return QObject::eventFilter(watched, event);
    }

  private:
    QWidget& label_;
    LineEdit& box_;
};

} // namespace

EngineView::EngineView(const engine::Side& side, Adapters& adapters)
    : Card({}, {}), side_(side), keys_(side.motor == 1 ? kKeysA : kKeysB), adapters_(adapters),
      settings_(new QWidget), jogChoice_(new QWidget) {
    layOutHeader();
    layOutDisplay();
    layOutMotion();
    auto* below = new QVBoxLayout(settings_);
    below->setContentsMargins(0, 0, 0, 0);
    below->setSpacing(kGrid);
    layOutSpeeds(*below);
    layOutParameters(*below);
    body().addWidget(settings_);
    setCompact(false);
    for (form::Control* control : std::initializer_list<form::Control*>{
             &side_.lblEngine,      &side_.lblUso,  &side_.shpDisplay,    &side_.lblPos,
             &side_.lblPosRotor,    &side_.lblRx,   &side_.lblUnit,       &side_.cmdRunBackward,
             &side_.cmdJogBackward, &side_.cmdStop, &side_.cmdJogForward, &side_.cmdRunForward,
             &side_.cmdSlow,        &side_.cmdFast, &side_.chkHalfStep,   &side_.cmdReset,
             &side_.lblTarget,      &side_.lblToGo, &side_.bar,           &side_.lblStep,
             &side_.entryNotice,    &side_.cmbJog,  &side_.otherSpeed}) {
        named_.push_back(control);
    }
    named_.insert(named_.end(), side_.lamps.begin(), side_.lamps.end());
    for (const auto* parameter : {&side_.fast, &side_.slow, &side_.steps, &side_.units}) {
        named_.push_back(&parameter->label);
        named_.push_back(&parameter->box);
    }
    adapters_.of(side_.lblEngine).onDrawn = [this] { nameEverything(); };
}

void EngineView::nameEverything() {
    const QString name = shown(side_.lblEngine.Caption);
    setAccessibleName(name);
    settings_->setAccessibleName("Speeds of " + name);
    for (const form::Control* control : named_) {
        adapters_.of(*control).nameEngine(name);
    }
}

PushButton* EngineView::withKey(PushButton* button, const char* key) {
    auto* shortcut = new QShortcut(QKeySequence(QLatin1String(key)), button);
    shortcut->setAutoRepeat(false);
    QObject::connect(shortcut, &QShortcut::activated, button, &QPushButton::click);
    return button;
}

void EngineView::layOutHeader() {
    QHBoxLayout* header = row(mirrored());
    CaptionLabel* name = adapters_.label(side_.lblEngine, {"%1", "The engine of this panel."},
                                         "Engine 1|Engine 2|Elevation|Azimuth");
    name->setFont(scaledFont(name->font(), kNameSize, QFont::DemiBold));
    name->setAlignment((mirrored() ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter);
    header->addWidget(name);
    header->addStretch(1);

    const Words useWords{"What drives %1", "What drives %1 now: the memory in use, or Manual after a jog."};
    CaptionLabel* use = adapters_.label(side_.lblUso, useWords, "Manual|000.00|MMMMMM");
    use->setFont(scaledFont(use->font(), kUseSize, QFont::DemiBold));
    use->setTone(CaptionLabel::Tone::Accent);
    use->setAlignment((mirrored() ? Qt::AlignLeft : Qt::AlignRight) | Qt::AlignVCenter);
    QSizePolicy keepsPlace = use->sizePolicy();
    keepsPlace.setRetainSizeWhenHidden(true);
    use->setSizePolicy(keepsPlace);
    header->addWidget(use);

    QHBoxLayout* lamps = row();
    lamps->setSpacing(0);
    int phase = 1;
    for (form::Shape* lamp : side_.lamps) {
        const QString number = QString::number(phase++);
        const QString tip = "Glows while phase " + number + " drives the coils of ";
        lamps->addWidget(adapters_.lamp(*lamp, {"Lamp " + number + " of %1", tip + "%1."}));
    }
    header->addLayout(lamps);
    body().addLayout(header);
}

void EngineView::layOutDisplay() {
    auto* display = new Display;
    adapters_.display(side_.shpDisplay, *display, {"Display of %1", "Where %1 stands."});
    const Words words{"Position of %1",
                      "Where %1 stands. Double-click it to declare another value: no engine moves.",
                      kOpenKey};
    Digits* position = adapters_.digits(side_.lblPos, words);
    Digits* angle = adapters_.digits(side_.lblPosRotor, words);
    CaptionLabel* unit =
        adapters_.label(side_.lblUnit, {"Unit of %1", "The unit of the position of %1."}, "mm:|dots:|deg:");
    unit->setFont(scaledFont(unit->font(), kUnitSize));
    display->place(*position, *angle, *unit);
    layOutMovement(*display);
    Digits* received = adapters_.digits(
        side_.lblRx, {"Received %1", "%1 received from the tracking program, offset added."}, false);
    CaptionLabel* target = fixedText("Target", "What the tracking program sends, offset added.");
    target->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    display->placeReceived(*received, *target);
    Adapter& colours = adapters_.of(side_.lblRx);
    colours.onDrawn = [this, target] {
        target->setVisible(side_.lblRx.Visible);
        target->setColours(ownColour(side_.lblRx.ForeColor), {});
    };
    colours.redrawSoon();
    body().addWidget(display, 3);
}

void EngineView::layOutMovement(Display& display) {
    CaptionLabel* target = adapters_.label(
        side_.lblTarget, {"Target of %1", "The direction in which %1 runs, and where it will stop."},
        "▸ -998.76");
    CaptionLabel* toGo = adapters_.label(
        side_.lblToGo,
        {"Time to go of %1", "The time that %1 needs to its target; end of range: %1 can go no further."},
        "999 min|end of range");
    ThinBar* bar = adapters_.bar(side_.bar, {"Way of %1", "How far %1 is on its way."});
    display.placeMovement(*target, *toGo, *bar);
}

void EngineView::layOutMotion() {
    QHBoxLayout* motion = row();
    const QString hold = "hold Space";
    PushButton* jogBackward = adapters_.button(
        side_.cmdJogBackward, {"Jog %1 backward", "Runs %1 backward while it is held.", hold});
    PushButton* runBackward = adapters_.button(
        side_.cmdRunBackward, {"Run %1 backward", "Runs %1 backward until it is stopped.", kSpace});
    PushButton* stop = withKey(
        adapters_.button(side_.cmdStop,
                         {"Stop %1", "Stops %1 at once.", QString(keys_.stop) + "; Esc stops both engines"},
                         {}, PushButton::Kind::Stop),
        keys_.stop);
    PushButton* runForward = adapters_.button(
        side_.cmdRunForward, {"Run %1 forward", "Runs %1 forward until it is stopped.", kSpace});
    PushButton* jogForward =
        adapters_.button(side_.cmdJogForward, {"Jog %1 forward", "Runs %1 forward while it is held.", hold});
    stop_ = stop;
    stop->setFont(scaledFont(stop->font(), kStopSize, QFont::Bold));
    for (PushButton* jog : {jogBackward, jogForward}) {
        jog->setFont(scaledFont(jog->font(), kJogSize, QFont::DemiBold));
    }
    for (PushButton* button : {jogBackward, runBackward, stop, runForward, jogForward}) {
        button->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
        motion->addWidget(button, button == stop ? 4 : button == jogBackward || button == jogForward ? 2 : 1);
    }
    layOutJogChoice();
    motion_ = motion;
    body().addLayout(motion, 2);
}

void EngineView::layOutJogChoice() {
    QComboBox* choice = adapters_.comboBox(
        side_.cmbJog,
        {"Jog of %1",
         "What <<, >> and the jog keys do. hold: %1 runs while you press. A number: %1 moves by that much.",
         "Up and Down"});
    choice->installEventFilter(this);
    CaptionLabel* other = adapters_.label(
        side_.otherSpeed,
        {"Other speed of %1",
         "The speed of the other direction. Slow and Fast act on the direction that %1 ran in last."},
        "<< slow|>> fast");
    other->setTone(CaptionLabel::Tone::Quiet);
    other->setAlignment(Qt::AlignCenter);
    jogLine_ = new QVBoxLayout(jogChoice_);
    jogLine_->setContentsMargins(0, 0, 0, 0);
    jogLine_->setSpacing(kGrid / 2);
    jogLine_->addStretch(1);
    // As much room above the choice as below it, so that it stands beside the middle of the buttons.
    const int below = other->sizeHint().height();
    jogLine_->addItem(new QSpacerItem(0, below, QSizePolicy::Fixed, QSizePolicy::Maximum));
    jogLine_->addWidget(choice);
    jogLine_->addWidget(other);
    jogLine_->addStretch(1);
}

bool EngineView::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Wheel) {
        event->ignore(); // it scrolls the window
        return true;
    }
    if (event->type() == QEvent::KeyPress && !static_cast<QKeyEvent*>(event)->text().isEmpty() &&
        static_cast<QKeyEvent*>(event)->text().front().isLetter()) {
        event->ignore(); // a letter jogs; it does not search the list
        return true;
    }
    return Card::eventFilter(watched, event);
}

void EngineView::setCompact(bool compact) {
    fold(*settings_, compact);
    const int side = compact ? kGrid : 2 * kGrid, edge = kGrid + kGrid / 2;
    body().setContentsMargins(side, edge, side, edge);
    motion_->setSpacing(compact ? kGrid / 2 : kGrid);
    jogLine_->setDirection(compact ? QBoxLayout::LeftToRight : QBoxLayout::TopToBottom);
    // Beside the jog buttons if there is room, else beside the speeds; outside in either case.
    QBoxLayout* place = compact ? speeds_ : motion_;
    place->insertWidget(mirrored() && !compact ? 0 : -1, jogChoice_);
    jogChoice_->show();
}

void EngineView::layOutSpeeds(QBoxLayout& place) {
    QBoxLayout* speeds = foldingRow(mirrored());
    QHBoxLayout* pair = row();
    speeds_ = pair;
    pair->addWidget(
        withKey(adapters_.button(side_.cmdSlow,
                                 {"Slow speed of %1",
                                  "%1 runs at its slow speed. Acts on the direction that it ran in last.",
                                  keys_.slow},
                                 "MMMM"),
                keys_.slow));
    pair->addWidget(
        withKey(adapters_.button(side_.cmdFast,
                                 {"Fast speed of %1",
                                  "%1 runs at its fast speed. Acts on the direction that it ran in last.",
                                  keys_.fast},
                                 "MMMM"),
                keys_.fast));
    speeds->addLayout(pair);
    // Right above the entries, in room that is free anyway.
    speeds->addWidget(notices(), 1);
    QHBoxLayout* others = row(mirrored());
    speeds->addLayout(others);
    others->addWidget(adapters_.checkBox(
        side_.chkHalfStep,
        {"Half steps of %1", "Ticked, %1 makes half steps: finer, and half as fast.", kSpace},
        "Full Step|Half Step"));
    others->addWidget(adapters_.button(
        side_.cmdReset,
        {"Reset %1", "Declares the position of %1 to be 0 while it stands: no engine moves.", kSpace},
        "Reset 1|Reset Tn|Reset Ld|Reset Az|Reset El"));
    place.addLayout(speeds);
}

/// One place for two: what became of an entry, else what follows from the parameters.
QWidget* EngineView::notices() {
    CaptionLabel* step = adapters_.label(
        side_.lblStep,
        {"Steps of %1", "The size of a step of %1, and its real speeds: a step takes whole milliseconds."},
        "0.05 mm a step, 100 to 200 steps/s");
    CaptionLabel* entry = adapters_.label(
        side_.entryNotice, {"Entry of %1", "Whether the last entry was changed or refused."}, "");
    step->setTone(CaptionLabel::Tone::Quiet);
    for (CaptionLabel* label : {step, entry})
        label->setAlignment((mirrored() ? Qt::AlignLeft : Qt::AlignRight) | Qt::AlignVCenter);
    auto* place = new QWidget;
    auto* pile = new QStackedLayout(place);
    pile->addWidget(step);
    pile->addWidget(entry);
    adapters_.of(side_.entryNotice).onDrawn = [this, pile, step, entry] {
        pile->setCurrentWidget(side_.entryNotice.Caption.get().empty() ? step : entry);
    };
    return place;
}

void EngineView::layOutParameters(QBoxLayout& place) {
    QBoxLayout* all = foldingRow(mirrored());
    QHBoxLayout* speeds = row(mirrored());
    QHBoxLayout* turn = row(mirrored());
    all->addLayout(speeds, 1);
    all->addLayout(turn, 1);
    speeds->addLayout(
        parameter(side_.slow, {"Slow speed of %1", "Slow speed of %1 in steps per second."}, "slow"));
    speeds->addStretch(1);
    speeds->addLayout(
        parameter(side_.fast, {"Fast speed of %1", "Fast speed of %1 in steps per second."}, "fast"));
    speeds->addStretch(1);
    turn->addLayout(parameter(
        side_.steps, {"Steps of %1", "Full steps that the motor of %1 makes in one revolution."}, "steps/r"));
    turn->addStretch(1);
    turn->addLayout(parameter(
        side_.units, {"Units of %1", "How far %1 moves in one revolution, in units of its position."},
        "mm/r|dots/r|deg/r|units/r"));
    place.addLayout(all);
}

QLayout* EngineView::parameter(const engine::Parameter& parameter, const Words& words,
                               const QString& captions) {
    Words labelWords = words;
    labelWords.tip += " Double-click to change it, again to confirm.";
    labelWords.key = kOpenKey;
    CaptionLabel* label = adapters_.activeLabel(parameter.label, labelWords, captions);
    label->setTone(CaptionLabel::Tone::Quiet);
    Words boxWords = words;
    boxWords.name += ", entry";
    boxWords.tip += " Double-click to change it.";
    boxWords.key = "Enter confirms, Esc restores";
    LineEdit* box = adapters_.textBox(parameter.box, boxWords, "00000");
    box->setQuiet(true);
    box->onOpen = [&parameter = parameter.label] { parameter.DblClick.fire(); };
    new PencilOnHover(*label, *box);
    QHBoxLayout* pair = row();
    pair->setSpacing(0);
    pair->addWidget(label);
    pair->addWidget(box);
    return pair;
}

} // namespace ui
