#include "platform/bridge/connection.h"

#include <algorithm>
#include <array>
#include <utility>

namespace bridge_ports {

namespace {

/// Milliseconds from a loss to the next attempt, by the number of successive losses.
constexpr std::array kRetries = {100, 500, 1000, 2000, 4000, 5000};

constexpr std::size_t kLongestQuote = 200; // bytes of the bridge's own text that are shown

std::string quoted(const std::vector<std::string>& fields) {
    std::string text;
    for (std::size_t n = 1; n < fields.size(); ++n)
        text += (n > 1 ? " " : "") + fields[n];
    if (text.size() > kLongestQuote) text.resize(kLongestQuote);
    return text;
}

std::string textOf(const Address& address) {
    const bool colons = address.host.find(':') != std::string::npos;
    return (colons ? "[" + address.host + "]" : address.host) + ":" + std::to_string(address.port);
}

} // namespace

Connection::Connection(platform::TcpClients& tcp, platform::Timers& timers, std::string programVersion,
                       Address address)
    : tcp_(tcp), programVersion_(std::move(programVersion)), address_(std::move(address)),
      retry_(timers.create([this] { retry(); })), ping_(timers.create([this] { ping(); })),
      silence_(timers.create([this] {
          lost(stuck_ ? "it does not read" : connected_ ? "it fell silent" : "it does not answer");
      })) {}

void Connection::attach(User& user) {
    users_.push_back(&user);
}

void Connection::detach(User& user) {
    std::erase(users_, &user);
}

bool Connection::wanted() const {
    return stay_ || std::ranges::any_of(users_, &User::wantsBridge);
}

void Connection::setAddress(const Address& address) {
    if (address == address_) return;
    drop({});
    address_ = address;
    losses_ = 0;
    if (wanted()) connect();
}

void Connection::stayConnected(bool stay) {
    stay_ = stay;
    if (stay_) ask();
}

void Connection::ask() {
    if (!client_) connect();
}

void Connection::connect() {
    retry_->stop();
    stuck_ = false;
    notUnderstood_ = 0;
    refusal_.clear();
    remark_.clear();
    // Also limits the time for the greeting.
    silence_->start(std::chrono::milliseconds(bridge::kSilenceLimit));
    platform::TcpClients::Events events;
    events.connected = [this] {
        const std::string greeting =
            bridge::join({"hello", std::to_string(bridge::kVersion), "twinstep", programVersion_});
        client_->send(greeting);
    };
    events.received = [this](const std::string& bytes) { received(bytes); };
    events.ended = [this] { lost(connected_ ? "it ended the connection" : refusal_); };
    client_ = tcp_.connect(address_.host, address_.port, std::move(events));
}

void Connection::retry() {
    retry_->stop();
    if (wanted()) connect();
}

void Connection::ping() {
    // A connection that has lasted this long counts as good.
    losses_ = 0;
    say({"ping", std::to_string(++pings_)});
}

/// Ends the connection or the attempt, and schedules the next attempt if a connection is wanted.
void Connection::lost(std::string reason) {
    drop(std::move(reason));
    if (wanted()) retry_->start(std::chrono::milliseconds(kRetries.at(losses_)));
    losses_ = std::min(losses_ + 1, kRetries.size() - 1);
}

void Connection::drop(std::string reason) {
    reason_ = std::move(reason);
    connected_ = false;
    client_.reset();
    reader_ = {};
    for (platform::PeriodicTimer* timer : {retry_.get(), ping_.get(), silence_.get()})
        timer->stop();
    for (User* user : users_)
        user->bridgeLost();
}

bool Connection::say(const std::vector<std::string_view>& fields) {
    if (!connected_ || stuck_) return false;
    const std::string line = bridge::join(fields);
    if (!bridge::fits(line)) return false;
    if (client_->send(line)) return true;
    // The timer reports the loss later: the caller is not prepared for callbacks here.
    stuck_ = true;
    silence_->start(std::chrono::milliseconds(1));
    return false;
}

void Connection::received(const std::string& bytes) {
    if (connected_ && !stuck_) silence_->start(std::chrono::milliseconds(bridge::kSilenceLimit));
    reader_.feed(bytes);
    // Handling a line may open a box; lines that arrive meanwhile are handled in the box's event loop.
    while (const auto line = reader_.next())
        hear(*line);
}

void Connection::hear(const bridge::LineReader::Line& line) {
    const auto fields = line.tooLong ? std::nullopt : bridge::split(line.text);
    const bool understood = fields && (connected_ ? hearWord(*fields) : hearBeforeGreeting(*fields));
    if (!understood) ++notUnderstood_;
}

bool Connection::hearBeforeGreeting(const std::vector<std::string>& fields) {
    if (fields.front() == "hello") return greet(fields);
    if (fields.front() != "error") return false;
    refusal_ = quoted(fields);
    return true;
}

bool Connection::greet(const std::vector<std::string>& fields) {
    if (fields.size() != 4) return false;
    const auto version = bridge::parseNumber(fields[1]);
    if (!version) return false;
    if (*version != bridge::kVersion) {
        lost("it speaks version " + std::to_string(*version) +
             " of the line protocol, this program version " + std::to_string(bridge::kVersion));
        return true;
    }
    connected_ = true;
    peer_ = quoted({"", fields[2], fields[3]});
    ping_->start(std::chrono::milliseconds(bridge::kPingInterval));
    silence_->start(std::chrono::milliseconds(bridge::kSilenceLimit));
    for (User* user : users_)
        user->bridgeConnected();
    return true;
}

bool Connection::hearWord(const std::vector<std::string>& fields) {
    const std::string& word = fields.front();
    if (word == "ping" && fields.size() == 2) {
        say({"pong", fields[1]});
        return true;
    }
    if (word == "pong") return fields.size() == 2;
    if (word == "error") {
        remark_ = quoted(fields);
        return true;
    }
    return std::ranges::any_of(users_, [&fields](User* user) { return user->bridgeSaid(fields); });
}

std::string Connection::stateText() const {
    const std::string where = textOf(address_);
    if (connected_) {
        std::string text = "bridge " + where + " connected (" + peer_ + ")";
        if (!remark_.empty()) text += "; its last error: " + remark_;
        if (notUnderstood_ > 0) text += "; lines not understood: " + std::to_string(notUnderstood_);
        return text;
    }
    if (losses_ > 0) return "no bridge at " + where + (reason_.empty() ? "" : ": " + reason_);
    return (client_ ? "looking for a bridge at " : "bridge not in use: ") + where;
}

} // namespace bridge_ports
