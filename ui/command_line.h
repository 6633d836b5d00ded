#pragma once

#include <QStringList>
#include <filesystem>
#include <optional>
#include <string>

namespace ui {

/// What the user asked for on the command line.
struct Options {
    std::filesystem::path directory = "."; // holds "save.cfg"
    std::optional<std::string> port;       // a device, or kSimulated; without: whichever is there
    bool usbSimulated = false;
    std::optional<std::filesystem::path> trace;
    std::string listenAddress = "127.0.0.1";  // IPv4, for N1MM Logger's datagrams
    std::string trackingServer = "127.0.0.1"; // host name or address
};

inline constexpr const char* kSimulated = "simulated";

/// Either the options to start with, or a text to print before the program ends.
struct CommandLine {
    std::optional<Options> options;
    std::string text;
    int exitCode = 0;
};

/// `arguments` begins with the program's name. Needs a QCoreApplication, no display.
CommandLine parseCommandLine(const QStringList& arguments);

} // namespace ui
