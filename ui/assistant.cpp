#include "ui/assistant_pictures.h"
#include "ui/card.h"
#include "ui/dialogs.h"

#include <QEvent>
#include <QGridLayout>
#include <QStackedLayout>
#include <QTimer>

namespace ui {

namespace {

constexpr double kTitleSize = 1.3, kHeardSize = 1.8, kPositionSize = 1.8;

/// The pages, with the same card of controls for each engine. Belongs to its window.
class Pages : public QObject {
  public:
    Pages(Dialog& window, form::FrmAssistant& form)
        : QObject(&window), form_(form), adapters_(window.adapters()) {
        window.installEventFilter(this);
    }

    QWidget* make() {
        QWidget* const pages[] = {function(), outputs(), motor(), speeds(), positions(), source(), saving()};
        int number = 1;
        for (QWidget* page : pages) {
            pile_->addWidget(page);
            form::Frame& frame = form_.page[number++];
            adapters_.frame(frame, *page);
            adapters_.of(frame).onDrawn = [this, &frame, page] {
                if (frame.Visible) turnTo(page);
            };
        }
        return place_;
    }

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::WindowDeactivate) form_.guard(form_.onPause);
        return QObject::eventFilter(watched, event);
    }

  private:
    void turnTo(QWidget* page) {
        pile_->setCurrentWidget(page);
        page->setGeometry(place_->rect());
        for (const auto& [engine, name] : names_)
            name->setText(shown(engine->lblName.Caption));
        for (QWidget* widget : page->findChildren<QWidget*>()) {
            if (!widget->isEnabled() || widget->isHidden() || !(widget->focusPolicy() & Qt::TabFocus))
                continue;
            widget->setFocus();
            // Its text may be drawn after the page.
            if (auto* entry = qobject_cast<QLineEdit*>(widget))
                QTimer::singleShot(0, entry, &QLineEdit::selectAll);
            return;
        }
    }

    static QVBoxLayout* column(QWidget* page) {
        auto* layout = new QVBoxLayout(page);
        layout->setContentsMargins(0, 0, 0, 0);
        layout->setSpacing(kGrid);
        return layout;
    }

    CaptionLabel* label(form::Label& control, const QString& name, const QString& samples) {
        return adapters_.label(control, {name, name + "."}, samples);
    }
    PushButton* button(form::Button& control, const QString& name, const QString& tip,
                       const QString& key = "Space", const QString& samples = {}) {
        return adapters_.button(control, {name, tip, key}, samples);
    }
    LineEdit* entry(form::TextBox& control, const QString& name, const QString& tip) {
        return adapters_.textBox(control, {name, tip, "Tab"}, "0000000");
    }

    /// A card for each engine, filled by `fill`, with the engine's name on top.
    template <class Fill>
    QHBoxLayout* forBoth(Fill fill) {
        QHBoxLayout* both = row();
        int number = 1;
        for (form::AssistantEngine* engine : {&form_.engineA, &form_.engineB}) {
            const QString of = " of engine " + QString::number(number);
            auto* card = new Card("Engine " + QString::number(number), {});
            names_.push_back({engine, fixedText({})});
            CaptionLabel* name = names_.back().second;
            name->setTone(CaptionLabel::Tone::Normal);
            name->setFont(scaledFont(name->font(), 1.15, QFont::DemiBold));
            name->reserve("Engine 1|Elevation|Azimuth");
            card->body().addWidget(name);
            fill(card->body(), *engine, of);
            card->body().addStretch(1);
            both->addWidget(card, 1);
            ++number;
        }
        return both;
    }

    QWidget* function();
    QWidget* outputs();
    QWidget* motor();
    QWidget* speeds();
    QWidget* positions();
    QWidget* source();
    QWidget* saving();

    form::FrmAssistant& form_;
    Adapters& adapters_;
    QWidget* place_ = new QWidget;
    QStackedLayout* pile_ = new QStackedLayout(place_);
    std::vector<std::pair<form::AssistantEngine*, CaptionLabel*>> names_; // one on each card
};

