#pragma once

#include "form/form1.h"
#include "form/frequency_source.h"
#include "radio/logger32.h"

namespace radio {

/// Logger32: window messages bring the frequency, in megahertz with points.
class Logger32Source : public form::FrequencySource {
  public:
    Logger32Source(form::Form1& form, Logger32& logger32);

    /// The next poll subscribes.
    void connect() override;
    void release() override;
    void poll() override;
    bool announcesBands() const override { return form_.sourceConnected(); }
    std::string key() const override;
    std::optional<std::int64_t> hertz() const override;
    /// The label keeps its frequency while Logger32's window is not found.
    double age() const override;

    /// Looks for Logger32's window, which may appear and disappear.
    void subFreqLog32();

  private:
    form::Form1& form_;
    Logger32& logger32_;
    int missingPolls_ = 0; // since the window was last found
};

} // namespace radio
