#pragma once

#include "form/form1.h"
#include "form/frequency_source.h"

namespace radio {

/// Opens the label's link to Ham Radio Deluxe's frequency. LinkOpen or LinkError follows.
void linkToHamRadioDeluxe(form::LinkLabel& label);

/// Ham Radio Deluxe: a DDE link brings the frequency, in megahertz.
class HamRadioDeluxe : public form::FrequencySource {
  public:
    explicit HamRadioDeluxe(form::Form1& form);

    void connect() override;
    void release() override;
    bool announcesBands() const override;
    std::string key() const override;
    std::optional<std::int64_t> hertz() const override;

    void lblFreqRx_LinkClose();

  private:
    form::Form1& form_;
};

} // namespace radio