QWidget* Pages::function() {
    auto* page = new Card("Function", "What the two motors turn.");
    struct Choice {
        form::OptionButton& option;
        const char* name;
        const char* what;
    };
    std::vector<OptionDot*> dots;
    for (const Choice& choice :
         {Choice{form_.optCoilTuner, "Coil Tuner", "The elements of a coil tuner, in millimetres."},
          Choice{form_.optTuneLoad, "Tune & Load", "The capacitors of a tuner or an amplifier, in dots."},
          Choice{form_.optRotor, "Satellite Rotor", "An antenna in azimuth and elevation, in degrees."}}) {
        dots.push_back(adapters_.option(choice.option, {choice.name, choice.what, "Up and Down"}));
        page->body().addWidget(dots.back());
        QHBoxLayout* below = row();
        below->addSpacing(3 * kGrid);
        below->addWidget(fixedText(choice.what, choice.what));
        page->body().addLayout(below);
        page->body().addSpacing(kGrid);
    }
    for (std::size_t i = 0; i < dots.size(); ++i) {
        dots[i]->setNeighbours(i > 0 ? dots[i - 1] : nullptr, i + 1 < dots.size() ? dots[i + 1] : nullptr);
    }
    CaptionLabel* note = fixedText("Another function begins at position 0, with its outputs off.");
    page->body().addWidget(note);
    page->body().addStretch(1);
    return page;
}

QWidget* Pages::outputs() {
    auto* page = new QWidget;
    QVBoxLayout* all = column(page);
    QHBoxLayout* chosen = row();
    chosen->addWidget(label(form_.lblOutputs, "Where the outputs go", "Outputs: /dev/parport0, 0x0378"), 1);
    chosen->addWidget(button(form_.cmdHardware, "Choose the outputs",
                             "Opens Hardware and Links: printer port, board, or simulated."));
    all->addLayout(chosen);
    all->addLayout(forBoth([this](QVBoxLayout& body, form::AssistantEngine& engine, const QString& of) {
        QHBoxLayout* tests = row();
        tests->addWidget(
            button(engine.cmdCoils, "Test the coils" + of,
                   "Energises the four coils one after the other, slowly. A second press ends the test."));
        tests->addWidget(button(
            engine.cmdTurn, "Turn" + of,
            "Turns the shaft by 48 steps; the position does not count them. A second press ends the test."));
        tests->addStretch(1);
        for (int n = 1; n <= 4; ++n) {
            const QString name = "Coil " + QString::number(n) + of;
            tests->addWidget(adapters_.lamp(engine.lamp[n], {name, "Glows while the coil is energised."}));
        }
        body.addLayout(tests);
        CaptionLabel* where = label(engine.lblCoil, "Outputs" + of, "Outputs 5 to 8");
        where->setTone(CaptionLabel::Tone::Quiet);
        where->setAlignment(Qt::AlignRight);
        QHBoxLayout* question = row();
        question->addWidget(fixedText("Which way did it turn?"), 1);
        question->addWidget(where);
        body.addLayout(question);
        auto* answers = new QGridLayout;
        answers->setSpacing(kGrid);
        answers->addWidget(button(engine.cmdRight, "The right way" + of, "The way that you want >> to go."),
                           0, 0);
        answers->addWidget(button(engine.cmdWrong, "The other way" + of, "Names the wires to exchange."), 0,
                           1);
        answers->addWidget(button(engine.cmdTrembled, "It trembled" + of,
                                  "It shook and went nowhere: names the wires to exchange."),
                           1, 0);
        answers->addWidget(button(engine.cmdStood, "It stood" + of, "Nothing moved: says what to check."), 1,
                           1);
        body.addLayout(answers);
        body.addWidget(label(engine.lblWires, "What to do about the wires" + of,
                             "Exchange wires 5 and 6, then Turn again"));
        auto* wires = new WiresPicture(engine, &engine == &form_.engineA ? 1 : 5);
        adapters_.of(engine.lblWires).onDrawn = [wires] { wires->update(); };
        body.addWidget(wires);
    }));
    return page;
}

