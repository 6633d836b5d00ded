#include "radio/rigctld.h"

#include "runtime/number.h"

#include <chrono>
#include <cmath>
#include <utility>

namespace radio {

namespace {

constexpr std::chrono::milliseconds kTick{500};
// Ticks. A daemon asks a rig that is silent several times before it gives up.
constexpr int kPatience = 4;
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
/// one, one not implemented or not available.
bool isUnknown(const std::string& line) {
    return line == "RPRT 1" || line == "RPRT -1" || line == "RPRT -4" || line == "RPRT -11";
}

} // namespace

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
        knowsSplit_ = knowsTransmitting_ = true;
        // A daemon in VFO mode takes what follows a bare request for the name of a VFO.
        ask(Request::kVfoMode);
    };
    events.received = [this](const std::string& bytes) { received(bytes); };
    events.ended = [this] {
        const bool bare = host_.find(':') == std::string::npos; // not an IPv6 address
        lost("no rigctld at " + (bare ? host_ : "[" + host_ + "]") + ":" + std::to_string(port_));
    };
    client_ = clients_.connect(host_, port_, std::move(events));
}

void Rigctld::lost(const std::string& trouble) {
    client_.reset();
    connected_ = false;
    waiting_ = Request::kNone;
    ticksWaited_ = 0;
    tell({.trouble = trouble});
}

void Rigctld::tick() {
    if (!client_) {
        if (++ticksWaited_ >= kRetry) connect();
    } else if (!connected_) {
        return;
    } else if (waiting_ == Request::kNone) {
        ask(Request::kFrequency);
    } else if (++ticksWaited_ == kPatience) {
        tell({.trouble = "the rig does not answer"});
    } else if (ticksWaited_ >= kLongestWait) {
        lost("rigctld does not answer");
    }
}

void Rigctld::ask(Request request) {
    waiting_ = request;
    ticksWaited_ = 0;
    std::string line;
    switch (request) {
    case Request::kVfoMode:
        client_->send("\\chk_vfo\n");
        return;
    case Request::kFrequency:
        next_ = {};
        line = "f";
        break;
    case Request::kSplit:
        line = "s";
        break;
    case Request::kSplitFrequency:
        line = "i";
        break;
    case Request::kTransmitting:
        line = "t";
        break;
    case Request::kNone:
        return;
    }
    client_->send(line + (vfoMode_ ? " currVFO\n" : "\n"));
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
    const bool refused = line.starts_with(kRefusal);
    if (std::exchange(splitNameFollows_, false)) {
        if (split_) {
            ask(Request::kSplitFrequency);
        } else {
            askTransmitting();
        }
        return;
    }
    switch (waiting_) {
    case Request::kVfoMode:
        vfoMode_ = line.ends_with('1') && !refused;
        ask(Request::kFrequency);
        break;
    case Request::kFrequency:
        next_.hertz = hertzOf(line);
        if (!next_.hertz) {
            next_.trouble = "the rig does not answer";
            finish();
        } else if (knowsSplit_) {
            ask(Request::kSplit);
        } else {
            askTransmitting();
        }
        break;
    case Request::kSplit:
        answeredSplit(line, refused);
        break;
    case Request::kSplitFrequency:
        if (const auto hertz = hertzOf(line)) next_.hertz = hertz;
        askTransmitting();
        break;
    case Request::kTransmitting:
        knowsTransmitting_ = !isUnknown(line);
        // A rig that does not answer just now may well be transmitting still.
        if (!refused || !knowsTransmitting_) transmitting_ = !refused && line != "0";
        next_.transmitting = transmitting_;
        finish();
        break;
    case Request::kNone:
        break; // Nothing was asked.
    }
}

void Rigctld::answeredSplit(const std::string& line, bool refused) {
    knowsSplit_ = !isUnknown(line);
    if (!refused || !knowsSplit_) split_ = !refused && line == "1";
    splitNameFollows_ = !refused;
    if (!refused) return; // the name of the VFO follows
    if (split_) {
        ask(Request::kSplitFrequency);
    } else {
        askTransmitting();
    }
}

void Rigctld::askTransmitting() {
    if (knowsTransmitting_) {
        ask(Request::kTransmitting);
    } else {
        finish();
    }
}

void Rigctld::finish() {
    waiting_ = Request::kNone;
    tell(next_);
}

void Rigctld::tell(const RigReading& reading) {
    if (std::exchange(reading_, reading) != reading) told_(reading);
}

} // namespace radio
