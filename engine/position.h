#pragma once

#include "engine/side.h"
#include "form/boxes.h"
#include "form/dialogs.h"

#include <functional>

namespace engine {

/// Shows the position that the engine has in the present function.
void showPosition(const form::Form1& form, const Side& side);

/// Values of bytInsPosSel: the position that the "New Value" dialog edits.
enum PositionChoice { kTunePosition = 1, kLoadPosition = 2, kAzimuthPosition = 3, kElevationPosition = 4 };

/// The "New Value" dialog: the user declares an engine's position. A double-click on a position opens it. No
/// engine moves.
class PositionEntry {
  public:
    PositionEntry(form::Form1& form, form::Boxes& boxes);

    /// Called when the user has declared a position; `before` is the old value.
    std::function<void(const Side& side, float before)> onDeclared;

    void Label2_DblClick() { open(kTunePosition); }
    void Label8_DblClick() { open(kLoadPosition); }
    void lblAzimut_DblClick() { open(kAzimuthPosition); }
    void lblElev_DblClick() { open(kElevationPosition); }

  private:
    void open(PositionChoice choice);
    void keyDown(form::FrmInsPosition& dialog, int key);
    void store(const form::FrmInsPosition& dialog);

    form::Form1& form_;
    form::Boxes& boxes_;
    Sides sides_;
};

} // namespace engine
