#include "memory/go_to.h"

#include "engine/stepper.h"
#include "memory/memory_slots.h"
#include "runtime/errors.h"
#include "runtime/number.h"
#include "runtime/text.h"

#include <cmath>

namespace memory {

namespace {

void keepNumber(int& character) {
    const bool digit = character >= '0' && character <= '9';
    const bool sign = character == '-' || character == '.' || character == ',';
    if (!digit && !sign && character != form::TextBox::kBackspace) character = 0;
}

} // namespace

GoTo::GoTo(form::Form1& form, form::Boxes& boxes, engine::Motion& motion, engine::Approach& approach)
    : form_(form), boxes_(boxes), motion_(motion), approach_(approach), sides_(form) {
    form_.mnuGoTo.Click.attach([this] { mnuGoTo_Click(); });
}

void GoTo::mnuGoTo_Click() {
    form::FrmGoTo dialog;
    dialog.onError = form_.onError;
    dialog.lblGoToA.Caption = form_.lblEngineA.Caption;
    dialog.lblGoToB.Caption = form_.lblEngineB.Caption;
    dialog.lblGoToUnitA.Caption = sides_.a.unit();
    dialog.lblGoToUnitB.Caption = sides_.b.unit();
    for (form::TextBox* box : {&dialog.txtGoToA, &dialog.txtGoToB}) {
        box->MaxLength = 7;
        box->KeyPress.attach(keepNumber);
    }
    dialog.cmdGo.Click.attach([this, &dialog] { cmdGo_Click(dialog); });
    dialog.cmdExitGoTo.Click.attach([&dialog] { dialog.unload(); });
    boxes_.showModal(dialog);
}

std::optional<GoTo::Places> GoTo::typed(form::FrmGoTo& dialog) const {
    Places places;
    const std::pair<const form::TextBox&, std::optional<float>&> entries[] = {{dialog.txtGoToA, places.a},
                                                                              {dialog.txtGoToB, places.b}};
    for (const auto& [box, place] : entries) {
        if (box.Text.get().empty()) continue;
        try {
            place = runtime::parseSingle(box.Text.get());
        } catch (const runtime::RunTimeError&) {
            dialog.lblGoToError.Caption = "\"" + box.Text.get() + "\" is not a position. Example: 12.35";
            return std::nullopt;
        }
        if (!isRotor() && std::fabs(*place) >= engine::kEndOfRun) {
            dialog.lblGoToError.Caption = "A position lies between -999 and 999";
            return std::nullopt;
        }
    }
    if (!places.a && !places.b) {
        dialog.lblGoToError.Caption = "Type a position";
        return std::nullopt;
    }
    return places;
}

void GoTo::cmdGo_Click(form::FrmGoTo& dialog) {
    const auto places = typed(dialog);
    if (!places) return;
    form_.notice.Caption = ""; // what stands there afterwards is why nothing moves
    if (isRotor() ? point(*places) : goTo(*places)) {
        dialog.unload();
    } else {
        dialog.lblGoToError.Caption = form_.notice.Caption;
    }
}

bool GoTo::goTo(const Places& places) {
    if (standsBelowZero(form_, boxes_, false)) return false;
    const std::pair<const engine::Side&, std::optional<float>> moves[] = {{sides_.a, places.a},
                                                                          {sides_.b, places.b}};
    // Both engines go, or none.
    for (const auto& [side, place] : moves) {
        if (place && !motion_.canMoveTo(side, *place)) return false;
    }
    if (onMove) onMove();
    for (const auto& [side, place] : moves) {
        if (!place) continue;
        approach_.moveTo(side, *place);
        side.lblUso.Caption = "Manual";
    }
    return true;
}

bool GoTo::point(const Places& places) {
    const auto text = [](std::optional<float> place, const engine::Side& side) {
        return runtime::shortestText(place.value_or(side.sngPosRotor));
    };
    const std::string azimuth = form_.txtPointAz.Text, elevation = form_.txtPointEl.Text;
    form_.txtPointAz.Text = text(places.a, sides_.a);
    form_.txtPointEl.Text = text(places.b, sides_.b);
    form_.cmdPoint.Click.raise();
    if (form_.notice.Caption.get().empty()) return true;
    form_.txtPointAz.Text = azimuth;
    form_.txtPointEl.Text = elevation;
    return false;
}

} // namespace memory
