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

EngineView::EngineView(const EngineControls& engine, Adapters& adapters)
    : Card({}, {}), engine_(engine), adapters_(adapters), settings_(new QWidget), jogChoice_(new QWidget) {
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
             &engine_.name,        &engine_.use,       &engine_.display,    &engine_.position,
             &engine_.angle,       &engine_.received,  &engine_.unit,       &engine_.runBackward,
             &engine_.jogBackward, &engine_.stop,      &engine_.jogForward, &engine_.runForward,
             &engine_.slow,        &engine_.fast,      &engine_.stepMode,   &engine_.reset,
             &engine_.target,      &engine_.toGo,      &engine_.bar,        &engine_.step,
             &engine_.entryNotice, &engine_.jogChoice, &engine_.otherSpeed}) {
        named_.push_back(control);
    }
    named_.insert(named_.end(), engine_.lamps.begin(), engine_.lamps.end());
    for (const auto* parameter : {&engine_.fastSpeed, &engine_.slowSpeed, &engine_.steps, &engine_.units}) {
        named_.push_back(&parameter->label);
        named_.push_back(&parameter->box);
    }
    adapters_.of(engine_.name).onDrawn = [this] { nameEverything(); };
}

void EngineView::nameEverything() {
    const QString name = shown(engine_.name.Caption);
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
    QHBoxLayout* header = row(engine_.mirrored);
    CaptionLabel* name = adapters_.label(engine_.name, {"%1", "The engine of this panel."},
                                         "Engine 1|Engine 2|Elevation|Azimuth");
    name->setFont(scaledFont(name->font(), kNameSize, QFont::DemiBold));
    name->setAlignment((engine_.mirrored ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter);
    header->addWidget(name);
    header->addStretch(1);

    const Words useWords{"What drives %1", "What drives %1 now: the memory in use, or Manual after a jog."};
    CaptionLabel* use = adapters_.label(engine_.use, useWords, "Manual|000.00|MMMMMM");
    use->setFont(scaledFont(use->font(), kUseSize, QFont::DemiBold));
    use->setTone(CaptionLabel::Tone::Accent);
    use->setAlignment((engine_.mirrored ? Qt::AlignLeft : Qt::AlignRight) | Qt::AlignVCenter);
    QSizePolicy keepsPlace = use->sizePolicy();
    keepsPlace.setRetainSizeWhenHidden(true);
    use->setSizePolicy(keepsPlace);
    header->addWidget(use);

    QHBoxLayout* lamps = row();
    lamps->setSpacing(0);
    int phase = 1;
    for (form::Shape* lamp : engine_.lamps) {
        const QString number = QString::number(phase++);
        const QString tip = "Glows while phase " + number + " drives the coils of ";
        lamps->addWidget(adapters_.lamp(*lamp, {"Lamp " + number + " of %1", tip + "%1."}));
    }
    header->addLayout(lamps);
    body().addLayout(header);
}

void EngineView::layOutDisplay() {
    auto* display = new Display;
    adapters_.display(engine_.display, *display, {"Display of %1", "Where %1 stands."});
    const Words words{"Position of %1",
                      "Where %1 stands. Double-click it to declare another value: no engine moves.",
                      kOpenKey};
    Digits* position = adapters_.digits(engine_.position, words);
    Digits* angle = adapters_.digits(engine_.angle, words);
    CaptionLabel* unit =
        adapters_.label(engine_.unit, {"Unit of %1", "The unit of the position of %1."}, "mm:|dots:|deg:");
    unit->setFont(scaledFont(unit->font(), kUnitSize));
    display->place(*position, *angle, *unit);
    layOutMovement(*display);
    Digits* received = adapters_.digits(
        engine_.received, {"Received %1", "%1 received from the tracking program, offset added."}, false);
    CaptionLabel* target = fixedText("Target", "What the tracking program sends, offset added.");
    target->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    display->placeReceived(*received, *target);
    Adapter& colours = adapters_.of(engine_.received);
    colours.onDrawn = [this, target] {
        target->setVisible(engine_.received.Visible);
        target->setColours(ownColour(engine_.received.ForeColor), {});
    };
    colours.redrawSoon();
    body().addWidget(display, 3);
}

void EngineView::layOutMovement(Display& display) {
    CaptionLabel* target = adapters_.label(
        engine_.target, {"Target of %1", "The direction in which %1 runs, and where it will stop."},
        "▸ -998.76");
    CaptionLabel* toGo = adapters_.label(
        engine_.toGo,
        {"Time to go of %1", "The time that %1 needs to its target; end of range: %1 can go no further."},
        "999 min|end of range");
    ThinBar* bar = adapters_.bar(engine_.bar, {"Way of %1", "How far %1 is on its way."});
    display.placeMovement(*target, *toGo, *bar);
}

void EngineView::layOutMotion() {
    QHBoxLayout* motion = row();
    const QString hold = "hold Space";
    PushButton* jogBackward = adapters_.button(
        engine_.jogBackward, {"Jog %1 backward", "Runs %1 backward while it is held.", hold});
    PushButton* runBackward = adapters_.button(
        engine_.runBackward, {"Run %1 backward", "Runs %1 backward until it is stopped.", kSpace});
    PushButton* stop = withKey(adapters_.button(engine_.stop,
                                                {"Stop %1", "Stops %1 at once.",
                                                 QString(engine_.stopKey) + "; Esc stops both engines"},
                                                {}, PushButton::Kind::Stop),
                               engine_.stopKey);
    PushButton* runForward = adapters_.button(
        engine_.runForward, {"Run %1 forward", "Runs %1 forward until it is stopped.", kSpace});
    PushButton* jogForward =
        adapters_.button(engine_.jogForward, {"Jog %1 forward", "Runs %1 forward while it is held.", hold});
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
        engine_.jogChoice,
        {"Jog of %1",
         "What <<, >> and the jog keys do. hold: %1 runs while you press. A number: %1 moves by that much.",
         "Up and Down"});
    choice->installEventFilter(this);
    CaptionLabel* other = adapters_.label(
        engine_.otherSpeed,
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
    place->insertWidget(engine_.mirrored && !compact ? 0 : -1, jogChoice_);
    jogChoice_->show();
}

void EngineView::layOutSpeeds(QBoxLayout& place) {
    QBoxLayout* speeds = foldingRow(engine_.mirrored);
    QHBoxLayout* pair = row();
    speeds_ = pair;
    pair->addWidget(
        withKey(adapters_.button(engine_.slow,
                                 {"Slow speed of %1",
                                  "%1 runs at its slow speed. Acts on the direction that it ran in last.",
                                  engine_.slowKey},
                                 "MMMM"),
                engine_.slowKey));
    pair->addWidget(
        withKey(adapters_.button(engine_.fast,
                                 {"Fast speed of %1",
                                  "%1 runs at its fast speed. Acts on the direction that it ran in last.",
                                  engine_.fastKey},
                                 "MMMM"),
                engine_.fastKey));
    speeds->addLayout(pair);
    // Right above the entries, in room that is free anyway.
    speeds->addWidget(notices(), 1);
    QHBoxLayout* others = row(engine_.mirrored);
    speeds->addLayout(others);
    others->addWidget(adapters_.checkBox(
        engine_.stepMode,
        {"Half steps of %1", "Ticked, %1 makes half steps: finer, and half as fast.", kSpace},
        "Full Step|Half Step"));
    others->addWidget(adapters_.button(
        engine_.reset,
        {"Reset %1", "Declares the position of %1 to be 0 while it stands: no engine moves.", kSpace},
        "Reset 1|Reset Tn|Reset Ld|Reset Az|Reset El"));
    place.addLayout(speeds);
}

/// One place for two: what became of an entry, else what follows from the parameters.
QWidget* EngineView::notices() {
    CaptionLabel* step = adapters_.label(
        engine_.step,
        {"Steps of %1", "The size of a step of %1, and its real speeds: a step takes whole milliseconds."},
        "0.05 mm a step, 100 to 200 steps/s");
    CaptionLabel* entry = adapters_.label(
        engine_.entryNotice, {"Entry of %1", "Whether the last entry was changed or refused."}, "");
    step->setTone(CaptionLabel::Tone::Quiet);
    for (CaptionLabel* label : {step, entry})
        label->setAlignment((engine_.mirrored ? Qt::AlignLeft : Qt::AlignRight) | Qt::AlignVCenter);
    auto* place = new QWidget;
    auto* pile = new QStackedLayout(place);
    pile->addWidget(step);
    pile->addWidget(entry);
    adapters_.of(engine_.entryNotice).onDrawn = [this, pile, step, entry] {
        pile->setCurrentWidget(engine_.entryNotice.Caption.get().empty() ? step : entry);
    };
    return place;
}

void EngineView::layOutParameters(QBoxLayout& place) {
    QBoxLayout* all = foldingRow(engine_.mirrored);
    QHBoxLayout* speeds = row(engine_.mirrored);
    QHBoxLayout* turn = row(engine_.mirrored);
    all->addLayout(speeds, 1);
    all->addLayout(turn, 1);
    speeds->addLayout(
        parameter(engine_.slowSpeed, {"Slow speed of %1", "Slow speed of %1 in steps per second."}, "slow"));
    speeds->addStretch(1);
    speeds->addLayout(
        parameter(engine_.fastSpeed, {"Fast speed of %1", "Fast speed of %1 in steps per second."}, "fast"));
    speeds->addStretch(1);
    turn->addLayout(parameter(engine_.steps,
                              {"Steps of %1", "Full steps that the motor of %1 makes in one revolution."},
                              "steps/r"));
    turn->addStretch(1);
    turn->addLayout(parameter(
        engine_.units, {"Units of %1", "How far %1 moves in one revolution, in units of its position."},
        "mm/r|dots/r|deg/r|units/r"));
    place.addLayout(all);
}

QLayout* EngineView::parameter(const EngineControls::Parameter& parameter, const Words& words,
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
