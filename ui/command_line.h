#pragma once

#include <QStringList>
#include <filesystem>
#include <map>
#include <optional>
#include <string>

namespace ui {

/// What the user asked for on the command line.
struct Options {
    std::filesystem::path directory = "."; // holds "save.cfg" and "twinstep.ini"
    /// Those of platform::HardwareSettings that were given, by name; each is valid.
    std::map<std::string, std::string> hardware;
    std::optional<std::filesystem::path> trace;
    bool realtime = false;    // ask for real-time scheduling
    bool fromDesktop = false; // started from the desktop's menu, most likely
};

/// Either the options to start with, or a text to print before the program ends.
struct CommandLine {
    std::optional<Options> options;
    std::string text;
    int exitCode = 0;
};

/// `arguments` begins with the program's name. Needs a QCoreApplication, no display.
CommandLine parseCommandLine(const QStringList& arguments);

} // namespace ui
