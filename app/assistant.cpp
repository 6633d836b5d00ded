#include "app/assistant.h"

#include "app/auto_outputs_off.h"
#include "config/records.h"
#include "form/key_filter.h"
#include "runtime/number.h"

#include <algorithm>

namespace app {

namespace {

using form::FrmAssistant;

constexpr int kTurnRounds = 12, kTurnMilliseconds = 60; // 48 steps, in three seconds

constexpr std::array<const char*, FrmAssistant::kPages> kTitles = {
    "Function", "Outputs", "Motor", "Speeds", "Zero and positions", "Where it comes from", "Saving"};

constexpr std::array<const char*, FrmAssistant::kPages> kAsks = {
    "What do the two motors turn?",
    "Test coils: its four lamps light in turn. Turn: the shaft turns. Which way did it go?",
    "How far is a revolution of each motor? Turn once and look; or move, measure, and correct.",
    "How fast may it run? Hold a button until the motor no longer follows, then let go.",
    "Drive to a place that you know and call it zero. Then drive on, and store positions.",
    "Which program reports the frequency?",
    "What happens by itself, and what is kept?"};
constexpr const char* kAskDirection =
    "Turn the antenna to where both axes are zero, and call it zero. Then set ranges and parking.";
constexpr const char* kAskTarget = "Which program says where the antenna is to point?";

struct Choice {
    form::OptionButton FrmAssistant::*option;
    form::Menu form::Form1::*menu;
    int function;
};
constexpr std::array kChoices = {
    Choice{&FrmAssistant::optCoilTuner, &form::Form1::mnuCoilTuner, form::kCoilTuner},
    Choice{&FrmAssistant::optTuneLoad, &form::Form1::mnuAmpli, form::kTuneAndLoad},
    Choice{&FrmAssistant::optRotor, &form::Form1::mnuSat, form::kSatelliteRotor}};

} // namespace

Assistant::Engine::Engine(Assistant& assistant, form::AssistantEngine& controls, const engine::Side& engine)
    : shown(controls), side(engine),
      setUp(assistant.main_, controls, engine, assistant.motion_, assistant.dialog_.tmrTry) {}

Assistant::Assistant(form::Form1& main, FrmAssistant& dialog, engine::Motion& motion,
                     engine::OutputPorts& outputs, config::RecordFile& file, platform::Hardware& hardware)
    : main_(main), dialog_(dialog), motion_(motion), file_(file), hardware_(hardware), sides_(main),
      coils_(main, outputs, dialog.tmrCoils), a_(*this, dialog.engineA, sides_.a),
      b_(*this, dialog.engineB, sides_.b) {
    coils_.onCoil = [this](int coil) { showCoil(coil); };
    dialog_.tmrLook.Tick.attach([this] { look(); });
    dialog_.onPause = [this] { halt(); };
    dialog_.onEscape = [this] { return halt(); };
    dialog_.cmdStopAll.Click.attach([this] { halt(); });
    dialog_.cmdNext.Click.attach([this] { cmdNext_Click(); });
    dialog_.cmdSkip.Click.attach([this] { cmdSkip_Click(); });
    dialog_.cmdBack.Click.attach([this] { cmdBack_Click(); });
    dialog_.cmdExitAssistant.Click.attach([this] { dialog_.cancel(); });
    dialog_.onCancel = [this] { cancel(); };
    attachPages();
    attachEngine(a_);
    attachEngine(b_);
}

void Assistant::attachPages() {
    for (const Choice& choice : kChoices) {
        (dialog_.*choice.option).Click.attach([this, &choice] {
            for (const Choice& other : kChoices)
                (dialog_.*other.option).Value.load(&other == &choice);
        });
    }
    const auto press = [](form::Button& button, auto& control) {
        button.Click.attach([&control] { control.Click.raise(); });
    };
    dialog_.cmdHardware.Click.attach([this] { chooseOutputs(); });
    press(dialog_.cmdRotator, main_.mnuRotator);
    dialog_.cmdProgram.Click.attach(
        [this] { (isRotor() ? main_.mnuSatConn : main_.mnuTunConn).Click.raise(); });
    dialog_.cmdLink.Click.attach([this] {
        main_.cmdAutoMemConn.Click.raise();
        look();
    });
    dialog_.cmdStore.Click.attach([this] { main_.lblMem[memory()].DblClick.raise(); });
    dialog_.cmdRecall.Click.attach([this] { main_.Option[memory()].userClick(); });
    dialog_.txtOffSeconds.MaxLength = 2;
    dialog_.txtOffSeconds.KeyPress.attach(form::keepDigits);
}

void Assistant::attachEngine(Engine& engine) {
    form::AssistantEngine& shown = engine.shown;
    engine.setUp.onMove = [this, &engine] { onMove(engine.side); };
    engine.setUp.tell = [this](const std::string& what) { dialog_.lblTrouble.Caption = what; };
    shown.cmdCoils.Click.attach(
        [this, &engine] { testCoils(engine, 1, engine::CoilCheck::kMillisecondsPerCoil); });
    shown.cmdTurn.Click.attach([this, &engine] { testCoils(engine, kTurnRounds, kTurnMilliseconds); });
    const std::pair<form::Button&, engine::Turned> answers[] = {
        {shown.cmdRight, engine::Turned::kForward},
        {shown.cmdWrong, engine::Turned::kBackward},
        {shown.cmdTrembled, engine::Turned::kTrembled},
        {shown.cmdStood, engine::Turned::kNotAtAll}};
    for (const auto& [button, answer] : answers)
        button.Click.attach([this, &engine, answer = answer] { turned(engine, answer); });
    const int first = engine.side.firstOutput;
    shown.lblCoil.Caption = "Outputs " + std::to_string(first) + " to " + std::to_string(first + 3);
    const std::pair<form::Button&, form::Button&> jogs[] = {{shown.cmdForward, engine.side.cmdJogForward},
                                                            {shown.cmdBackward, engine.side.cmdJogBackward}};
    for (const auto& [button, jog] : jogs) {
        button.MouseDown.attach([&jog = jog] { jog.MouseDown.raise(); });
        button.MouseUp.attach([&jog = jog] { jog.MouseUp.raise(); });
    }
    shown.cmdZero.Click.attach([&engine] { engine.side.cmdReset.Click.raise(); });
}

void Assistant::Form_Load() {
    show(Page::kFunction);
    dialog_.tmrLook.Enabled = true;
}

void Assistant::show(int page) {
    page_ = page;
    for (int n = 1; n <= FrmAssistant::kPages; ++n)
        dialog_.page[n].Visible = n == page;
    const auto index = static_cast<std::size_t>(page - 1);
    dialog_.lblPage.Caption =
        std::to_string(page) + " of " + std::to_string(FrmAssistant::kPages) + ": " + kTitles.at(index);
    dialog_.lblAsk.Caption = isRotor() && page == Page::kSource      ? kAskTarget
                             : isRotor() && page == Page::kPositions ? kAskDirection
                                                                     : kAsks.at(index);
    dialog_.lblTrouble.Caption = "";
    dialog_.cmdBack.Enabled = page > Page::kFunction;
    dialog_.cmdSkip.Enabled = page < FrmAssistant::kPages;
    dialog_.cmdNext.Caption = page < FrmAssistant::kPages ? "&Next" : "&Finish";
    open(static_cast<Page>(page));
    look();
}

void Assistant::open(Page page) {
    for (Engine* engine : {&a_, &b_}) {
        engine->shown.lblName.Caption = engine->side.lblEngine.Caption;
        advise(engine->shown, "");
        engine->setUp.open();
    }
    if (page == Page::kFunction) {
        for (const Choice& choice : kChoices)
            (dialog_.*choice.option).Value.load(main_.intFunzione == choice.function);
    }
    boardFound_ = main_.chkUsbOn.ticked();
    linkFound_ = main_.sourceConnected();
    changesFound_ = changes();
    for (form::Control* control :
         {static_cast<form::Control*>(&dialog_.cmbMemory), static_cast<form::Control*>(&dialog_.cmdStore),
          static_cast<form::Control*>(&dialog_.cmdRecall), static_cast<form::Control*>(&dialog_.lblMemory)})
        control->Visible = !isRotor();
    dialog_.cmdRotator.Visible = isRotor();
    dialog_.cmdLink.Visible = !isRotor();
    if (page != Page::kSaving) return;
    dialog_.chkOffAlone.Value.load(main_.bolAutoCmdOff ? 1 : 0);
    const int seconds = main_.intAutoCmdOffSec.value();
    dialog_.txtOffSeconds.Text = std::to_string(seconds > 0 ? seconds : AutoOutputsOff::kFirstDelay);
    config::RecordImage records = file_.read();
    dialog_.chkKeepPositions.Value.load(records.boolean(config::record::kSavePositions) ? 1 : 0);
    dialog_.chkLoadPositions.Value.load(records.boolean(config::record::kLoadPositions) ? 1 : 0);
}

void Assistant::cmdNext_Click() {
    halt();
    if (!store(static_cast<Page>(page_))) return;
    if (page_ == FrmAssistant::kPages) {
        dialog_.unload();
    } else {
        show(page_ + 1);
    }
}

void Assistant::cmdSkip_Click() {
    restore();
    show(page_ + 1);
}

void Assistant::cmdBack_Click() {
    restore();
    show(page_ - 1);
}

bool Assistant::halt() {
    const bool ran = coils_.running() || sides_.anyRunning();
    dialog_.tmrTry.Enabled = false;
    coils_.stop();
    motion_.stopBoth();
    return ran;
}

bool Assistant::store(Page page) {
    switch (page) {
    case Page::kFunction:
        return storeFunction();
    case Page::kMotor:
        return storeEngines(&EngineSetUp::storeMotor);
    case Page::kSpeeds:
        return storeEngines(&EngineSetUp::storeSpeeds);
    case Page::kSaving:
        return storeSaving();
    default:
        return true;
    }
}

void Assistant::restore() {
    halt();
    if (page_ == Page::kMotor || page_ == Page::kSpeeds) {
        a_.setUp.restore();
        b_.setUp.restore();
    }
    if (page_ == Page::kOutputs && main_.chkUsbOn.ticked() != boardFound_) {
        main_.chkUsbOn.Value = boardFound_ ? 1 : 0;
    }
    if (page_ == Page::kSource && !linkFound_ && main_.sourceConnected()) main_.cmdAutoMemConn.Click.raise();
}

void Assistant::cancel() {
    restore();
    // What was declared and stored on this page.
    for (std::size_t made = changes(); made > changesFound_; made = std::min(made - 1, changes()))
        main_.mnuUndo.Click.raise();
    dialog_.unload();
}

bool Assistant::storeFunction() {
    for (const Choice& choice : kChoices) {
        if (!(dialog_.*choice.option).Value) continue;
        (main_.*choice.menu).Click.raise();
        return true;
    }
    dialog_.lblTrouble.Caption = "Choose what the motors turn";
    return false;
}

bool Assistant::storeEngines(std::string (EngineSetUp::*storeOne)()) {
    // Both engines, or none.
    std::string trouble = a_.setUp.fault();
    if (trouble.empty()) trouble = b_.setUp.fault();
    for (Engine* engine : {&a_, &b_}) {
        if (trouble.empty()) trouble = (engine->setUp.*storeOne)();
    }
    dialog_.lblTrouble.Caption = trouble;
    return trouble.empty();
}

bool Assistant::storeSaving() {
    const auto seconds = static_cast<int>(runtime::leadingNumber(dialog_.txtOffSeconds.Text.get()));
    const form::ScrollBar::Range range = main_.hScrCmdOff.Limits;
    if (seconds < range.min || seconds > range.max) {
        dialog_.lblTrouble.Caption =
            "Type a time from " + std::to_string(range.min) + " to " + std::to_string(range.max) + " seconds";
        return false;
    }
    file_.write({config::booleanRecord(config::record::kSavePositions, dialog_.chkKeepPositions.ticked()),
                 config::booleanRecord(config::record::kLoadPositions, dialog_.chkLoadPositions.ticked())});
    main_.chkAutoCmdOff.Value = dialog_.chkOffAlone.Value;
    if (main_.intAutoCmdOffSec != seconds) main_.hScrCmdOff.userScroll(seconds);
    return true;
}

} // namespace app
