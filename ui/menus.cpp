#include "ui/menus.h"

#include "ui/card.h"

#include <QActionGroup>
#include <QMenuBar>
#include <QStackedLayout>
#include <QStatusBar>

namespace ui {

namespace {

QMenu* addMenu(QMainWindow& window, const char* title, const char* name) {
    QMenu* menu = window.menuBar()->addMenu(title);
    menu->setObjectName(name);
    menu->setToolTipsVisible(true);
    return menu;
}

} // namespace

void layOutMenus(QMainWindow& window, form::Form1& form, Adapters& adapters) {
    const auto entry = [&](QMenu* menu, form::Menu& control, const char* tip, const QKeySequence& key = {}) {
        QAction* action = menu->addAction(QString());
        action->setShortcut(key);
        adapters.menu(control, *action, tip);
        return action;
    };

    QMenu* file = addMenu(window, "&File", "mnuFile");
    entry(file, form.mnuLoadConfig,
          "Loads a stored configuration: its settings, positions and memories replace the present ones.",
          QKeySequence::Open);
    entry(file, form.mnuSaveConfig, "Stores all settings, positions and memories under a name.",
          QKeySequence::Save);
    entry(file, form.mnuFileMemHR,
          "Opens the frequency table: both positions for each frequency of the radio.", Qt::CTRL | Qt::Key_M);
    file->addSeparator();
    entry(file, form.mnuUscita, "Switches the outputs off, saves and ends the program.",
          Qt::CTRL | Qt::Key_Q);

    QMenu* edit = addMenu(window, "&Edit", "mnuEdit");
    entry(edit, form.mnuUndo,
          "Takes back the last change of a position, a memory, the function or the configuration.",
          Qt::CTRL | Qt::Key_Z);
    entry(edit, form.mnuRedo, "Makes the change again that was undone.", Qt::CTRL | Qt::SHIFT | Qt::Key_Z);

    QMenu* function = addMenu(window, "Fu&nction", "mnuFunction");
    auto* functions = new QActionGroup(&window);
    functions->setExclusionPolicy(QActionGroup::ExclusionPolicy::ExclusiveOptional);
    for (QAction* action :
         {entry(function, form.mnuCoilTuner,
                "The engines turn the elements of a coil tuner, in millimetres."),
          entry(function, form.mnuAmpli, "The engines turn the capacitors of a tuner or amplifier, in dots."),
          entry(function, form.mnuSat,
                "The engines turn an antenna in azimuth and elevation, in degrees.")}) {
        action->setCheckable(true);
        functions->addAction(action);
    }
    function->addSeparator();
    entry(function, form.mnuGoTo, "Moves one engine or both to a position that you type.",
          Qt::CTRL | Qt::Key_P);

    QMenu* settings = addMenu(window, "&Settings", "mnuSettings");
    entry(settings, form.mnuAssistant, "Leads through outputs, motors, speeds, positions and connections.");
    settings->addSeparator();
    entry(settings, form.mnuGenSet, "Keys, colours, sounds, what is saved and loaded.", Qt::CTRL | Qt::Key_G);
    entry(settings, form.mnuTunConn, "Which program reports the radio's frequency.", Qt::CTRL | Qt::Key_T);
    entry(settings, form.mnuSatConn, "Which tracking program sends, and the port of the tracking server.");
    entry(settings, form.mnuTvnServer, "Settings of the program's own data server, which is not ready yet.");
    entry(settings, form.mnuRotator, "The range of the rotator, its parking place, and when its coils rest.");
    settings->addSeparator();
    entry(settings, form.mnuHardware,
          "Where the outputs go, a test of the coils, and the addresses of the links.", Qt::CTRL | Qt::Key_H);

    QMenu* help = addMenu(window, "&Help", "mnuHelpMenu");
    entry(help, form.mnuHelp, "Opens the manual in the browser.", QKeySequence(Qt::Key_F1));
    entry(help, form.mnuMail, "Starts a mail in your mail program.");
    help->addSeparator();
    entry(help, form.mnuSplash, "Version and licence.");
}

namespace {

constexpr int kNoticeStretch = 6, kClockStretch = 3;

/// One place for two that are empty most of the time: a notice for as long as it lasts, else the rate.
QWidget* notices(form::Form1& form, Adapters& adapters) {
    CaptionLabel* rate = adapters.label(
        form.rateNotice, {"Measured rate", "The steps per second that Arduino or USB board can take."}, "");
    CaptionLabel* notice =
        adapters.label(form.notice, {"Notice", "What has happened, or why something has not."}, "");
    auto* place = new QWidget;
    auto* pile = new QStackedLayout(place);
    pile->addWidget(rate);
    pile->addWidget(notice);
    adapters.of(form.notice).onDrawn = [&form, pile, rate, notice] {
        pile->setCurrentWidget(form.notice.Caption.get().empty() ? rate : notice);
    };
    return place;
}

} // namespace

void layOutStatusBar(QMainWindow& window, form::Form1& form, Adapters& adapters) {
    struct PanelWords {
        const char* tip;
        const char* samples;
        int stretch;
    };
    static constexpr PanelWords kPanels[form::StatusBar::kPanels] = {
        {"The function that is on.", "Choose a function", 0},
        {"Messages.", "Message", 0},
        {"The program that reports the frequency.", "N1MM Logger", 0},
        {"The port of the tracking server.", "00000", 0},
        {"The configuration that was loaded or saved.", "MMMMMMMM", 0},
        {"Where the outputs go.", "/dev/parport0", 2},
    };
    QStatusBar* bar = window.statusBar();
    bar->setSizeGripEnabled(false);
    bar->setContentsMargins(kGrid, 0, kGrid, 0);
    std::vector<CaptionLabel*> panels;
    for (const PanelWords& words : kPanels) {
        auto* panel = new CaptionLabel;
        panel->setObjectName(QString("StatusBar1Panel%1").arg(panels.size() + 1));
        panel->setToolTip(words.tip);
        panel->setAccessibleDescription(words.tip);
        panel->reserve(words.samples);
        panel->setTone(CaptionLabel::Tone::Quiet);
        if (!panels.empty()) bar->addPermanentWidget(divider());
        panels.push_back(panel);
        bar->addPermanentWidget(panel, words.stretch);
        if (panels.size() == form::kPanelMessage)
            bar->addPermanentWidget(notices(form, adapters), kNoticeStretch);
    }
    CaptionLabel* clock = adapters.label(
        form.lblClock, {"Step clock", "Whether the step clock has priority over other programs."},
        "real-time 20, memory not locked");
    clock->setTone(CaptionLabel::Tone::Quiet);
    bar->addPermanentWidget(clock, kClockStretch);
    adapters.statusBar(form.StatusBar1, *bar, panels);
}

} // namespace ui