QWidget* Pages::motor() {
    auto* page = new QWidget;
    column(page)->addLayout(forBoth([this](QVBoxLayout& body, form::AssistantEngine& engine,
                                           const QString& of) {
        auto* grid = new QGridLayout;
        grid->setSpacing(kGrid);
        grid->setColumnStretch(2, 1);
        const auto line = [&](QWidget* name, form::TextBox& box, const QString& called, const char* tip,
                              QWidget* beside) {
            const int at = grid->rowCount();
            grid->addWidget(name, at, 0);
            grid->addWidget(entry(box, called + of, tip), at, 1);
            grid->addWidget(beside, at, 3);
        };
        line(fixedText("steps/r"), engine.txtStepsR, "Steps per revolution",
             "Full steps of one revolution: 200 for a motor of 1.8 degrees.",
             adapters_.checkBox(engine.chkHalf, {"Half steps" + of, "Finer, and half as fast.", "Space"}));
        CaptionLabel* unit = label(engine.lblUnitsR, "Unit per revolution" + of, "dots/r|units/r");
        unit->setTone(CaptionLabel::Tone::Quiet);
        line(unit, engine.txtUnitsR, "Units per revolution",
             "How far one revolution moves, in units of the position.",
             button(engine.cmdOnce, "Turn once" + of, "Turns the motor by one revolution."));
        line(fixedText("asked for"), engine.txtAsked, "Asked for", "How far to move, for a measurement.",
             button(engine.cmdMove, "Move" + of, "Moves by what is asked for."));
        line(fixedText("measured"), engine.txtMeasured, "Measured", "How far it really moved.",
             button(engine.cmdCorrect, "Correct" + of, "Corrects the units per revolution."));
        body.addLayout(grid);
        QHBoxLayout* result = row();
        CaptionLabel* corrected =
            label(engine.lblCorrected, "Correction" + of, "10 becomes 12, a whole number here");
        corrected->setTone(CaptionLabel::Tone::Accent);
        result->addWidget(corrected, 1);
        result->addWidget(adapters_.bar(
            engine.barTurn,
            {"Shaft" + of, "Where the shaft should stand: a revolution brings the pointer back."},
            new ShaftPicture));
        body.addLayout(result);
    }));
    return page;
}

QWidget* Pages::speeds() {
    auto* page = new QWidget;
    column(page)->addLayout(forBoth([this](QVBoxLayout& body, form::AssistantEngine& engine,
                                           const QString& of) {
        const QString tip = "While it is held the motor runs faster and faster. Let go when it fails.";
        QHBoxLayout* trial = row();
        trial->addWidget(button(engine.cmdTryBackward, "Try backward" + of, tip, "hold Space"), 1);
        trial->addWidget(button(engine.cmdTryForward, "Try forward" + of, tip, "hold Space"), 1);
        body.addLayout(trial);
        ThinBar* faster = adapters_.bar(
            engine.barTry, {"Trial, how fast" + of, "From 20 milliseconds a step to the shortest, 1."});
        faster->setFixedHeight(kGrid / 2);
        body.addWidget(faster);
        CaptionLabel* result = label(engine.lblTry, "Trial" + of, "Up to 20 ms a step: fast 1000");
        result->setTone(CaptionLabel::Tone::Accent);
        body.addWidget(result);
        QHBoxLayout* speeds = row();
        speeds->addWidget(fixedText("slow"));
        speeds->addWidget(
            entry(engine.txtSlow, "Slow speed" + of, "For starts and arrivals, in steps per second."));
        speeds->addStretch(1);
        speeds->addWidget(fixedText("fast"));
        speeds->addWidget(entry(engine.txtFast, "Fast speed" + of, "For long ways, in steps per second."));
        body.addLayout(speeds);
    }));
    return page;
}

QWidget* Pages::positions() {
    auto* page = new QWidget;
    QVBoxLayout* all = column(page);
    all->addLayout(forBoth([this](QVBoxLayout& body, form::AssistantEngine& engine, const QString& of) {
        CaptionLabel* position = label(engine.lblPosition, "Position" + of, "-000.00 dots");
        position->setFont(scaledFont(position->font(), kPositionSize, QFont::DemiBold));
        position->setAlignment(Qt::AlignCenter);
        body.addWidget(position);
        QHBoxLayout* jog = row();
        jog->addWidget(
            button(engine.cmdBackward, "Jog backward" + of, "As << in the main window.", "hold Space"), 1);
        jog->addWidget(
            button(engine.cmdForward, "Jog forward" + of, "As >> in the main window.", "hold Space"), 1);
        body.addLayout(jog);
        body.addWidget(button(engine.cmdZero, "Zero" + of, "Declares the position to be 0, as Reset does."));
    }));
    QHBoxLayout* memories = row();
    memories->addWidget(adapters_.comboBox(
        form_.cmbMemory, {"Memory", "The memory that is stored or recalled.", "Up and Down"}));
    memories->addWidget(button(form_.cmdStore, "Store", "Stores both positions in the memory."));
    memories->addWidget(button(form_.cmdRecall, "Recall", "Drives both engines to the memory."));
    memories->addWidget(label(form_.lblMemory, "What the memory holds", "28.500.000 (-998.76--998.76)"), 1);
    memories->addWidget(
        button(form_.cmdRotator, "Ranges and parking", "The range of the rotator, and its parking place."));
    memories->addStretch();
    all->addLayout(memories);
    return page;
}

