#pragma once

#include <optional>
#include <string>

namespace memory {

/// The positions that a memory or the frequency table holds.
struct Place {
    std::string name;     // "Memory 2, 14.020"
    std::string label;    // "14.020"
    bool reached = false; // the engines stand there
};

/// All that decides whether the antenna fits the frequency.
struct Fit {
    enum class Source { kNone, kOff, kSilent, kHeard }; // not chosen, not connected, no frequency yet, heard
    enum class Motion { kRests, kRecalls, kByHand };
    enum class Hold { kNone, kChanging, kTransmitting, kByHand, kBox, kNext }; // why Auto does not recall now

    Source source = Source::kNone;
    std::string program{}; // its name
    std::string state{};   // of the connection, as the window shows it
    std::string megahertz{};
    std::string age{};  // of a frequency that is too old to rely on
    bool table = false; // positions come from the frequency table

    Motion motion = Motion::kRests;
    std::string way{}; // what is left of a recall: "12.4 mm, 4 s"

    std::optional<Place> wanted{}; // what belongs to the frequency
    std::optional<Place> last{};   // what was recalled last
    bool stopped = false;          // the last recall ended before its place, and nothing has moved since
    bool automatic = false;
    Hold hold = Hold::kNone;
};

struct FitText {
    std::string text;
    bool fits = false;   // in place; all else needs a look
    bool goesOn = false; // offers to go on with the last recall
    bool operator==(const FitText&) const = default;
};

/// One line: whether the antenna fits the frequency.
FitText fitText(const Fit& fit);

} // namespace memory
