#pragma once

#include "form/controls.h"
#include "form/link_label.h"
#include "form/timer.h"
#include "runtime/checked.h"

/// The state of the dialogs. Each object exists only while its dialog is open.
namespace form {

/// "New Value": declares the current position of an engine.
struct FrmInsPosition : Form {
    FrmInsPosition() : Form("frmInsPosition") { Caption = "New Value"; }

    Label Label1{*this, "Label1"};
    TextBox txtInt{*this, "txtInt", "000"};
    Label Label4{*this, "Label4", "."};
    TextBox txtDec{*this, "txtDec", "00"};
    Label Label2{*this, "Label2", "ENTER to Confirm"};
    Label Label3{*this, "Label3", "ESC to Abort"};
    bool atEngineB = false; // stands over engine B's panel, not A's
};

struct FrmGenSet : Form {
    FrmGenSet() : Form("frmGenSet") { Caption = "General Settings"; }

    enum ColourChoice { kTitle, kDisplay, kBackground };

    TextBox txtCCW1{*this, "txtCCW1"}, txtCW1{*this, "txtCW1"};
    TextBox txtCCW2{*this, "txtCCW2"}, txtCW2{*this, "txtCW2"};
    ComboBox cmbColor{*this, "cmbColor", {"Color", "Display", "BackGround Display"}};
    CheckBox chkSalvaM{*this, "chkSalvaM", "Save Stepper Positions on Program E&xit"};
    CheckBox chkCaricaInAvvio{*this, "chkCaricaInAvvio", "&Load Stepper Positions on Program Start"};
    CheckBox chkAlarmOnOff{*this, "chkAlarmOnOff", "&Audio Alarm Enabling"};
    CheckBox chkWaitTransmitting{*this, "chkWaitTransmitting", "No &Movement while transmitting"};
    TextBox txtBacklash1{*this, "txtBacklash1"}, txtBacklash2{*this, "txtBacklash2"}; // steps
    Label lblBacklash1{*this, "lblBacklash1"}, lblBacklash2{*this, "lblBacklash2"};   // in user units
    Button cmdSalvaGenSet{*this, "cmdSalvaGenSet", "Save"};
    Button cmdExitGen{*this, "cmdExitGen", "Cancel"};
};

struct FrmTunerConn : Form {
    FrmTunerConn(platform::Timers& timers, platform::DdeLinks& links)
        : Form("frmTunerConn"), lblDDE(*this, "lblDDE", links),
          tmrLog32(*this, "tmrLog32", timers, kPollMilliseconds) {
        Caption = "Tuner Connections";
        lblListening.Visible = false;
    }

    static constexpr int kPollMilliseconds = 500;

    OptionButton optHamDeluxe{*this, "optHamDeluxe", "&Ham Radio Deluxe"};
    OptionButton optLog32{*this, "optLog32", "&Logger32"};
    OptionButton optN1MM{*this, "optN1MM", "&N1MM Logger"};
    Button cmdOn{*this, "cmdOn", "On"}, cmdOff{*this, "cmdOff", "Off"};
    LinkLabel lblDDE;
    Label lblConn{*this, "lblConn", "Disc."};
    Button cmdOnLog32{*this, "cmdOnLog32", "On"}, cmdOffLog32{*this, "cmdOffLog32", "Off"};
    Label lblLog32Data{*this, "lblLog32Data"};
    Label lblConnLog32{*this, "lblConnLog32", "Disc."};
    Timer tmrLog32;
    TextBox txtN1mmPortNumb{*this, "txtN1mmPortNumb"};
    Button Command1{*this, "Command1", "&Change"};
    OptionButton optHamlib{*this, "optHamlib", "Hamli&b"};
    TextBox txtRigctld{*this, "txtRigctld"}; // HOST[:PORT]
    Button cmdOnHamlib{*this, "cmdOnHamlib", "On"}, cmdOffHamlib{*this, "cmdOffHamlib", "Off"};
    Label lblConnHamlib{*this, "lblConnHamlib", "Disc."};
    Label lblHamlibData{*this, "lblHamlibData"};
    Label lblPortError{*this, "lblPortError"}; // what is wrong with the port or address typed in
    Label lblListening{*this, "lblListening", "Listening"};
    Label lblN1mmData{*this, "lblN1mmData"};
    Button cmdSaveTConf{*this, "cmdSaveTConf", "Save"};
    Button cmdExitTConf{*this, "cmdExitTConf", "Cancel"};
};

struct FrmSatConn : Form {
    FrmSatConn() : Form("frmSatConn") { Caption = "Configure Connections for Sat Operations"; }

