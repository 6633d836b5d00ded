#pragma once

#include "form/controls.h"
#include "form/timer.h"

namespace form {

/// A short message: why something did not happen, or what the program does instead. It disappears after a
/// time long enough to read it; a newer message replaces it.
class Notice : public Label {
  public:
    static constexpr int kMilliseconds = 8000;

    Notice(Form& form, const std::string& name, platform::Timers& timers);

    void tell(const std::string& text);
    /// As tell, until the next message.
    void stay(const std::string& text);

  private:
    Timer age_;
};

} // namespace form
