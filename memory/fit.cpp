#include "memory/fit.h"

namespace memory {

namespace {

std::string silenceText(const Fit& fit) {
    if (fit.state == "Listening") return "listening, nothing heard yet";
    if (fit.state == "Connected") return "connected to " + fit.program + ", nothing heard yet";
    if (fit.state == "Connecting") return "connecting to " + fit.program;
    return fit.program + " does not answer"; // "Error", "Disconnected", "Connect"
}

std::string withoutFrequency(const Fit& fit) {
    switch (fit.source) {
    case Fit::Source::kNone:
        return "no program for the frequency: Tuner Connections, Ctrl+T";
    case Fit::Source::kOff:
        return "not connected to " + fit.program + ": F10";
    default:
        return silenceText(fit);
    }
}

std::string notThere(const Fit& fit) {
    const std::string& label = fit.wanted->label;
    if (!fit.automatic) return fit.wanted->name + ", fits, not recalled";
    switch (fit.hold) {
    case Fit::Hold::kChanging:
        return "waits until the frequency rests";
    case Fit::Hold::kTransmitting:
        return "waits: transmitting";
    case Fit::Hold::kByHand:
        return "tuned by hand, not at " + label;
    case Fit::Hold::kBox:
        return "waits: a box is open";
    case Fit::Hold::kNext:
        return "next: " + label;
    default:
        return "no longer at " + label;
    }
}

FitText heard(const Fit& fit) {
    const bool lastIsWanted = fit.last && (!fit.wanted || fit.last->name == fit.wanted->name);
    if (fit.stopped && lastIsWanted) return {"stopped before " + fit.last->label, false, true};
    if (!fit.wanted)
        return {std::string(fit.table ? "no table entry for " : "no memory for ") + fit.megahertz + " MHz"};
    if (!fit.wanted->reached) return {notThere(fit)};
    if (!fit.age.empty()) return {fit.wanted->name + ", fitted " + fit.age + " ago"};
    return {fit.wanted->name + ", in place", true};
}

} // namespace

FitText fitText(const Fit& fit) {
    if (fit.motion == Fit::Motion::kRecalls)
        return {"moving" + (fit.last ? " to " + fit.last->label : std::string()) + ": " + fit.way};
    if (fit.motion == Fit::Motion::kByHand) return {"moved by hand"};
    if (fit.source == Fit::Source::kHeard) return heard(fit);
    if (fit.stopped) return {"stopped before " + fit.last->label, false, true};
    if (fit.source != Fit::Source::kSilent && fit.last && fit.last->reached)
        return {fit.last->name + ", in place", true};
    return {withoutFrequency(fit)};
}

} // namespace memory
