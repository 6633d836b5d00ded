#include "radio/rigctld.h"

#include "runtime/number.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <utility>

namespace radio {

namespace {

constexpr std::chrono::milliseconds kTick{500};
// Ticks. A daemon asks a rig that is silent several times before it gives up.
constexpr int kPatience = 4;
constexpr int kSilence = 6; // for an answer that the server has never given
constexpr int kLongestWait = 20;
constexpr int kRetry = 4;

constexpr std::size_t kLongestAnswer = 1024;
constexpr std::string_view kRefusal = "RPRT ";

std::optional<std::int64_t> hertzOf(const std::string& line) {
    try {
        const double hertz = runtime::parseNumber(line);
        if (hertz >= 1 && hertz < 1e12) return std::llround(hertz);
    } catch (const runtime::RunTimeError&) { // No number.
    }
    return std::nullopt;
}

/// Whether a refusal means that the server or the rig never knows the answer: an unknown command, an invalid
/// one, one not implemented or not available; or a line that rigctld does not write.
bool isUnknown(const std::string& line) {
    if (!line.starts_with(kRefusal)) return line.size() != 1 || line < "0" || line > "3";
    return line == "RPRT 1" || line == "RPRT -1" || line == "RPRT -4" || line == "RPRT -11";
}

} // namespace

const std::array<Rigctld::Word, Rigctld::kRequests> Rigctld::kWords = {{{"", kNone},
                                                                        {"f", kSplit},
                                                                        {"\\chk_vfo", kFrequency},
                                                                        {"s", kTransmitting},
                                                                        {"i", kTransmitting},
                                                                        {"t", kNone}}};

Rigctld::Rigctld(platform::TcpClients& clients, platform::Timers& timers, std::string host, int port,
                 std::function<void(const RigReading&)> told)
    : clients_(clients), host_(std::move(host)), port_(port), told_(std::move(told)),
      tick_(timers.create([this] { tick(); })) {
    tick_->start(kTick);
    connect();
}

void Rigctld::connect() {
    ticksWaited_ = 0;
    platform::TcpClients::Events events;
    events.connected = [this] {
        connected_ = true;
        unread_.clear();
        vfoMode_ = splitNameFollows_ = split_ = false;
        std::ranges::replace(knows_, Knows::kRefuses, Knows::kUntried);
        // A daemon in VFO mode takes what follows a bare request for the name of a VFO.
        ask(kVfoMode);
    };
    events.received = [this](const std::string& bytes) { received(bytes); };
    events.ended = [this] { ended(); };
    client_ = clients_.connect(host_, port_, std::move(events));
}

void Rigctld::ended() {
    // Some servers hang up at what they do not know.
    if (mayBeSilent()) return silent();
    if (!connected_) knows_ = {};                           // what comes next may be another server
    const bool bare = host_.find(':') == std::string::npos; // not an IPv6 address
    lost("no rigctld at " + (bare ? host_ : "[" + host_ + "]") + ":" + std::to_string(port_));
}

void Rigctld::lost(const std::string& trouble, int ticksWaited) {
    client_.reset();
    connected_ = false;
    waiting_ = kNone;
    ticksWaited_ = ticksWaited;
    tell({.trouble = trouble});
}

bool Rigctld::mayBeSilent() const {
    return waiting_ > kFrequency && knows_.at(waiting_) == Knows::kUntried;
}

/// An answer that came late would be taken for that of another request, so the connection begins anew.
void Rigctld::silent() {
    knows_.at(waiting_) = Knows::kSilent;
    lost(std::string("rigctld does not answer \"") + kWords.at(waiting_).text + "\"", kRetry - 1);
}

void Rigctld::tick() {
    if (!client_) {
        if (++ticksWaited_ >= kRetry) connect();
    } else if (!connected_) {
        return;
    } else if (waiting_ == kNone) {
        ask(kFrequency);
    } else if (++ticksWaited_; mayBeSilent()) {
        if (ticksWaited_ >= kSilence) silent();
    } else if (ticksWaited_ == kPatience) {
        tell({.trouble = "the rig does not answer"});
    } else if (ticksWaited_ >= kLongestWait) {
        knows_ = {}; // a server that says nothing at all leaves no request out
        lost("rigctld does not answer");
    }
}

void Rigctld::ask(Request request) {
    while (knows_.at(request) == Knows::kRefuses || knows_.at(request) == Knows::kSilent)
        request = kWords.at(request).next;
    if (request == kNone) return finish();
    waiting_ = request;
    ticksWaited_ = 0;
    if (request == kFrequency) next_ = {};
    const bool namesVfo = vfoMode_ && request != kVfoMode;
    client_->send(kWords.at(request).text + std::string(namesVfo ? " currVFO\n" : "\n"));
}

void Rigctld::received(const std::string& bytes) {
    unread_ += bytes;
    const std::weak_ptr<const bool> alive = alive_;
    const platform::TcpClient* const client = client_.get();
    const auto stands = [&] { return !alive.expired() && client_.get() == client; };
    for (std::size_t end = 0; stands() && (end = unread_.find('\n')) != std::string::npos;) {
        std::string line = unread_.substr(0, end);
        unread_.erase(0, end + 1);
        if (line.ends_with('\r')) line.pop_back();
        answered(line);
    }
    if (stands() && unread_.size() > kLongestAnswer) lost("what answers at this address is no rigctld");
}

void Rigctld::answered(const std::string& line) {
    if (std::exchange(splitNameFollows_, false)) {
        knows_.at(kSplit) = Knows::kYes;
        return ask(split_ ? kSplitFrequency : kTransmitting);
    }
    switch (waiting_) {
    case kVfoMode:
        vfoMode_ = line == "1" || line == "CHKVFO 1";
        knows_.at(kVfoMode) = Knows::kYes;
        ask(kFrequency);
        break;
    case kFrequency:
        next_.hertz = hertzOf(line);
        if (next_.hertz) return ask(kSplit);
        next_.trouble = "the rig does not answer";
        finish();
        break;
    case kSplit:
        answeredSplit(line);
        break;
    case kSplitFrequency:
        knows_.at(kSplitFrequency) = Knows::kYes;
        if (const auto hertz = hertzOf(line)) next_.hertz = hertz;
        ask(kTransmitting);
        break;
    case kTransmitting:
        knows_.at(kTransmitting) = isUnknown(line) ? Knows::kRefuses : Knows::kYes;
        // A rig that does not answer just now may well be transmitting still.
        if (isUnknown(line) || !line.starts_with(kRefusal)) transmitting_ = !isUnknown(line) && line != "0";
        next_.transmitting = transmitting_;
        finish();
        break;
    default:
        break; // Nothing was asked.
    }
}

void Rigctld::answeredSplit(const std::string& line) {
    if (isUnknown(line)) {
        knows_.at(kSplit) = Knows::kRefuses;
        split_ = false;
    } else if (!line.starts_with(kRefusal)) {
        split_ = line == "1";
        splitNameFollows_ = true; // the name of the VFO
        return;
    }
    ask(split_ ? kSplitFrequency : kTransmitting);
}

void Rigctld::finish() {
    waiting_ = kNone;
    next_.unknown = unanswered();
    tell(next_);
}

std::string Rigctld::unanswered() const {
    const auto isSilent = [this](Request request) { return knows_.at(request) == Knows::kSilent; };
    const bool split = isSilent(kSplit) || isSilent(kSplitFrequency);
    if (!split && !isSilent(kTransmitting)) return {};
    return std::string("rigctld does not tell ") + (split ? "split" : "") +
           (split && isSilent(kTransmitting) ? " and " : "") +
           (isSilent(kTransmitting) ? "transmitting" : "");
}

void Rigctld::tell(const RigReading& reading) {
    if (std::exchange(reading_, reading) != reading) told_(reading);
}

} // namespace radio
