#pragma once

#include "form/controls.h"
#include "platform/station_messages.h"

namespace radio {

/// What the main window and the tuner connections dialog share of Logger32: the registered message, the
/// window that was found, and the one window-procedure hook, of which there is a single slot.
class Logger32 {
  public:
    explicit Logger32(platform::StationMessages& station) : station_(station) {}

    /// Registers the message and puts the program's own window procedure on the form's window. From then on
    /// the frequency arrives in `frequency` in the form "14.200.000", below 10 MHz with a leading blank.
    void connect(form::Label& frequency);
    /// Unsubscribes where Logger32 is known, and takes the hook off the form's window.
    void disconnect(form::Form& form);

    enum class Sighting { Missing, New, Known };
    /// Looks for Logger32's window and, when it has newly appeared, subscribes the form's window to it.
    Sighting poll(form::Form& form);

  private:
    void receive(form::Label& frequency, long message, long wParam, long lParam) const;

    platform::StationMessages& station_;
    long lngMsgLogger32_ = 0;
    long lngHwndLogger32_ = 0;
    long lngOldWndProc_ = 0;
};

} // namespace radio
