#include "rotor/rotctld_protocol.h"

#include "form/engine_panel.h"
#include "runtime/errors.h"
#include "runtime/number.h"
#include "runtime/text.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <optional>
#include <vector>

namespace rotor::rotctld {

namespace {

constexpr std::string_view kBlanks = " \t\r\v\f";
constexpr std::string_view kSeparators = "+;|,";

// The directions that a client may name, whatever this machine's own range is: the rotor finds its way to
// each. Clients of the library send nothing outside the range that they are told.
constexpr double kLowestAzimuth = -180, kHighestAzimuth = 450;
constexpr double kLowestElevation = -90, kHighestElevation = 180; // beyond 90: over the top
constexpr int kLowestFastSpeed = 50;                              // of 1 to 100

constexpr int kProtocolVersion = 1;
constexpr int kModel = 2; // the library's number for a rotator that is reached by this protocol

std::string_view takeWord(std::string_view& rest) {
    rest.remove_prefix(std::min(rest.find_first_not_of(kBlanks), rest.size()));
    const std::string_view word = rest.substr(0, rest.find_first_of(kBlanks));
    rest.remove_prefix(word.size());
    return word;
}

std::optional<double> number(std::string_view text) {
    try {
        return runtime::parseNumber(text);
    } catch (const runtime::RunTimeError&) {
        return std::nullopt;
    }
}

bool within(double value, double lowest, double highest) {
    return value >= lowest && value <= highest;
}

std::string degrees(double value) {
    return runtime::formatShown(static_cast<float>(value));
}

/// A command on its way to its answer. An extended answer repeats the command, names the values and ends with
/// the result; the client says what stands between its lines.
struct Call {
    Rotator& rotator;
    std::vector<std::string_view> arguments;
    bool extended;
    char separator;
    std::string text;

