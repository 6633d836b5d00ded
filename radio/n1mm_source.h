#pragma once

#include "form/form1.h"
#include "form/frequency_source.h"
#include "platform/udp_sockets.h"

namespace radio {

/// N1MM Logger: datagrams bring the frequency, in tens of hertz. The label shows kilohertz.
class N1mmSource : public form::FrequencySource {
  public:
    N1mmSource(form::Form1& form, platform::UdpSockets& sockets);

    void connect() override;
    void release() override;
    bool hasFrequency() const override;
    bool announcesBands() const override { return form_.sourceConnected(); }
    std::string key() const override;
    std::optional<std::int64_t> hertz() const override { return hertz_; }
    /// N1MM Logger sends each change at once, and repeats what has not changed every 10 s.
    double age() const override;
    double silence() const override;
    bool transmitting() const override { return transmitting_; }
    void poll() override { ++silentPolls_; }

  private:
    void received(const std::string& datagram);

    form::Form1& form_;
    platform::UdpSockets& sockets_;
    std::unique_ptr<platform::UdpSocket> wskN1mmLog_;
    std::optional<std::int64_t> hertz_;
    bool transmitting_ = false;
    int silentPolls_ = 0; // since the last datagram
};

} // namespace radio
