#pragma once

#include "engine/approach.h"
#include "form/boxes.h"
#include "form/form1.h"
#include "form/go_to.h"

#include <functional>
#include <optional>

namespace memory {

/// The dialog "Go to Position". An engine goes as in a recall, with its checks; in Satellite Rotor the
/// antenna goes as by Point.
class GoTo {
  public:
    GoTo(form::Form1& form, form::Boxes& boxes, engine::Motion& motion, engine::Approach& approach);

    void mnuGoTo_Click();

    /// Called before a move, as before a jog: automatic recall must not take the engines back.
    std::function<void()> onMove;

  private:
    /// A position of each engine; empty: the engine stays.
    struct Places {
        std::optional<float> a, b;
    };
    /// What is wrong goes into the dialog.
    std::optional<Places> typed(form::FrmGoTo& dialog) const;
    void cmdGo_Click(form::FrmGoTo& dialog);
    bool goTo(const Places& places);
    bool point(const Places& places);
    bool isRotor() const { return form_.intFunzione == form::kSatelliteRotor; }

    form::Form1& form_;
    form::Boxes& boxes_;
    engine::Motion& motion_;
    engine::Approach& approach_;
    engine::Sides sides_;
};

} // namespace memory
