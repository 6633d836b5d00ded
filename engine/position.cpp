#include "engine/position.h"

#include "form/key_filter.h"
#include "runtime/number.h"
#include "runtime/text.h"

#include <utility>

namespace engine {

namespace {

// The largest position is 999.99.
constexpr int kIntegerDigits = 3;
constexpr int kDecimals = 2;

} // namespace

void showPosition(const form::Form1& form, const Side& side) {
    if (form.intFunzione == form::kSatelliteRotor) {
        side.lblPosRotor.Caption = runtime::formatShown(side.sngPosRotor);
    } else {
        side.lblPos.Caption = runtime::formatShown(side.sngPos);
    }
}

PositionEntry::PositionEntry(form::Form1& form, form::Boxes& boxes)
    : form_(form), boxes_(boxes), sides_(form) {
    form_.Label2.DblClick.attach([this] { Label2_DblClick(); });
    form_.Label8.DblClick.attach([this] { Label8_DblClick(); });
    form_.lblAzimut.DblClick.attach([this] { lblAzimut_DblClick(); });
    form_.lblElev.DblClick.attach([this] { lblElev_DblClick(); });
}

void PositionEntry::open(PositionChoice choice) {
    // cmdOff is disabled while an engine runs; the position of a running engine must not be set.
    if (!form_.cmdOff.Enabled) return;
    form_.bytInsPosSel = choice;
    form::FrmInsPosition dialog;
    dialog.onError = form_.onError;
    switch (choice) {
    case kTunePosition:
        dialog.Label1.Caption = "Tune Value";
        break;
    case kLoadPosition:
        dialog.Label1.Caption = "Load Value";
        break;
    case kAzimuthPosition:
        dialog.Label1.Caption = "Az. Value";
        break;
    case kElevationPosition:
        dialog.Label1.Caption = "El. Value";
        break;
    }
    dialog.atEngineB = choice == kLoadPosition || choice == kElevationPosition;
    dialog.txtInt.MaxLength = kIntegerDigits;
    dialog.txtDec.MaxLength = kDecimals;
    for (form::TextBox* box : {&dialog.txtInt, &dialog.txtDec}) {
        box->KeyDown.attach([this, &dialog](int key) { keyDown(dialog, key); });
        box->KeyPress.attach(form::keepDigits);
    }
    boxes_.showModal(dialog);
}

void PositionEntry::keyDown(form::FrmInsPosition& dialog, int key) {
    if (key == form::TextBox::kEnter) {
        form_.beep();
        store(dialog);
        dialog.unload();
    } else if (key == form::TextBox::kEscape) {
        dialog.unload();
    }
}

void PositionEntry::store(const form::FrmInsPosition& dialog) {
    const std::string text = dialog.txtInt.Text.get() + "." + dialog.txtDec.Text.get();
    const float value = runtime::toSingle(runtime::leadingNumber(text));
    const int choice = form_.bytInsPosSel.value();
    const Side& side = choice == kTunePosition || choice == kAzimuthPosition ? sides_.a : sides_.b;
    const bool rotor = choice == kAzimuthPosition || choice == kElevationPosition;
    const float before = std::exchange(rotor ? side.sngPosRotor : side.sngPos, value);
    showPosition(form_, side);
    if (onDeclared) onDeclared(side, before);
}

} // namespace engine
