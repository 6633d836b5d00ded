#include "ui/command_line.h"

#include "app/version.h"
#include "config/hardware_settings.h"
#include "platform/qt/start_folder.h"

#include <QCommandLineParser>

namespace ui {

namespace {

constexpr int kUsageError = 2;

CommandLine refuse(const QString& why) {
    return {{}, "twinstep: " + why.toStdString() + "; twinstep --help shows the options\n", kUsageError};
}

CommandLine print(const std::string& text) {
    return {{}, text, 0};
}

std::filesystem::path path(const QString& text) {
    return text.toStdU16String();
}

/// In the order of the help.
struct Words {
    const QCommandLineOption directory{
        "directory",
        "Folder that holds save.cfg and twinstep.ini (default: the current folder; on Windows your data "
        "folder, or the program's own where a file \"portable\" is in it).",
        "DIR"};
    const QCommandLineOption userData{"user-data",
                                      "Keep save.cfg and twinstep.ini in your data folder, "
                                      "mostly ~/.local/share/twinstep, on Windows "
                                      "%LOCALAPPDATA%\\twinstep, made when missing; the entry in "
                                      "the desktop's menu does so."};
    const QCommandLineOption port{
        "port",
        "Where the outputs go: simulated, a printer port /dev/parportN, an I/O address such as 0x378, an "
        "Arduino firmata:DEVICE[:PINS][:BAUD], pins gpio:CHIP[:LINES], or auto (default: auto, which is "
        "/dev/parport0 where it can be claimed, on Windows 0x378 where inpoutx64.dll is beside the program, "
        "else simulated).",
        "PORT"};
    const QCommandLineOption coilsOn{
        "coils-on",
        "The level that energises a coil: low, high, or auto (default: auto, which is high for Arduino and "
        "pins, else low).",
        "LEVEL"};
    const QCommandLineOption usb{
        "usb",
        "USB board: none, k8055 or k8055:0 to k8055:3, or simulated, which is always found (default: none).",
        "BOARD"};
    const QCommandLineOption trace{"trace", "Record every access to the outputs in this file.", "FILE"};
    const QCommandLineOption realtime{
        "realtime",
        "Ask the system to run the step clock before other programs; the status bar says whether it "
        "does."};
    const QCommandLineOption listen{"n1mm-listen",
                                    "Address at which N1MM Logger's datagrams are taken (default: 127.0.0.1, "
                                    "this computer alone; 0.0.0.0: from everywhere).",
                                    "ADDRESS"};
    const QCommandLineOption server{"tracking-server",
                                    "Host of the satellite tracking server (default: 127.0.0.1).", "HOST"};
    const QCommandLineOption bridge{
        "bridge",
        "Where twinstep-bridge runs, beside Ham Radio Deluxe, Logger32, Orbitron or SatPC32 (default: "
        "127.0.0.1:7380; on Windows none is needed for programs on the same computer).",
        "HOST[:PORT]"};
    const QCommandLineOption rigctld{
        "rigctld",
        "Where Hamlib's rigctld runs, which knows the radio's frequency (default: 127.0.0.1:4532).",
        "HOST[:PORT]"};
    const QCommandLineOption rotctld{"rotctld",
                                     "Where Satellite Rotor listens for programs that turn a rotator through "
                                     "Hamlib's rotctld, such as Gpredict (default: 127.0.0.1:4533).",
                                     "[ADDRESS:]PORT|off"};
    const QCommandLineOption rotctldAllow{
        "rotctld-allow",
        "The other computers that may turn the antenna, when --rotctld gives an address that they can reach.",
        "ADDRESS[,ADDRESS...]"};
    const QCommandLineOption version{"version", "Show the version."};
    const QCommandLineOption help{"help", "Show this help."};

    QList<QCommandLineOption> all() const {
        return {directory, userData, port,    coilsOn, usb,          trace,   realtime, listen,
                server,    bridge,   rigctld, rotctld, rotctldAllow, version, help};
    }
};

CommandLine read(const QCommandLineParser& parser, const Words& words) {
    app::Options options;
    if (parser.isSet(words.userData)) {
        if (parser.isSet(words.directory)) return refuse("--directory and --user-data name two folders");
        options.directory = qt_ports::userDataFolder();
        options.fromDesktop = true;
    }
    if (parser.isSet(words.directory)) {
        if (parser.value(words.directory).isEmpty()) return refuse("--directory names no folder");
        options.directory = path(parser.value(words.directory));
    }
    for (const config::HardwareField& field : config::kHardwareFields) {
        if (!parser.isSet(field.name)) continue;
        const std::string text = parser.value(field.name).toStdString();
        if (const auto fault = field.fault(text)) {
            return refuse("--" + QString(field.name) + ": " + QString::fromStdString(*fault));
        }
        options.hardware[field.name] = text;
    }
    if (parser.isSet(words.trace)) {
        if (parser.value(words.trace).isEmpty()) return refuse("--trace names no file");
        options.trace = path(parser.value(words.trace));
    }
    options.realtime = parser.isSet(words.realtime);
    return {options, {}, 0};
}

} // namespace

CommandLine parseCommandLine(const QStringList& arguments) {
    const Words words;
    QCommandLineParser parser;
    parser.setApplicationDescription("Twinstep drives the two stepper motors of an antenna tuner or rotor.");
    parser.addOptions(words.all());
    const bool understood = parser.parse(arguments);
    if (parser.isSet(words.help)) return print(parser.helpText().toStdString());
    if (parser.isSet(words.version)) return print("twinstep " + std::string(app::kVersion) + "\n");
    if (!understood) return refuse(parser.errorText().remove(QChar('.')));
    if (!parser.positionalArguments().isEmpty()) {
        return refuse("unexpected argument '" + parser.positionalArguments().constFirst() + "'");
    }
    return read(parser, words);
}

} // namespace ui
