#pragma once

#include "platform/bridge/connection.h"
#include "platform/station_messages.h"

#include <map>

namespace bridge_ports {

/// Window messages through the bridge. Identifiers of messages and of our own windows are local; the bridge
/// knows only their names.
class StationMessages : public platform::StationMessages, private User {
  public:
    StationMessages(Connection& connection, platform::Timers& timers);
    StationMessages(const StationMessages&) = delete;
    StationMessages& operator=(const StationMessages&) = delete;
    ~StationMessages() override;

    long registerMessage(const std::string& name) override;
    /// The first call makes the bridge watch for the window. After the window or the bridge was lost, one
    /// call returns 0 before a call returns a window again. So a polling caller notices every loss, however
    /// short, and subscribes again.
    long findWindow(const std::string& title) override;
    void post(long window, long message, long wParam, long lParam) override;
    long hook(long window, Receiver receiver) override;
    void unhook(long window, long previousProcedure) override;
    long ownWindow(const std::string& form) override;

  private:
    struct Watch {
        long window = 0;
        bool gap = false; // a window was lost, and no call has returned 0 yet
    };

    bool wantsBridge() const override;
    void bridgeConnected() override;
    void bridgeLost() override;
    bool bridgeSaid(const std::vector<std::string>& fields) override;

    bool windowChanged(const std::string& title, const std::string& handle);
    bool messageCame(const std::vector<std::string>& fields);
    void stopWatching();

    Connection& connection_;
    std::unique_ptr<platform::PeriodicTimer> unasked_; // ends watches that findWindow has not asked for
    std::map<std::string, long> messages_;             // identifier by name
    std::map<std::string, long> ownWindows_;           // handle by form
    std::map<std::string, Watch> watches_;             // by title
    std::map<long, Receiver> receivers_;               // by our own window
};

} // namespace bridge_ports
