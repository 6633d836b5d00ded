#pragma once

#include "form/form1.h"
#include "form/frequency_source.h"
#include "radio/rigctld.h"

#include <functional>

namespace radio {

/// Any rig that Hamlib knows, by its network daemon. The label shows kilohertz.
class HamlibSource : public form::FrequencySource {
  public:
    /// Makes a client of the daemon that the settings name.
    using Connect = std::function<std::unique_ptr<Rigctld>(std::function<void(const RigReading&)> told)>;

    HamlibSource(form::Form1& form, Connect connect);

    void connect() override;
    void release() override;
    bool hasFrequency() const override { return reading_.hertz.has_value(); }
    bool announcesBands() const override { return form_.sourceConnected(); }
    std::string key() const override;
    std::optional<std::int64_t> hertz() const override { return reading_.hertz; }
    bool transmitting() const override { return reading_.transmitting; }

  private:
    void told(const RigReading& reading);

    form::Form1& form_;
    const Connect connect_;
    std::unique_ptr<Rigctld> rigctld_;
    RigReading reading_;
};

/// Kilohertz with the digits that it has, "14025.5"; "00000" while nothing is known.
std::string kilohertzText(const RigReading& reading);

} // namespace radio
