#pragma once

#include "form/boxes.h"
#include "form/form1.h"
#include "rotor/sources.h"

#include <functional>

namespace rotor {

/// The DDE links to Orbitron and SatPC32.
class TrackingLinks {
  public:
    TrackingLinks(form::Form1& form, form::Boxes& boxes, Sources& sources);

    void cmdConnect_Click();
    void lblOrbitron_LinkOpen();
    void lblOrbitron_LinkClose();
    void chkOpenCom_Click();
    /// Called before the link to SatPC32 is opened, and after it has been given up.
    std::function<void()> onSatPc32;
    /// Closes both links, when Satellite Rotor or the program ends.
    void close();

  private:
    void closeOrbitron();
    void openSatPc32();
    void closeSatPc32();

    form::Form1& form_;
    form::Boxes& boxes_;
    Sources& sources_;
    const NamedSource orbitron_, satPc32_;
};

} // namespace rotor