QWidget* Pages::source() {
    auto* page = new Card("Source", "The program that the engines follow, and what it reports now.");
    QHBoxLayout* choose = row();
    choose->addWidget(
        button(form_.cmdProgram, "Choose the program", "Opens the connections, with a test of each."));
    choose->addWidget(button(form_.cmdLink, "Connect", "Connects or disconnects the program.", "Space",
                             "Connect|Disconnect"));
    choose->addStretch(1);
    page->body().addLayout(choose);
    CaptionLabel* program =
        label(form_.lblProgram, "Program", "Ham Radio Deluxe: Disconnected|Target: tracking server");
    program->setTone(CaptionLabel::Tone::Quiet);
    page->body().addWidget(program);
    CaptionLabel* heard = label(form_.lblHeard, "Heard now", "144.200000 MHz|nothing heard yet");
    heard->setFont(scaledFont(heard->font(), kHeardSize, QFont::DemiBold));
    page->body().addWidget(heard);
    page->body().addStretch(1);
    return page;
}

QWidget* Pages::saving() {
    auto* page = new Card("Saving", "What happens by itself, and what is kept.");
    QHBoxLayout* off = row();
    off->addWidget(adapters_.checkBox(
        form_.chkOffAlone, {"Automatic outputs off",
                            "Coils that stay on only heat up. This switches them off at rest.", "Space"}));
    off->addWidget(entry(form_.txtOffSeconds, "Seconds of rest", "1 to 32 seconds."));
    off->addWidget(fixedText("seconds of rest"));
    off->addStretch(1);
    page->body().addLayout(off);
    page->body().addWidget(adapters_.checkBox(
        form_.chkKeepPositions,
        {"Save the positions at exit", "When the program ends, it saves where the engines stand.", "Space"}));
    page->body().addWidget(adapters_.checkBox(
        form_.chkLoadPositions, {"Load the positions at the start",
                                 "The program starts with the saved positions, not with 0.", "Space"}));
    page->body().addStretch(1);
    return page;
}

} // namespace

void layOut(Dialog& window, form::FrmAssistant& form) {
    Adapters& adapters = window.adapters();
    QVBoxLayout* all = window.column();
    all->setSpacing(kGrid);
    CaptionLabel* title =
        adapters.label(form.lblPage, {"Page", "The page of the assistant."}, "5 of 7: Zero and positions");
    title->setFont(scaledFont(title->font(), kTitleSize, QFont::DemiBold));
    all->addWidget(title);
    all->addWidget(adapters.label(
        form.lblAsk, {"Question", "What the page is about."},
        "How far is a revolution of each motor? Turn once and look; or move, measure, and correct."));
    auto* pages = new Pages(window, form);
    all->addWidget(pages->make(), 1);
    CaptionLabel* trouble = adapters.label(form.lblTrouble, {"What is wrong", "What is wrong on this page."},
                                           "Elevation, units/r: type a number that is not 0");
    all->addWidget(trouble);

    QHBoxLayout* line = row();
    PushButton* stop = adapters.button(form.cmdStopAll, {"Stop", "Stops both engines and tests.", "Esc"}, {},
                                       PushButton::Kind::Stop);
    stop->setFont(scaledFont(stop->font(), kTitleSize, QFont::Bold));
    stop->setMinimumWidth(20 * kGrid);
    line->addWidget(stop);
    line->addStretch(1);
    line->addWidget(adapters.button(
        form.cmdBack, {"Back", "Goes to the page before, without the entries of this page.", "Alt+B"}));
    line->addWidget(adapters.button(
        form.cmdSkip, {"Skip", "Goes to the next page, without the entries of this page.", "Alt+S"}));
    line->addWidget(window.addButtons(
        form.cmdNext,
        {"Next", "Takes the settings of this page and goes on.", "Alt+N, Alt+F, or Enter in an entry"},
        form.cmdExitAssistant,
        {"Cancel", "Closes, and undoes what was done on this page. What earlier pages changed stays.",
         "Esc"}));
    all->addLayout(line);
}

} // namespace ui
