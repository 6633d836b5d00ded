#pragma once

#include "bridge/protocol.h"

#include <stdexcept>
#include <string>
#include <vector>

namespace bridge {

struct Options {
    std::string listen = "127.0.0.1";
    int port = kPort;
    std::vector<std::string> allowed;
    bool console = false;
    bool version = false;
    bool help = false;
};

/// Words of the command line that do not go together; the text is one sentence for the user.
struct OptionError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// Throws OptionError.
Options parseOptions(const std::vector<std::string>& words);

std::string helpText();

} // namespace bridge