    OptionButton optOrbitron{*this, "optOrbitron", "&Orbitron"}, optSatPc32{*this, "optSatPc32", "Sat&PC32"};
    Label Label3{*this, "Label3", "Get datas from Orbitron"},
        Label4{*this, "Label4", "Get datas from SatPC32"};
    Label Label1{*this, "Label1", "TVNserver Server Port Number:"};
    TextBox txtServerPort{*this, "txtServerPort"};
    Label Label2{*this, "Label2", "(Default is 6969)"};
    Label lblPortError{*this, "lblPortError"}; // what is wrong with the port typed in
    Button cmdSaveSatCfg{*this, "cmdSaveSatCfg", "Save"};
    Button cmdExitSatConn{*this, "cmdExitSatConn", "Cancel"};
};

/// Settings of the program's own data server. The server does not exist yet, so the controls do nothing.
struct FrmServer : Form {
    FrmServer() : Form("frmServer") { Caption = "TVNserver Configuration"; }

    CheckBox chkAttivaServer{*this, "chkAttivaServer", "Server ON OFF"};
    Label Label1{*this, "Label1", "Server Port:"};
    TextBox txtPort{*this, "txtPort", "6970"};
    Label lblServerStatus{*this, "lblServerStatus", "TVNServer WORK IN PROGRESS"};
};

/// "Hardware and links": which devices the outputs go to, and where the links are.
struct FrmHardware : Form {
    FrmHardware(platform::Timers& timers, std::vector<std::string> ports, std::vector<std::string> boards)
        : Form("frmHardware"), cmbPort(*this, "cmbPort", std::move(ports)),
          cmbUsb(*this, "cmbUsb", std::move(boards)), tmrCoilTest(*this, "tmrCoilTest", timers),
          tmrBridge(*this, "tmrBridge", timers, kBridgeMilliseconds) {
        Caption = "Hardware and Links";
    }

    static constexpr int kBridgeMilliseconds = 500; // between two updates of the bridge's state
    static constexpr const char* kTestA = "Test &1";
    static constexpr const char* kTestB = "Test &2";

    ComboBox cmbPort;
    TextBox txtPortAddress{*this, "txtPortAddress"}; // an I/O address, or the pins or lines of the outputs
    ComboBox cmbCoilsOn{*this, "cmbCoilsOn", {"Automatic", "Low: a 0", "High: a 1"}};
    Label lblOutputs{*this, "lblOutputs"}; // what the user must know about the chosen outputs
    ComboBox cmbUsb;
    Button cmdTestA{*this, "cmdTestA", kTestA}, cmdTestB{*this, "cmdTestB", kTestB};
    Label lblTest{*this, "lblTest"}; // the energised coil, or what the test waits for
    Timer tmrCoilTest;
    TextBox txtN1mmListen{*this, "txtN1mmListen"};
    TextBox txtTrackingServer{*this, "txtTrackingServer"};
    TextBox txtBridge{*this, "txtBridge"};
    TextBox txtRotctld{*this, "txtRotctld"};
    TextBox txtRotctldAllow{*this, "txtRotctldAllow"};
    Label lblBridge{*this, "lblBridge"}; // the state of the link to the bridge
    Timer tmrBridge;
    Label lblFixed{*this, "lblFixed", "What is grey was given on the command line."};
    Button cmdSaveHardware{*this, "cmdSaveHardware", "Save"};
    Button cmdExitHardware{*this, "cmdExitHardware", "Cancel"};
};

/// "Rotator": the ranges of the rotator, and when it parks.
struct FrmRotator : Form {
    FrmRotator() : Form("frmRotator") { Caption = "Rotator"; }

    TextBox txtAzimuth{*this, "txtAzimuth"}, txtElevation{*this, "txtElevation"}; // "0..360"
    TextBox txtFollowFrom{*this, "txtFollowFrom"};
    TextBox txtSilence{*this, "txtSilence"};
    TextBox txtPark{*this, "txtPark"}; // "180,0"
    CheckBox chkParkAfterPass{*this, "chkParkAfterPass", "Park after a &pass"};
    CheckBox chkHoldElevation{*this, "chkHoldElevation", "&Hold elevation"};
    Label lblRotatorError{*this, "lblRotatorError"};
    Button cmdSaveRotator{*this, "cmdSaveRotator", "Save"};
    Button cmdExitRotator{*this, "cmdExitRotator", "Cancel"};
};

struct FrmAbout : Form {
    FrmAbout() : Form("frmAbout") { Caption = "Informations about Twinstep"; }

    Label lblTitle{*this, "lblTitle", "Twinstep"};
    Label lblVersion{*this, "lblVersion"};
    Label lblDescription{*this, "lblDescription",
                         "Two stepper motors for antenna tuners and rotors, from one calm window."};
    Label lblLicence{*this, "lblLicence",
                     "Free software under the GNU General Public License, version 3 or later."};
    Button cmdOK{*this, "cmdOK", "OK"};
};

} // namespace form