    void line(const std::string& content) { text += content + separator; }
    void value(const char* name, const std::string& value) {
        line((extended ? std::string(name) + ": " : std::string()) + value);
    }
};

Result setPosition(Call& call) {
    const auto azimuth = number(call.arguments[0]), elevation = number(call.arguments[1]);
    if (!azimuth || !elevation || !within(*azimuth, kLowestAzimuth, kHighestAzimuth) ||
        !within(*elevation, kLowestElevation, kHighestElevation)) {
        return Result::kInvalid;
    }
    return call.rotator.point({*azimuth, *elevation});
}

Result getPosition(Call& call) {
    const Direction position = call.rotator.position();
    call.value("Azimuth", degrees(position.azimuth));
    call.value("Elevation", degrees(position.elevation));
    return Result::kOk;
}

Result move(Call& call) {
    struct Way {
        int number;
        std::array<std::string_view, 2> words;
        Axis axis;
        int direction;
    };
    static constexpr std::array<Way, 4> kWays = {{{2, {"UP"}, Axis::kElevation, form::kForward},
                                                  {4, {"DOWN"}, Axis::kElevation, form::kBackward},
                                                  {8, {"LEFT", "CCW"}, Axis::kAzimuth, form::kBackward},
                                                  {16, {"RIGHT", "CW"}, Axis::kAzimuth, form::kForward}}};
    const std::string_view wanted = call.arguments[0];
    const auto wantedNumber = number(wanted), speed = number(call.arguments[1]);
    const auto* const way = std::ranges::find_if(kWays, [&](const Way& each) {
        return wantedNumber == each.number || std::ranges::find(each.words, wanted) != each.words.end();
    });
    if (way == kWays.end() || !speed) return Result::kInvalid;
    return call.rotator.move(way->axis, way->direction, *speed >= kLowestFastSpeed);
}

Result stop(Call& call) {
    return call.rotator.stop();
}

Result park(Call& call) {
    return call.rotator.park();
}

Result reset(Call& call) {
    return number(call.arguments[0]) ? Result::kUnknown : Result::kInvalid;
}

Result getInfo(Call& call) {
    call.value("Info", "Twinstep " + call.rotator.version());
    return Result::kOk;
}

Result dumpState(Call& call) {
    const auto limit = [&](const char* name, const char* key, double value) {
        // Six decimals.
        call.line((call.extended ? std::string(name) + ": " : std::string(key) + "=") + degrees(value) +
                  "0000");
    };
    call.value("rotctld Protocol Ver", std::to_string(kProtocolVersion));
    call.value("Rotor Model", std::to_string(kModel));
    limit("Minimum Azimuth", "min_az", kLowestAzimuth);
    limit("Maximum Azimuth", "max_az", kHighestAzimuth);
    limit("Minimum Elevation", "min_el", kLowestElevation);
    limit("Maximum Elevation", "max_el", kHighestElevation);
    call.line(call.extended ? "South Zero: 0" : "south_zero=0");
    call.line("rot_type=AzEl");
    call.line("done");
    return Result::kOk;
}

Result dumpCaps(Call& call) {
    call.text +=
        "Caps dump for model:\t" + std::to_string(kModel) +
        "\nModel name:\t\tTwinstep\nMfg name:\t\tTwinstep\nBackend version:\t" + call.rotator.version() +
        "\nBackend copyright:\tGPL\nBackend status:\t\tStable\nRot type:\t\tAz-El\n"
        "Port type:\t\tNetwork link\nMin Azimuth:\t\t" +
        degrees(kLowestAzimuth) + "\nMax Azimuth:\t\t" + degrees(kHighestAzimuth) + "\nMin Elevation:\t\t" +
        degrees(kLowestElevation) + "\nMax Elevation:\t\t" + degrees(kHighestElevation) +
        "\nCan set Position:\tY\nCan get Position:\tY\nCan Stop:\t\tY\nCan Park:\t\tY\n"
        "Can Reset:\t\tN\nCan Move:\t\tY\nCan get Info:\t\tY\n";
    return Result::kOk;
}

struct Command {
    char letter; // 0: it has none
    std::string_view name;
    std::size_t arguments;
    bool alwaysResult; // its plain answer ends with the result, too
    Result (*run)(Call&);
};

constexpr std::array<Command, 9> kCommands = {{
    {'P', "set_pos", 2, true, setPosition},
    {'p', "get_pos", 0, false, getPosition},
    {'M', "move", 2, true, move},
    {'S', "stop", 0, true, stop},
    {'K', "park", 0, true, park},
    {'R', "reset", 1, true, reset},
    {'_', "get_info", 0, false, getInfo},
    {0, "dump_state", 0, false, dumpState},
    {'1', "dump_caps", 0, true, dumpCaps},
}};

/// The command at the beginning of `rest`, which is not empty, by its letter or its name; takes it away.
const Command* takeCommand(std::string_view& rest) {
    const char letter = rest.front();
    rest.remove_prefix(1);
    const std::string_view name = letter == '\\' ? takeWord(rest) : std::string_view();
    const auto* const found = std::ranges::find_if(kCommands, [&](const Command& each) {
        return letter == '\\' ? each.name == name : each.letter == letter;
    });
    return found == kCommands.end() ? nullptr : found;
}

void run(const Command& command, Call call, Answer& answer) {
    Result code = Result::kInvalid;
    if (call.extended) {
        std::string heading = std::string(command.name) + ":";
        for (const std::string_view argument : call.arguments)
            heading += " " + std::string(argument);
        call.line(heading);
    }
    if (call.arguments.size() == command.arguments) code = command.run(call);
    if (code != Result::kOk || call.extended || command.alwaysResult) call.text += result(code);
    answer.text += call.text;
    answer.moves = answer.moves || (code == Result::kOk && command.run == move);
}

} // namespace

std::string result(Result code) {
    return "RPRT " + std::to_string(static_cast<int>(code)) + "\n";
}

bool isFromBrowser(std::string_view line) {
    static constexpr std::array<std::string_view, 11> kBeginnings = {
        "get ",   "head ",  "post ",    "put ", "delete ", "connect ",
        "trace ", "patch ", "options ", "pri ", "host:"};
    const auto same = [](unsigned char a, unsigned char b) { return std::tolower(a) == b; };
    return std::ranges::any_of(kBeginnings, [&](std::string_view beginning) {
        return std::ranges::equal(line.substr(0, beginning.size()), beginning, same);
    });
}

Answer obey(Rotator& rotator, std::string_view line) {
    Answer answer;
    for (;;) {
        line.remove_prefix(std::min(line.find_first_not_of(kBlanks), line.size()));
        if (line.empty() || line.front() == '#') break;
        Call call{.rotator = rotator, .arguments = {}, .extended = false, .separator = '\n', .text = {}};
        if (kSeparators.find(line.front()) != std::string_view::npos) {
            call.extended = true;
            if (line.front() != '+') call.separator = line.front();
            line.remove_prefix(1);
            // The mark belongs to the very next letter.
            if (line.empty() || kBlanks.find(line.front()) != std::string_view::npos) continue;
        }
        if (line.front() == 'q' || line.front() == 'Q') {
            answer.quits = true;
            break;
        }
        const Command* command = takeCommand(line);
        if (!command) {
            // Words behind a command are no client's wish for an answer more.
            if (answer.text.empty()) answer.text = result(Result::kUnknown);
            break;
        }
        while (call.arguments.size() < command->arguments) {
            const std::string_view word = takeWord(line);
            if (word.empty()) break;
            call.arguments.push_back(word);
        }
        run(*command, std::move(call), answer);
    }
    return answer;
}

} // namespace rotor::rotctld
