#pragma once

#include "platform/tcp_clients.h"
#include "platform/timers.h"

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace radio {

/// What is known of a rig.
struct RigReading {
    /// Hertz at which it transmits; nothing while it is not known.
    std::optional<std::int64_t> hertz = {};
    bool transmitting = false; // false where the rig cannot tell
    /// Why there is no frequency, in words for the user; empty while all is well, or nothing has failed yet.
    std::string trouble = {};
    /// What the server leaves unanswered, in words for the user; empty if it answers all.
    std::string unknown = {};

    bool operator==(const RigReading&) const = default;
};

/// A client of Hamlib's network daemon rigctld: asks for the frequency twice a second, one request at a time,
/// and connects again after a loss, for as long as it lives. What a server refuses is not asked again on this
/// connection; what it never answers is not asked again until it has been away. Protocol: rigctld(1) of
/// Hamlib 4.5.
class Rigctld {
  public:
    static constexpr int kDefaultPort = 4532;

    /// `told` hears each reading that differs from the one before, never during the construction. It may
    /// destroy this object.
    Rigctld(platform::TcpClients& clients, platform::Timers& timers, std::string host, int port,
            std::function<void(const RigReading&)> told);

  private:
    enum Request { kNone, kFrequency, kVfoMode, kSplit, kSplitFrequency, kTransmitting, kRequests };
    struct Word {
        const char* text;
        Request next; // after this request
    };
    static const std::array<Word, kRequests> kWords; // in the order of Request
    enum class Knows { kUntried, kYes, kRefuses, kSilent };

    void connect();
    void ended();
    void lost(const std::string& trouble, int ticksWaited = 0);
    void silent();
    /// Whether the server may never answer what it was asked last.
    bool mayBeSilent() const;
    void tick();
    /// Asks this, or the next one that the server knows.
    void ask(Request request);
    void received(const std::string& bytes);
    void answered(const std::string& line);
    void answeredSplit(const std::string& line);
    void finish();
    std::string unanswered() const;
    void tell(const RigReading& reading);

    platform::TcpClients& clients_;
    const std::string host_;
    const int port_;
    const std::function<void(const RigReading&)> told_;
    std::unique_ptr<platform::PeriodicTimer> tick_;
    std::unique_ptr<platform::TcpClient> client_;
    std::shared_ptr<const bool> alive_ = std::make_shared<const bool>(true); // ends with this object
    RigReading reading_;                                                     // the one last told
    RigReading next_; // the one that is being asked for
    std::array<Knows, kRequests> knows_{};

    // Of the connection.
    std::string unread_; // an answer that has not come whole
    Request waiting_ = kNone;
    int ticksWaited_ = 0;
    bool connected_ = false;
    bool vfoMode_ = false;          // each request names the VFO that it means
    bool splitNameFollows_ = false; // the second line of the answer about split
    bool transmitting_ = false;     // as the rig has said last
    bool split_ = false;
};

} // namespace radio
