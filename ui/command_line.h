#pragma once

#include "app/outside.h"

#include <QStringList>
#include <optional>
#include <string>

namespace ui {

/// Either the options to start with, or a text to print before the program ends.
struct CommandLine {
    std::optional<app::Options> options;
    std::string text;
    int exitCode = 0;
};

/// `arguments` begins with the program's name. Needs a QCoreApplication, no display.
CommandLine parseCommandLine(const QStringList& arguments);

} // namespace ui
