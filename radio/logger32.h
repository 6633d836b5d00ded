#pragma once

#include "form/controls.h"
#include "platform/station_messages.h"

namespace radio {

/// The access to Logger32 that the main window and the tuner connections dialog share: the registered
/// message, the window found, and the window-procedure hook. There can be only one hook.
class Logger32 {
  public:
    explicit Logger32(platform::StationMessages& station) : station_(station) {}

    /// Registers the message and hooks the form's window. From then on `frequency` receives texts such as
    /// "14.200.000", with a leading blank below 10 MHz.
    void connect(form::Label& frequency);
    /// Unsubscribes if Logger32 was found, and unhooks the form's window.
    void disconnect(form::Form& form);

    enum class Sighting { Missing, New, Known };
    /// Looks for Logger32's window; subscribes the form's window when Logger32's window has newly appeared.
    Sighting poll(form::Form& form);

  private:
    void receive(form::Label& frequency, long message, long wParam, long lParam) const;

    platform::StationMessages& station_;
    long lngMsgLogger32_ = 0;
    long lngHwndLogger32_ = 0;
    long lngOldWndProc_ = 0;
};

} // namespace radio
