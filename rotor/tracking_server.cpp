#include "rotor/tracking_server.h"

#include "rotor/tracking_data.h"
#include "runtime/text.h"

#include <algorithm>
#include <array>
#include <utility>

namespace rotor {

namespace {

/// Indexed by state number. Deliberate: the first two texts are swapped compared with the meaning of the
/// states.
constexpr std::array<const char*, 10> kStateNames = {"Open",         "Closed", "Listening",  "Waiting",
                                                     "Solving Name", "Solved", "Connecting", "Connected",
                                                     "Closing Peer", "Error"};

} // namespace

TrackingServer::TrackingServer(form::Form1& form, platform::TcpClients& clients, Sources& sources,
                               std::string host)
    : form_(form), clients_(clients), sources_(sources),
      source_("tracking server", Hold::kWhileHeard,
              [this] { return ClientIP_ && ClientIP_->state() == platform::TcpState::Connected; }),
      host_(std::move(host)), lines_([this](const std::string& line) {
          if (subSatData(form_, runtime::fromAnsi(line))) {
              sources_.complete(source_);
          } else {
              sources_.heard(source_);
          }
      }) {
    sources_.add(source_);
    form_.Timer5.Tick.attach([this] { Timer5_Timer(); });
    form_.tmrTrackingRetry.Tick.attach([this] { connect(); });
    form_.tmrTrackingSilence.Tick.attach([this] {
        form_.tmrTrackingSilence.Enabled = false;
        lines_.flush();
    });
}

int TrackingServer::port() const {
    // A negative port can come only from a damaged file.
    return form_.intPortaSat < 1 ? kDefaultTrackingPort : form_.intPortaSat.value();
}

void TrackingServer::use() {
    if (form_.chkOpenCom.ticked()) {
        leave();
        return;
    }
    form_.Timer5.Enabled = true;
    const bool sameServer = connectedHost_ == host_ && connectedPort_ == port();
    if (ClientIP_ && sameServer && !form_.tmrTrackingRetry.Enabled) return;
    retry_ = kShortestRetry;
    connect();
}

void TrackingServer::connect() {
    ClientIP_.reset();
    lines_.clear();
    form_.tmrTrackingRetry.Enabled = false;
    form_.tmrTrackingSilence.Enabled = false;
    connectedHost_ = host_;
    connectedPort_ = port();
    platform::TcpClients::Events events;
    events.connected = [this] { retry_ = kShortestRetry; };
    events.received = [this](const std::string& bytes) { form_.guard([&] { received(bytes); }); };
    events.ended = [this] { form_.guard([&] { lost(); }); };
    ClientIP_ = clients_.connect(host_, connectedPort_, std::move(events));
}

void TrackingServer::lost() {
    lines_.flush();
    form_.tmrTrackingSilence.Enabled = false;
    form_.tmrTrackingRetry.Interval = retry_;
    form_.tmrTrackingRetry.Enabled = true;
    retry_ = std::min(2 * retry_, kLongestRetry);
}

void TrackingServer::received(const std::string& bytes) {
    lines_.add(bytes);
    // The silence time starts after the last bytes.
    form_.tmrTrackingSilence.Enabled = false;
    form_.tmrTrackingSilence.Enabled = lines_.pending();
}

/// Replaces the server's state in the label by the state of the Orbitron link.
void TrackingServer::hideState() {
    if (!std::exchange(stateShown_, false)) return;
    form_.lblOpenCom.Caption = form_.lblOrbitron.isOpen() ? "Connected" : "Connect";
}

void TrackingServer::leave() {
    hideState();
    ClientIP_.reset();
    sources_.drop(source_);
    lines_.clear();
    for (form::Timer* timer : {&form_.Timer5, &form_.tmrTrackingRetry, &form_.tmrTrackingSilence}) {
        timer->Enabled = false;
    }
}

void TrackingServer::Timer5_Timer() {
    if (!ClientIP_ || form_.intSatSource != kSatPc32) {
        hideState();
        return;
    }
    const platform::TcpState state = ClientIP_->state();
    form_.lblOpenCom.Caption = kStateNames.at(static_cast<std::size_t>(state));
    stateShown_ = true;
    if (state == platform::TcpState::Connected) form_.chkRotOnOff.Enabled = true;
    if (state == platform::TcpState::Open) form_.chkRotOnOff.Enabled = false;
}

} // namespace rotor
