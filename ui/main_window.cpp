#include "ui/main_window.h"

#include "engine/side.h"
#include "runtime/errors.h"
#include "ui/card.h"
#include "ui/dialogs.h"
#include "ui/engine_view.h"
#include "ui/invitation.h"
#include "ui/key_repeat.h"
#include "ui/main_layout.h"
#include "ui/memory_view.h"
#include "ui/menus.h"
#include "ui/outputs_view.h"
#include "ui/radio_view.h"
#include "ui/rotor_view.h"
#include "ui/sky_view.h"
#include "ui/table_window.h"

#include <QApplication>
#include <QCloseEvent>
#include <QMenuBar>
#include <QScreen>
#include <QShortcut>
#include <QStatusBar>

namespace ui {

namespace {

/// With its frame the smallest window fits a screen of 800x480.
constexpr QSize kSmallest(780, 420), kUsual(1280, 720);
/// Where the "New Value" dialog stands from the window's corner, given in twips, of which 15 make a pixel.
QPoint newValuePlace(bool engineB) {
    constexpr int kTwipsPerPixel = 15;
    return QPoint(engineB ? 8800 : 3500, 1500) / kTwipsPerPixel;
}

/// The letter 'A' to 'Z' of a key; 0 for any other key.
char letterOf(const QKeyEvent& event) {
    const bool isLetter = event.key() >= Qt::Key_A && event.key() <= Qt::Key_Z;
    return isLetter ? static_cast<char>('A' + event.key() - Qt::Key_A) : '\0';
}

/// Two cards of which one is shown.
QWidget* oneOf(QWidget* one, QWidget* other) {
    auto* place = new QWidget;
    auto* layout = new QVBoxLayout(place);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(one);
    layout->addWidget(other);
    return place;
}

} // namespace

MainWindow::MainWindow(form::Form1& form, form::Boxes& boxes)
    : form_(form), boxes_(boxes), redraw_([sides = engine::Sides(form)] { return sides.untilStep(); }) {
    setObjectName(shown(form.name()));
    setWindowTitle(shown(form.Caption));
    layOutMenus(*this, form_, adapters_);
    layOutStatusBar(*this, form_, adapters_);
    layOutContent();
    addPositionMenus();
    orderFocus();

    auto* stop = new QShortcut(QKeySequence(Qt::Key_Escape), this);
    stop->setAutoRepeat(false);
    connect(stop, &QShortcut::activated, this, [this] { stopBoth(); });
    if (QGuiApplication::platformName() == "xcb")
        qApp->installEventFilter(new KeyRepeat(this)); // of all windows

    form_.onBeep = [] { QApplication::beep(); };
    auto* add = new QShortcut(QKeySequence(Qt::Key_Insert), this);
    add->setAutoRepeat(false);
    connect(add, &QShortcut::activated, this, [this] {
        if (form_.onAddPosition) form_.guard(form_.onAddPosition);
    });

    boxes_.modalWindow = [this](form::Form& dialog) { showModal(dialog); };
    boxes_.windowBeside = [this](form::Form& window) { showBeside(window); };
    redraw_.drawAll();
    setMinimumSize(kSmallest);
    const QSize wanted = (centralWidget()->sizeHint() + barsSize()).expandedTo(kUsual);
    const QSize room = screen()->availableSize();
    resize(wanted.boundedTo(room).expandedTo(kSmallest));
    // With its frame it would reach beyond the screen.
    if (wanted.width() >= room.width() || wanted.height() >= room.height())
        setWindowState(Qt::WindowMaximized);
}

MainWindow::~MainWindow() {
    hide(); // a jog button that is held lets go while there is somebody to tell
    boxes_.modalWindow = nullptr;
    boxes_.windowBeside = nullptr;
    form_.onBeep = nullptr;
}

void MainWindow::layOutContent() {
    memories_ = new MemoryView(form_, adapters_);
    auto* sky = new SkyView(form_);
    const MainLayout::Cards cards{.engineA = new EngineView(engine::sideA(form_), adapters_),
                                  .engineB = new EngineView(engine::sideB(form_), adapters_),
                                  .memories = memories_,
                                  .sky = sky,
                                  .left = oneOf(memories_, sky),
                                  .right =
                                      oneOf(new RadioView(form_, adapters_), new RotorView(form_, adapters_)),
                                  .outputs = new OutputsView(form_, adapters_),
                                  .invitation = new Invitation(form_)};
    adapters_.of(form_.framSat).onDrawn = [this, sky] {
        // The memories belong to the tuner functions, the sky to Satellite Rotor.
        sky->setVisible(form_.framSat.Visible);
        memories_->setVisible(!form_.framSat.Visible);
    };

    redraw_.drawAll(); // what is hidden must not count for the size
    auto* layout = new MainLayout(cards, kUsual - barsSize());
    adapters_.frame(form_.framInvite, *cards.invitation);
    adapters_.of(form_.framInvite).onDrawn = [this, layout] {
        layout->setInviting(form_.framInvite.Visible);
    };
    setCentralWidget(layout);

    for (const form::Label* name : {&form_.lblEngineA, &form_.lblEngineB}) {
        Adapter& adapter = adapters_.of(*name);
        adapter.onDrawn = [this, before = adapter.onDrawn] {
            before();
            nameEngines();
        };
    }
}

void MainWindow::addPositionMenus() {
    for (form::Label* position : {&form_.Label2, &form_.Label8, &form_.lblAzimut, &form_.lblElev}) {
        auto* digits = findChild<QWidget*>(shown(position->name()));
        auto* declare = new QAction("&New Value…", digits);
        connect(declare, &QAction::triggered, this, [position] { position->DblClick.fire(); });
        digits->addActions({findChild<QAction*>(shown(form_.mnuGoTo.name())), declare});
        digits->setContextMenuPolicy(Qt::ActionsContextMenu);
    }
}

QSize MainWindow::barsSize() {
    return {0, menuBar()->sizeHint().height() + statusBar()->sizeHint().height()};
}

void MainWindow::nameEngines() {
    memories_->nameEngines(shown(form_.lblEngineA.Caption), shown(form_.lblEngineB.Caption));
}

void MainWindow::orderFocus() {
    QWidget* before = nullptr;
    const auto then = [&](std::initializer_list<const form::Control*> controls) {
        for (const form::Control* control : controls) {
            auto* widget = findChild<QWidget*>(shown(control->name()));
            if (before) setTabOrder(before, widget);
            before = widget;
        }
    };
    then({&form_.cmdAlt,      &form_.cmdIndMan,   &form_.cmdInd,    &form_.cmdAv,        &form_.cmdAvMan,
          &form_.cmbJogA,     &form_.cmdBassa,    &form_.cmdAlta,   &form_.chkHalfStep,  &form_.cmdResetA,
          &form_.Label2,      &form_.lblAzimut,   &form_.lblBassaA, &form_.txtBassaVelA, &form_.lblMemAltaA,
          &form_.txtAltaVelA, &form_.lblMemSteps, &form_.txtSteps,  &form_.lblMMGiro,    &form_.txtMMGiro});
    then({&form_.cmdAltB,     &form_.cmdBIndMan,   &form_.cmdIndB,   &form_.cmdAvB,       &form_.cmdBAvMan,
          &form_.cmbJogB,     &form_.cmdBassaB,    &form_.cmdAltaB,  &form_.chkHalfStepB, &form_.cmdResetB,
          &form_.Label8,      &form_.lblElev,      &form_.lblBassaB, &form_.txtBassaVelB, &form_.lblMemAltaB,
          &form_.txtAltaVelB, &form_.lblMemStepsB, &form_.txtStepsB, &form_.lblMMGiroB,   &form_.txtMMGiroB});
    for (int n = 1; n <= form::Form1::kMemories; ++n) {
        then({&form_.Option[n], &form_.lblMem[n]});
    }
    then({&form_.cmdAutoMemConn, &form_.cmdGoOn, &form_.chkAutoMemOnOff, &form_.chkBandMode, &form_.chkExact,
          &form_.chkHRM, &form_.chkFastMemory, &form_.HScrMemSpeedCh});
    then({&form_.cmdConnect, &form_.chkOpenCom, &form_.chkRotOnOff, &form_.cmdPark, &form_.txtPointAz,
          &form_.txtPointEl, &form_.cmdPoint, &form_.cmdCalibrate, &form_.cmdUndoCalibrate, &form_.HScOffsetA,
          &form_.HScOffsetB, &form_.HScroll2, &form_.HScroll4, &form_.HScroll6, &form_.HScroll5,
          &form_.HScroll3});
    then({&form_.cmdOff, &form_.chkAutoCmdOff, &form_.hScrCmdOff, &form_.chkUsbOn, &form_.HScroll1});
    if (!form_.framInvite.Visible) findChild<QWidget*>(shown(form_.cmdAlt.name()))->setFocus();
}

void MainWindow::stopBoth() {
    form_.cmdAlt.Click.fire();
    form_.cmdAltB.Click.fire();
}

bool MainWindow::event(QEvent* event) {
    if (event->type() == QEvent::WindowBlocked) {
        // A box takes the input away: no release of a held button will arrive any more.
        // The box is a child too, with buttons that are not ours.
        for (QPushButton* button : findChildren<QPushButton*>()) {
            if (auto* ours = dynamic_cast<PushButton*>(button)) ours->lose();
        }
        loseKeyboard();
    }
    return QMainWindow::event(event);
}

void MainWindow::changeEvent(QEvent* event) {
    if (event->type() == QEvent::PaletteChange) adapters_.redrawAll();
    if (event->type() == QEvent::ActivationChange && !isActiveWindow()) loseKeyboard();
    QMainWindow::changeEvent(event);
}

void MainWindow::closeEvent(QCloseEvent* event) {
    event->ignore();
    if (onCloseRequested) {
        onCloseRequested();
    } else {
        form_.mnuUscita.Click.fire();
    }
}

void MainWindow::keyPressEvent(QKeyEvent* event) {
    // Esc from a text box, which sees it before the shortcut does.
    if (event->key() == Qt::Key_Escape) {
        stopBoth();
    } else if (jogs(*event)) {
        const bool shift = event->modifiers().testFlag(Qt::ShiftModifier);
        if (!event->isAutoRepeat()) form_.guard([&] { form_.onLetterDown(letterOf(*event), shift); });
    } else {
        QMainWindow::keyPressEvent(event);
    }
}

void MainWindow::keyReleaseEvent(QKeyEvent* event) {
    // Whatever else is held now: a letter that went down must come up.
    const char letter = letterOf(*event);
    if (letter != 0 && !event->isAutoRepeat() && form_.onLetterUp) {
        form_.guard([&] { form_.onLetterUp(letter); });
    }
    QMainWindow::keyReleaseEvent(event);
}

bool MainWindow::jogs(const QKeyEvent& event) const {
    const bool plain = (event.modifiers() & ~Qt::ShiftModifier) == Qt::NoModifier;
    return letterOf(event) != 0 && plain && form_.onLetterDown && !qobject_cast<QLineEdit*>(focusWidget());
}

void MainWindow::loseKeyboard() {
    if (form_.onKeyboardLost) form_.guard(form_.onKeyboardLost);
}

void MainWindow::showBeside(form::Form& form) {
    if (!table_) {
        auto& table = dynamic_cast<form::FrmHiResMem&>(form);
        table_ = std::make_unique<Dialog>(form, redraw_, this, false);
        layOut(*table_, table, form_, boxes_);
        // One tunes beside it: Esc means the engines here too.
        auto* stop = new QShortcut(QKeySequence(Qt::Key_Escape), table_.get());
        stop->setAutoRepeat(false);
        connect(stop, &QShortcut::activated, this, [this] { stopBoth(); });
        redraw_.drawAll();
    }
    table_->show();
    table_->raise();
    table_->activateWindow();
}

void MainWindow::showModal(form::Form& form) {
    Dialog dialog(form, redraw_, this);
    // The dialog covers the Stop buttons; Esc stops the engines here too.
    dialog.onEscape = [this] {
        if (!form_.cmdOff.Enabled) stopBoth();
        return false;
    };
    if (auto* position = dynamic_cast<form::FrmInsPosition*>(&form)) {
        layOut(dialog, *position);
        dialog.move(frameGeometry().topLeft() + newValuePlace(position->atEngineB));
    } else if (auto* settings = dynamic_cast<form::FrmGenSet*>(&form)) {
        layOut(dialog, *settings);
    } else if (auto* connections = dynamic_cast<form::FrmTunerConn*>(&form)) {
        layOut(dialog, *connections);
    } else if (auto* satellite = dynamic_cast<form::FrmSatConn*>(&form)) {
        layOut(dialog, *satellite);
    } else if (auto* server = dynamic_cast<form::FrmServer*>(&form)) {
        layOut(dialog, *server);
    } else if (auto* hardware = dynamic_cast<form::FrmHardware*>(&form)) {
        layOut(dialog, *hardware);
    } else if (auto* rotator = dynamic_cast<form::FrmRotator*>(&form)) {
        layOut(dialog, *rotator);
    } else if (auto* assistant = dynamic_cast<form::FrmAssistant*>(&form)) {
        layOut(dialog, *assistant);
        dialog.onEscape = [assistant] {
            bool ran = false;
            assistant->guard([&] { ran = assistant->onEscape(); });
            return ran;
        };
    } else if (auto* goTo = dynamic_cast<form::FrmGoTo*>(&form)) {
        layOut(dialog, *goTo);
    } else if (auto* about = dynamic_cast<form::FrmAbout*>(&form)) {
        layOut(dialog, *about);
    } else {
        throw runtime::ObjectError("There is no window for " + form.name());
    }
    redraw_.drawAll();
    dialog.exec();
}

} // namespace ui
