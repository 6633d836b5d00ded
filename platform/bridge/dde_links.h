#pragma once

#include "platform/bridge/connection.h"
#include "platform/dde_links.h"

#include <map>

namespace bridge_ports {

/// DDE links through the bridge. They fail if there is no bridge, and close when the bridge is lost. An ended
/// link is not restored automatically.
class DdeLinks : public platform::DdeLinks, private User {
  public:
    DdeLinks(Connection& connection, platform::Timers& timers);
    DdeLinks(const DdeLinks&) = delete;
    DdeLinks& operator=(const DdeLinks&) = delete;
    ~DdeLinks() override;

    /// Never calls `failed` during the call.
    std::unique_ptr<platform::DdeLink> open(const std::string& topic, const std::string& item,
                                            platform::DdeEvents events) override;

  private:
    class Handle;
    enum class State { Asking, Open, Failing, Closing };
    struct Link {
        std::string application, topic, item;
        std::shared_ptr<const platform::DdeEvents> events;
        State state = State::Asking;
        int ticksLeft = 0; // of deadline_, while asking
    };

    bool wantsBridge() const override;
    void bridgeConnected() override;
    void bridgeLost() override;
    bool bridgeSaid(const std::vector<std::string>& fields) override;

    static bool live(const Link& link);
    void finish(Link& link, State state);
    void ask(long long id, Link& link);
    void unlink(long long id);
    void end(long long id);
    void lookAtDeadlines();
    void tellEnds();

    Connection& connection_;
    std::unique_ptr<platform::PeriodicTimer> deadline_; // runs while a link is being opened
    std::unique_ptr<platform::PeriodicTimer> ends_;     // runs while ended links have not been reported
    std::map<long long, Link> links_;                   // by number
    long long lastId_ = 0;
};

} // namespace bridge_ports
