#include "app/controller.h"

#include "app/activity.h"
#include "app/assistant.h"
#include "app/auto_outputs_off.h"
#include "app/error_boundary.h"
#include "app/functions.h"
#include "app/help_menu.h"
#include "app/kept_positions.h"
#include "app/reasons.h"
#include "app/shutdown.h"
#include "app/startup.h"
#include "app/storage_notice.h"
#include "app/undo.h"
#include "app/version.h"
#include "config/general_settings.h"
#include "config/hardware_and_links.h"
#include "config/hardware_settings.h"
#include "config/named_configurations.h"
#include "config/tuner_settings.h"
#include "engine/approach.h"
#include "engine/jog_keys.h"
#include "engine/motion.h"
#include "engine/movement.h"
#include "engine/output_ports.h"
#include "engine/parameters.h"
#include "engine/position.h"
#include "engine/ramp_drive.h"
#include "engine/stepper.h"
#include "memory/automatic_recall.h"
#include "memory/fit_line.h"
#include "memory/go_to.h"
#include "memory/memory_slots.h"
#include "memory/table_recall.h"
#include "memory/table_window.h"
#include "radio/frequency_note.h"
#include "radio/frequency_sources.h"
#include "radio/tuner_connections.h"
#include "rotor/rotator_dialog.h"
#include "rotor/rotctld_link.h"
#include "rotor/rotor.h"
#include "rotor/satellite_connections.h"
#include "rotor/sources.h"
#include "rotor/thresholds.h"
#include "rotor/tracking_links.h"
#include "rotor/tracking_server.h"

namespace app {

/// From the ground up; what must be told upwards is wired in the constructor.
struct Controller::Subsystems {
    Subsystems(const Ports& outside, const std::filesystem::path& directory);

    void mnuGenSet_Click();
    void mnuTunConn_Click();
    void mnuSatConn_Click();
    void mnuRotator_Click();
    void mnuTvnServer_Click();
    void mnuHardware_Click();
    void mnuAssistant_Click();
    void hardwareChanged();
    void askForLow();
    /// `place` as in platform::HardwareSettings.
    std::unique_ptr<radio::Rigctld> connectRig(const std::string& place,
                                               std::function<void(const radio::RigReading&)> told);
    void loadSettings();
    void wireWindow();
    void wireEngines();
    void wireTuner();
    void wireRotor();
    void wireConfigurations();
    /// An engine moves to a place that is not a memory's.
    void leaveMemory();
    /// Writes the tuner's settings and uses them. Throws runtime::FileError.
    void keepTuner(const form::TunerSettings& settings);

    form::TunerSettings keptTuner; // as the file has it
    Ports ports;
    form::Form1 form{ports.timers, ports.links};
    form::Boxes boxes{ports.dialogs};
    config::RecordFile file;

    engine::OutputPorts outputs{form, boxes, ports.printer, ports.usb};
    ErrorBoundary errors{form, boxes, outputs};
    engine::Motion motion{form, boxes};
    engine::Approach approach{form, motion};
    engine::Movement movement{form, motion, approach};
    engine::Stepper stepper{form, boxes, outputs, motion};
    engine::Parameters parameters{form, boxes, file, motion};
    engine::PositionEntry positionEntry{form, boxes};

    memory::MemorySlots slots{form, boxes, file, ports.sound, motion, approach};
    memory::TableRecall tableRecall{form, boxes, approach};
    memory::AutomaticRecall recall{form, boxes, slots, tableRecall, file, ports.sound};
    memory::TableWindow table{form, boxes, file, ports.storage};
    memory::GoTo goTo{form, boxes, motion, approach};
    memory::FitLine fit{form, boxes, slots, tableRecall, recall, approach};
    engine::JogKeys keys{form, motion};
    radio::Logger32 logger32{ports.station};
    radio::FrequencySources sources{
        form, logger32, ports.udp,
        [this](auto told) { return connectRig(ports.hardware.get().settings().rigctld, std::move(told)); }};
    rotor::Thresholds thresholds{form, file};
    rotor::Sources trackingSources{form};
    rotor::Rotor rotor{form, motion, outputs, trackingSources};
    rotor::TrackingServer trackingServer{form, ports.tcp, trackingSources,
                                         ports.hardware.get().settings().trackingServer};
    rotor::TrackingLinks trackingLinks{form, boxes, trackingSources};
    rotor::rotctld::Link rotctld{form,         trackingSources,      rotor, ports.tcpServers,
                                 ports.timers, std::string(kVersion)};
    config::NamedConfigurations configurations{form, boxes, file};

