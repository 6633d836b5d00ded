#pragma once

#include "form/controls.h"
#include "form/notice.h"
#include "form/timer.h"
#include "runtime/checked.h"

#include <array>
#include <string>
#include <vector>

namespace form {

/// Values of intFunzione.
enum Function { kNoFunction = 0, kCoilTuner = 1, kTuneAndLoad = 2, kSatelliteRotor = 3 };

/// Panels of StatusBar1.
enum Panel {
    kPanelFunction = 1,
    kPanelMessage = 2,
    kPanelSource = 3,
    kPanelTracking = 4,
    kPanelConfiguration = 5,
    kPanelOutputs = 6
};

/// The frame around the subsystems: function, menus, status bar, automatic outputs-off, configuration.
struct ShellPanel {
    ShellPanel(Form& form, platform::Timers& timers)
        : form_(form), tmrAutoOff(form, "tmrAutoOff", timers), notice(form, "notice", timers) {
        framSat.Visible = false;
        framInvite.Visible = false;
        lblClock.Visible = false;
        mnuUndo.Enabled = mnuRedo.Enabled = false;
    }

  private:
    Form& form_;

  public:
    runtime::Int16 intFunzione; // a Function

    // Automatic outputs-off.
    bool bolAutoCmdOff = false;
    runtime::Int16 intAutoCmdOffSec; // seconds
    CheckBox chkAutoCmdOff{form_, "chkAutoCmdOff", "Enable &Auto Out Off"};
    ScrollBar hScrCmdOff{form_, "hScrCmdOff", {1, 32, 1, 5}}; // 33 s and more overflow the interval
    Label lblAutoCmdOff{form_, "lblAutoCmdOff", "0"};
    Timer tmrAutoOff;

    // Configuration.
    std::string varConfigName;
    bool bolCaricaInAvvio = false; // record 51 until the start has used it: keep the loaded positions
    std::array<runtime::Int16, 3> spareSettings{}; // records 36 to 38, which nothing writes

    // Settings of the general settings dialog: the jog keys and the alarms.
    std::string strCW1, strCCW1, strCW2, strCCW2;
    bool bolAllarmi = false;
    bool bolAllarmePOF = false; // alarm at power-off; no setting turns it on

    Frame framTuner{form_, "framTuner"}, framSat{form_, "framSat"};
    Frame framInvite{form_, "framInvite"}; // in place of an empty window: what to begin with
    StatusBar StatusBar1{form_, "StatusBar1"};
    Notice notice;                     // why something did not start; panel 2 would be cleared too soon
    Label lblClock{form_, "lblClock"}; // how the step clock is scheduled, if the user asked for real time

    Menu mnuLoadConfig{form_, "mnuLoadConfig", "&Load Config…"};
    Menu mnuSaveConfig{form_, "mnuSaveConfig", "&Save Config…"};
    Menu mnuUscita{form_, "mnuUscita", "E&xit"};
    Menu mnuUndo{form_, "mnuUndo", "&Undo"}, mnuRedo{form_, "mnuRedo", "&Redo"};
    Menu mnuCoilTuner{form_, "mnuCoilTuner", "&Coil Tuner"};
    Menu mnuAmpli{form_, "mnuAmpli", "&Tune && Load"};
    Menu mnuSat{form_, "mnuSat", "&Satellite Rotor"};
    Menu mnuGoTo{form_, "mnuGoTo", "&Go to…"};
    Menu mnuAssistant{form_, "mnuAssistant", "Set-up &Assistant…"};
    Menu mnuGenSet{form_, "mnuGenSet", "&General Settings…"};
    Menu mnuTunConn{form_, "mnuTunConn", "&Tuner Connections…"};
    Menu mnuSatConn{form_, "mnuSatConn", "&Sat Connections…"};
    Menu mnuTvnServer{form_, "mnuTvnServer", "T&VNserver…"};
    Menu mnuRotator{form_, "mnuRotator", "&Rotator…"};
    Menu mnuHardware{form_, "mnuHardware", "&Hardware and links…"};
    Menu mnuHelp{form_, "mnuHelp", "&Help"};
    Menu mnuMail{form_, "mnuMail", "Send a &Mail…"};
    Menu mnuSplash{form_, "mnuSplash", "&About Twinstep…"};
};

} // namespace form
