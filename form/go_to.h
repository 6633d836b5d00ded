#pragma once

#include "form/controls.h"

namespace form {

/// "Go to": a position for one engine or both.
struct FrmGoTo : Form {
    FrmGoTo() : Form("frmGoTo") { Caption = "Go to Position"; }

    Label lblGoToA{*this, "lblGoToA"}, lblGoToB{*this, "lblGoToB"}; // the engines' names
    TextBox txtGoToA{*this, "txtGoToA"}, txtGoToB{*this, "txtGoToB"};
    Label lblGoToUnitA{*this, "lblGoToUnitA"}, lblGoToUnitB{*this, "lblGoToUnitB"};
    Label lblGoToHint{*this, "lblGoToHint", "An empty box leaves its engine where it stands."};
    Label lblGoToError{*this, "lblGoToError"};
    Button cmdGo{*this, "cmdGo", "Go"};
    Button cmdExitGoTo{*this, "cmdExitGoTo", "Cancel"};
};

} // namespace form