    Functions functions{form, slots, motion};
    AutoOutputsOff outputsOff{form, file, slots};
    HelpMenu help{form, boxes, ports.shell};
    Startup startup{form, boxes, file, outputs, motion, functions, slots, thresholds};
    Shutdown shutdown{form, boxes, file, outputs, sources};
    StorageNotice storageNotice{form, file, ports.timers};
    KeptPositions positions{form, boxes, file, functions, ports.positions};
    Activity activity{form, ports.timers};
    Undo undo{form, motion, positionEntry, slots, functions, configurations};
};

Controller::Subsystems::Subsystems(const Ports& outside, const std::filesystem::path& directory)
    : ports(outside), file(outside.storage, directory / "save.cfg") {
    form.StatusBar1.Panels(form::kPanelOutputs) = ports.hardware.get().outputsName();
    wireWindow();
    wireEngines();
    wireTuner();
    wireRotor();
    wireConfigurations();
}

void Controller::Subsystems::wireWindow() {
    boxes.onOpening = [this] {
        keys.releaseAll();
        motion.releaseJogs();
        positions.keep();
    };
    form.onEventEnd = [this] {
        positions.keep();
        undo.look();
        activity.look();
    };
    activity.show = [this] {
        movement.show();
        fit.show();
        table.nameEngines();
        radio::showFrequencyNote(form, sources.chosen());
        showReasons(form, ports.hardware.get().settings().usb == config::kNone);
    };
    shutdown.onSaved = [this] { positions.end(); };
    form.mnuGenSet.Click.attach([this] { mnuGenSet_Click(); });
    form.mnuTunConn.Click.attach([this] { mnuTunConn_Click(); });
    form.mnuSatConn.Click.attach([this] { mnuSatConn_Click(); });
    form.mnuRotator.Click.attach([this] { mnuRotator_Click(); });
    form.mnuTvnServer.Click.attach([this] { mnuTvnServer_Click(); });
    form.mnuHardware.Click.attach([this] { mnuHardware_Click(); });
    form.mnuAssistant.Click.attach([this] { mnuAssistant_Click(); });
}

void Controller::Subsystems::wireEngines() {
    errors.onStopped = [this] {
        motion.stopBoth();
        rotor.stopFollowing();
    };
    motion.onUserStop = [this] { rotor.stopFollowing(); };
    motion.notReady = [this] { return outputs.notReady(); };
    stepper.lookAtPort = [this] {
        // A port that has failed changes its name.
        const auto show = [this](platform::Hardware& hardware) {
            form.StatusBar1.Panels(form::kPanelOutputs) = hardware.outputsName();
        };
        try {
            ports.hardware.get().lookAtPort();
        } catch (...) {
            show(ports.hardware);
            throw;
        }
        show(ports.hardware);
    };
    stepper.isBlocked = [this](const engine::Side& side, bool up) { return rotor.isBlocked(side, up); };
    motion.subResetPressedMem = [this] { slots.subResetPressedMem(); };
}

void Controller::Subsystems::wireRotor() {
    shutdown.leaveTracking = [this] {
        rotctld.leave();
        rotor.leave();
        trackingLinks.close();
        trackingServer.leave();
    };
    trackingLinks.onSatPc32 = [this] {
        if (form.intFunzione == form::kSatelliteRotor) trackingServer.use();
    };
    functions.onChange = [this](int function) {
        fit.forget();
        if (function == form::kSatelliteRotor) {
            trackingServer.use();
            rotor.enter();
            rotctld.use(ports.hardware.get().settings());
        } else {
            shutdown.leaveTracking();
        }
    };
}

void Controller::Subsystems::wireConfigurations() {
    configurations.presentTable = [this] { return table.present(); };
    configurations.loadTable = [this](const auto& name) { return table.replacement(name); };
    configurations.beforeLoad = [this] {
        sources.disconnect();
        rotor.stopFollowing();
        motion.stopBoth();
    };
    configurations.load = [this] {
        startup.Form_Load();
        table.loaded();
        tableRecall.forget();
        positions.start();
    };
    undo.runningState = [this] { return shutdown.state().records; };
}

void Controller::Subsystems::wireTuner() {
    recall.armOutputsOff = [this] { outputsOff.arm(); };
    recall.chosenSource = [this] { return sources.chosen(); };
    recall.subSelTunerProgr = [this] { sources.subSelTunerProgr(); };
    startup.subSelTunerProgr = [this] { sources.subSelTunerProgr(); };
    const auto keep = [this] {
        try {
            keepTuner(form.tuner);
        } catch (const runtime::FileError& error) {
            form.notice.tell(error.what());
        }
    };
    recall.keepSettings = keep;
    table.keepSettings = keep;
    tableRecall.subResetPressedMem = [this] { slots.subResetPressedMem(); };
    table.notify = [this](const std::string& what) { form.notice.tell(what); };
    table.faultOfPlace = [this] { return approach.faultOfPlace(); };
    startup.tableFile = [this] { return table.file(); };
    form.onAddPosition = [this] { table.cmdTableAdd_Click(); };
    form.onLetterDown = [this](char letter, bool shift) { keys.keyDown(letter, shift); };
    form.onLetterUp = [this](char letter) { keys.keyUp(letter); };
    form.onKeyboardLost = [this] { keys.releaseAll(); };
    keys.onSemiAuto = [this] { recall.semiAuto(); };
    goTo.onMove = [this] { leaveMemory(); };
}

void Controller::Subsystems::leaveMemory() {
    if (form.chkAutoMemOnOff.ticked()) recall.semiAuto();
    if (!form.chkFastMemory.ticked()) slots.subResetPressedMem();
}

void Controller::Subsystems::keepTuner(const form::TunerSettings& settings) {
    config::writeTunerSettings(ports.settings, keptTuner, settings);
    keptTuner = form.tuner = settings;
    approach.setBacklash(settings.backlash1, settings.backlash2);
}

void Controller::Subsystems::mnuGenSet_Click() {
    form::FrmGenSet dialog;
    dialog.onError = form.onError;
    config::GeneralSettings settings(form, dialog, boxes, file);
    settings.keepTuner = [this](const form::TunerSettings& tuner) { keepTuner(tuner); };
    settings.Form_Load();
    boxes.showModal(dialog);
}

void Controller::Subsystems::mnuTunConn_Click() {
    sources.disconnect();
    form::FrmTunerConn dialog(ports.timers, ports.links);
    dialog.onError = form.onError;
    radio::TunerConnections connections(
        form, dialog, file, logger32, ports.udp, ports.hardware,
        [this](const std::string& place, auto told) { return connectRig(place, std::move(told)); });
    connections.Form_Load();
    boxes.showModal(dialog);
}

std::unique_ptr<radio::Rigctld>
Controller::Subsystems::connectRig(const std::string& place,
                                   std::function<void(const radio::RigReading&)> told) {
    const auto [host, port] = config::parseEndpoint(place, radio::Rigctld::kDefaultPort).value();
    return std::make_unique<radio::Rigctld>(ports.tcp, ports.timers, host, port, std::move(told));
}

void Controller::Subsystems::mnuSatConn_Click() {
    form::FrmSatConn dialog;
    dialog.onError = form.onError;
    rotor::SatelliteConnections connections(form, dialog, file);
    connections.onSaved = [this] {
        if (form.intFunzione == form::kSatelliteRotor) trackingServer.use();
    };
    connections.Form_Load();
    boxes.showModal(dialog);
}

void Controller::Subsystems::mnuRotator_Click() {
    form::FrmRotator dialog;
    dialog.onError = form.onError;
    rotor::RotatorDialog rotator(dialog, rotor, ports.settings);
    rotator.Form_Load();
    boxes.showModal(dialog);
}

void Controller::Subsystems::mnuTvnServer_Click() {
    form::FrmServer dialog;
    dialog.onError = form.onError;
    boxes.showModal(dialog);
}

void Controller::Subsystems::mnuHardware_Click() {
    form::FrmHardware dialog(ports.timers, config::OutputChoice::list(ports.hardware),
                             config::HardwareAndLinks::boardList());
    dialog.onError = form.onError;
    config::HardwareAndLinks hardware(form, dialog, boxes, outputs, ports.hardware);
    hardware.onChange = [this] { hardwareChanged(); };
    hardware.Form_Load();
    boxes.showModal(dialog);
}

void Controller::Subsystems::mnuAssistant_Click() {
    form::FrmAssistant dialog(ports.timers);
    dialog.onError = form.onError;
    Assistant assistant(form, dialog, motion, outputs, file, ports.hardware);
    assistant.source = [this] { return sources.chosen(); };
    assistant.onMove = [this](const engine::Side& side) {
        leaveMemory();
        slots.subResetPressedMem(); // fast store must not take the place of a trial
        side.lblUso.Caption = "Manual";
    };
    assistant.changes = [this] { return undo.changes(); };
    assistant.Form_Load();
    boxes.showModal(dialog);
}

void Controller::Subsystems::hardwareChanged() {
    form.StatusBar1.Panels(form::kPanelOutputs) = ports.hardware.get().outputsName();
    trackingServer.setHost(ports.hardware.get().settings().trackingServer);
    if (form.intFunzione != form::kSatelliteRotor) return;
    trackingServer.use();
    rotctld.use(ports.hardware.get().settings());
}

/// A user who has not agreed yet has chosen "low" for an Arduino in the file or on the command line.
void Controller::Subsystems::askForLow() {
    platform::Hardware& hardware = ports.hardware;
    if (!config::mustAskForLow(hardware.settings(), hardware.lowAllowed()) ||
        !config::agreesToLow(hardware.settings(), hardware, boxes))
        return;
    hardware.openPortAnew();
    outputs.writePortOff();
    hardwareChanged();
}

void Controller::Subsystems::loadSettings() {
    std::string faults;
    try {
        rotor.use(rotor::readRotorSettings(ports.settings.get(), faults));
        keptTuner = form.tuner = config::readTunerSettings(ports.settings.get(), faults);
        approach.setBacklash(form.tuner.backlash1, form.tuner.backlash2);
        form.chkExact.Value.load(form.tuner.exact ? 1 : 0);
        form.chkHRM.Value.load(form.tuner.useTable ? 1 : 0);
    } catch (const runtime::FileError&) {
        // A file that cannot be read has been told already: devices and links come from it too.
    }
    if (!faults.empty()) boxes.critical(faults, "Error!");
}

Controller::Controller(const Ports& ports, const std::filesystem::path& directory)
    : all_(std::make_unique<Subsystems>(ports, directory)) {}

Controller::~Controller() = default;

form::Form1& Controller::form() {
    return all_->form;
}

form::Boxes& Controller::boxes() {
    return all_->boxes;
}

void Controller::start() {
    all_->form.guard([this] {
        all_->loadSettings();
        all_->startup.Form_Load();
    });
    all_->form.guard([this] { all_->positions.start(); });
    all_->form.guard([this] { all_->askForLow(); });
}

void Controller::close() {
    all_->form.guard([this] { all_->shutdown.Form_Unload(); });
}

} // namespace app
