#include "radio/tuner_connections.h"

#include "config/hardware_settings.h"
#include "config/records.h"
#include "form/port_entry.h"
#include "radio/ham_radio_deluxe.h"
#include "radio/hamlib_source.h"
#include "radio/n1mm.h"

namespace radio {

TunerConnections::TunerConnections(form::Form1& main, form::FrmTunerConn& dialog, config::RecordFile& file,
                                   Logger32& logger32, platform::UdpSockets& sockets,
                                   platform::Hardware& hardware, ConnectRig connectRig)
    : main_(main), dialog_(dialog), file_(file), logger32_(logger32), sockets_(sockets), hardware_(hardware),
      connectRig_(std::move(connectRig)), programs_{
                                              {form::kHamRadioDeluxe, dialog.optHamDeluxe, dialog.lblDDE},
                                              {form::kLogger32, dialog.optLog32, dialog.lblLog32Data},
                                              {form::kN1mmLogger, dialog.optN1MM, dialog.lblN1mmData},
                                              {form::kHamlib, dialog.optHamlib, dialog.lblHamlibData}} {
    for (const Program& program : programs_) {
        program.option.Click.attach([this, &program] {
            if (program.number == form::kN1mmLogger) replaceZeroPort();
            choose(program);
        });
    }
    attachLinkTest();
    dialog_.cmdOnLog32.Click.attach([this] { cmdOnLog32_Click(); });
    dialog_.cmdOffLog32.Click.attach([this] { cmdOffLog32_Click(); });
    dialog_.tmrLog32.Tick.attach([this] { tmrLog32_Timer(); });
    attachPortEntry();
    attachHamlib();
    dialog_.cmdSaveTConf.Click.attach([this] { cmdSaveTConf_Click(); });
    dialog_.cmdExitTConf.Click.attach([this] { dialog_.unload(); });
}

TunerConnections::~TunerConnections() {
    if (dialog_.tmrLog32.Enabled) cmdOffLog32_Click();
}

void TunerConnections::attachLinkTest() {
    dialog_.cmdOn.Click.attach([this] { linkToHamRadioDeluxe(dialog_.lblDDE); });
    dialog_.cmdOff.Click.attach([this] { dialog_.lblDDE.LinkMode = form::LinkLabel::kNone; });
    dialog_.lblDDE.LinkOpen.attach([this] {
        dialog_.lblConn.BackColor = form::kBrightGreen;
        dialog_.lblConn.Caption = "Conn";
    });
    dialog_.lblDDE.LinkClose.attach([this] {
        dialog_.lblConn.BackColor = form::kRed;
        dialog_.lblConn.Caption = "Disc.";
        dialog_.lblDDE.Caption = "";
    });
}

void TunerConnections::attachPortEntry() {
    dialog_.txtN1mmPortNumb.ToolTip = "Write new Port then press Change (def. value 12060)";
    const auto markAsEdited = [this] { showPort(dialog_.txtN1mmPortNumb.Text, true); };
    dialog_.txtN1mmPortNumb.MouseDown.attach(markAsEdited);
    dialog_.txtN1mmPortNumb.KeyPress.attach([markAsEdited](int&) { markAsEdited(); });
    dialog_.Command1.Click.attach([this] { Command1_Click(); });
}

void TunerConnections::attachHamlib() {
    dialog_.cmdOnHamlib.Click.attach([this] { cmdOnHamlib_Click(); });
    dialog_.cmdOffHamlib.Click.attach([this] { endHamlibTest(); });
}

void TunerConnections::Form_Load() {
    const config::RecordImage records = file_.read();
    program_ = records.integer(config::record::kFrequencyProgram);
    port_ = records.integer(config::record::kN1mmPort);
    showPort(std::to_string(port_.value()), false);
    dialog_.txtRigctld.Text = hardware_.settings().rigctld;
    dialog_.txtRigctld.Enabled = false;
    dialog_.cmdOnHamlib.Enabled = false;
    for (const Program& program : programs_) {
        if (program_ == program.number) choose(program);
    }
}

void TunerConnections::choose(const Program& chosen) {
    for (const Program& program : programs_)
        program.option.Value.load(&program == &chosen);
    program_ = chosen.number;
    const bool n1mm = program_ == form::kN1mmLogger;
    dialog_.cmdOn.Enabled = program_ == form::kHamRadioDeluxe;
    // There can be only one hook, so a running test must be ended first.
    dialog_.cmdOnLog32.Enabled = program_ == form::kLogger32 && !dialog_.tmrLog32.Enabled;
    dialog_.Command1.Enabled = n1mm;
    dialog_.txtN1mmPortNumb.Enabled = n1mm;
    if (rigctld_) endHamlibTest();
    dialog_.cmdOnHamlib.Enabled = program_ == form::kHamlib;
    dialog_.txtRigctld.Enabled =
        program_ == form::kHamlib && !hardware_.isFixed(&platform::HardwareSettings::rigctld);
    // What is greyed is what will be kept.
    if (!dialog_.txtRigctld.Enabled) dialog_.txtRigctld.Text = hardware_.settings().rigctld;
    chosen.received.bringToFront();
    if (n1mm) {
        dialog_.lblN1mmData.Caption = "";
        listen();
    } else {
        closeSocket();
        // The disabled field shows the port that Save keeps.
        showPort(std::to_string(port_.value()), false);
    }
}

void TunerConnections::replaceZeroPort() {
    if (!(dialog_.txtN1mmPortNumb.Text == "0")) return;
    port_ = kN1mmDefaultPort;
    showPort(std::to_string(kN1mmDefaultPort), false);
}

void TunerConnections::closeSocket() {
    wskN1mm_.reset();
    dialog_.lblListening.Visible = false;
    dialog_.lblPortError.Caption = "";
}

void TunerConnections::listen() {
    closeSocket();
    try {
        wskN1mm_ = sockets_.bind(n1mmPort(port_), [this](const std::string& datagram) {
            dialog_.guard([&] { dialog_.lblN1mmData.Caption = n1mmKilohertz(datagram) + " KHz"; });
        });
        dialog_.lblListening.Visible = true;
    } catch (const runtime::ObjectError& error) {
        dialog_.lblPortError.Caption = error.what();
    }
}

void TunerConnections::cmdOnLog32_Click() {
    logger32_.connect(dialog_.lblLog32Data);
    dialog_.tmrLog32.Enabled = true;
    dialog_.cmdOnLog32.Enabled = false;
}

void TunerConnections::tmrLog32_Timer() {
    switch (logger32_.poll(dialog_)) {
    case Logger32::Sighting::Missing:
        showLogger32(false);
        break;
    case Logger32::Sighting::New:
        showLogger32(true);
        break;
    case Logger32::Sighting::Known:
        break;
    }
}

void TunerConnections::cmdOffLog32_Click() {
    logger32_.disconnect(dialog_);
    dialog_.tmrLog32.Enabled = false;
    showLogger32(false);
    dialog_.cmdOnLog32.Enabled = program_ == form::kLogger32;
}

void TunerConnections::showLogger32(bool connected) {
    dialog_.lblConnLog32.Caption = connected ? "Conn." : "Disc.";
    dialog_.lblConnLog32.BackColor = connected ? form::kBrightGreen : form::kRed;
}

void TunerConnections::showPort(const std::string& text, bool editing) {
    dialog_.txtN1mmPortNumb.Text = text;
    dialog_.txtN1mmPortNumb.BackColor = editing ? form::kYellow : form::kWindowBackground;
    dialog_.txtN1mmPortNumb.FontItalic = editing;
}

std::optional<form::Int16> TunerConnections::typedPort() {
    // 0 can be stored, but the program cannot listen at port 0.
    const int lowest = program_ == form::kN1mmLogger ? 1 : 0;
    const auto port = form::portFromText(dialog_.txtN1mmPortNumb.Text, lowest);
    if (!port) dialog_.lblPortError.Caption = form::portRange(lowest);
    return port;
}

void TunerConnections::Command1_Click() {
    if (dialog_.txtN1mmPortNumb.BackColor.get() != form::kYellow) return;
    const auto port = typedPort();
    if (!port) return;
    port_ = *port;
    listen();
    showPort(std::to_string(port_.value()), false);
}

void TunerConnections::cmdOnHamlib_Click() {
    if (!rigctldIsGood()) return;
    showRig({});
    dialog_.cmdOnHamlib.Enabled = false;
    rigctld_ = connectRig_(dialog_.txtRigctld.Text,
                           [this](const RigReading& reading) { dialog_.guard([&] { showRig(reading); }); });
}

void TunerConnections::endHamlibTest() {
    rigctld_.reset();
    showRig({});
    dialog_.cmdOnHamlib.Enabled = program_ == form::kHamlib;
}

void TunerConnections::showRig(const RigReading& reading) {
    const bool connected = reading.hertz.has_value();
    dialog_.lblConnHamlib.Caption = connected ? "Conn." : "Disc.";
    dialog_.lblConnHamlib.BackColor = connected ? form::kBrightGreen : form::kRed;
    const std::string& fault = connected ? reading.unknown : reading.trouble;
    dialog_.lblConnHamlib.ToolTip = fault;
    dialog_.lblPortError.Caption = fault;
    dialog_.lblHamlibData.Caption = connected ? kilohertzText(reading) + " KHz" : "";
}

bool TunerConnections::rigctldIsGood() {
    const bool good = config::parseEndpoint(dialog_.txtRigctld.Text.get(), Rigctld::kDefaultPort).has_value();
    if (!good) dialog_.lblPortError.Caption = "Insert HOST or HOST:PORT.";
    return good;
}

void TunerConnections::keepRigctld() {
    const platform::HardwareSettings before = hardware_.settings();
    platform::HardwareSettings settings = before;
    settings.rigctld = dialog_.txtRigctld.Text;
    hardware_.use(settings);
    try {
        hardware_.keep();
    } catch (const runtime::FileError&) {
        hardware_.use(before);
        throw;
    }
}

void TunerConnections::cmdSaveTConf_Click() {
    // If the user has not changed the port, the stored value is written back.
    const bool edited = dialog_.txtN1mmPortNumb.Text.get() != std::to_string(port_.value());
    if (edited && dialog_.txtN1mmPortNumb.Enabled) {
        const auto port = typedPort();
        if (!port) return;
        port_ = *port;
    }
    if (dialog_.txtRigctld.Text.get() != hardware_.settings().rigctld) {
        if (!rigctldIsGood()) return;
        keepRigctld();
    }
    file_.write({config::integerRecord(config::record::kFrequencyProgram, program_),
                 config::integerRecord(config::record::kN1mmPort, port_)});
    main_.intConnProgrTuner = program_;
    main_.intPortaN1MM = port_;
    dialog_.unload();
}

} // namespace radio
