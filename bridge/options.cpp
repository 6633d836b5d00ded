#include "bridge/options.h"

#include <algorithm>
#include <optional>
#include <string_view>

namespace bridge {

namespace {

std::string address(const std::string& option, const std::string& text) {
    if (!isAddress(text))
        throw OptionError(option + ": \"" + text + "\" is no IPv4 address such as 192.168.1.20.");
    return text;
}

int port(const std::string& text) {
    const auto number = parseNumber(text);
    if (!number || *number < 1 || *number > 65535)
        throw OptionError("--port: \"" + text + "\" is no number from 1 to 65535.");
    return static_cast<int>(*number);
}

std::vector<std::string> addresses(const std::string& option, const std::string& text) {
    std::vector<std::string> result;
    for (std::size_t begin = 0; begin <= text.size();) {
        const auto end = std::min(text.find(',', begin), text.size());
        result.push_back(address(option, text.substr(begin, end - begin)));
        begin = end + 1;
    }
    return result;
}

} // namespace

Options parseOptions(const std::vector<std::string>& words) {
    Options options;
    for (auto word = words.begin(); word != words.end(); ++word) {
        // "--port 7380" and "--port=7380" are the same.
        const auto equals = word->starts_with("--") ? word->find('=') : std::string::npos;
        const std::string name = word->substr(0, equals);
        std::optional<std::string> given;
        if (equals != std::string::npos) given = word->substr(equals + 1);

        if (name == "--console" || name == "--version" || name == "--help") {
            if (given) throw OptionError(name + " takes no value.");
            (name == "--console"   ? options.console
             : name == "--version" ? options.version
                                   : options.help) = true;
            continue;
        }
        if (name != "--listen" && name != "--port" && name != "--allow")
            throw OptionError("\"" + *word + "\" is no option of this program; --help lists them.");
        if (!given) {
            if (word + 1 == words.end()) throw OptionError(name + " needs a value.");
            given = *++word;
        }
        if (name == "--listen") options.listen = address(name, *given);
        if (name == "--port") options.port = port(*given);
        if (name == "--allow") {
            const auto more = addresses(name, *given);
            options.allowed.insert(options.allowed.end(), more.begin(), more.end());
        }
    }
    if (!options.listen.starts_with("127.") && options.allowed.empty())
        throw OptionError("--listen " + options.listen +
                          " can be reached from other computers: name those that may, with --allow ADDRESS.");
    return options;
}

std::string helpText() {
    return "twinstep-bridge.exe [--listen ADDRESS] [--port N] [--allow ADDRESS[,ADDRESS...]] [--console]\n"
           "\n"
           "Carries DDE and window messages of station programs to Twinstep over TCP.\n"
           "\n"
           "--listen ADDRESS   listen at this IPv4 address of this computer (127.0.0.1)\n"
           "--port N           listen at this port (" +
           std::to_string(kPort) +
           ")\n"
           "--allow ADDRESS    let the computer with this address connect; any other is refused, but\n"
           "                   never this one itself\n"
           "--console          write what happens to the console instead of keeping silent\n"
           "--version          tell the version\n"
           "--help             show this text\n";
}

} // namespace bridge
