#pragma once

#include "rotor/rotor_commands.h"

#include <string>
#include <string_view>

/// The line protocol of Hamlib's rotctld, as version 4.5 answers it.
namespace rotor::rotctld {

constexpr std::size_t kLongestLine = 1024; // bytes, without the line end

/// What a command comes to, as Hamlib numbers it.
enum class Result {
    kOk = 0,
    kInvalid = -1,      // no number, or no such direction
    kUnknown = -4,      // a command that this program does not have
    kFailed = -6,       // the engines or their outputs failed
    kNotAvailable = -11 // not now
};

/// The line that reports it: "RPRT 0".
std::string result(Result code);

/// What the commands act on. Positions are those of the client: offsets are not in them.
class Rotator {
  public:
    virtual ~Rotator() = default;
    virtual Direction position() const = 0;
    virtual std::string version() const = 0;
    virtual Result point(const Direction& target) = 0;
    /// `direction` is form::kForward or form::kBackward.
    virtual Result move(Axis axis, int direction, bool fast) = 0;
    virtual Result stop() = 0;
    virtual Result park() = 0;
    /// Ends what the last move began, if nothing has replaced it.
    virtual void endMove() = 0;
    /// A client has said something whole.
    virtual void heard() = 0;
};

/// Whether a line, or the beginning of one, is what a web browser sends: a page must not turn an antenna.
bool isFromBrowser(std::string_view line);

struct Answer {
    std::string text;   // all lines, to be sent in one piece
    bool moves = false; // the antenna now turns for this client until it stops that, or is silent
    bool quits = false; // the client asks to be disconnected
};

/// Carries out one line, without its end, as far as commands follow one another in it.
Answer obey(Rotator& rotator, std::string_view line);

} // namespace rotor::rotctld
