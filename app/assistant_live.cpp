#include "app/assistant.h"
#include "config/hardware_settings.h"
#include "engine/coil_sequence.h"
#include "runtime/number.h"
#include "runtime/text.h"

#include <utility>

/// What the assistant's pages show of the running program.
namespace app {

void Assistant::look() {
    dialog_.lblOutputs.Caption = "Outputs: " + main_.StatusBar1.Panels(form::kPanelOutputs).get();
    for (Engine* engine : {&a_, &b_}) {
        const engine::Side& side = engine->side;
        engine->shown.lblPosition.Caption =
            runtime::formatShown(isRotor() ? side.sngPosRotor : side.sngPos) + " " + side.unit();
        engine->shown.barTurn.Value = engine->setUp.shareOfTurn();
    }
    const int n = memory();
    const bool stored = !main_.strMemPosA(n).empty();
    dialog_.lblMemory.Caption = stored ? main_.Option[n].ToolTip.get() : "nothing stored";
    dialog_.cmdRecall.Enabled = stored;
    lookAtSource();
}

void Assistant::lookAtSource() {
    if (isRotor()) {
        const std::string& target = main_.lblSource.Caption;
        dialog_.lblProgram.Caption = !target.empty()          ? target
                                     : main_.intSatSource < 1 ? "no program is chosen"
                                                              : "waits for its first target";
        const std::string azimuth = main_.lblAzRx.Caption, elevation = main_.lblElRx.Caption;
        dialog_.lblHeard.Caption = azimuth.empty() ? "nothing heard yet" : azimuth + "°, " + elevation + "°";
        return;
    }
    const form::FrequencySource* chosen = source();
    dialog_.lblProgram.Caption = chosen
                                     ? std::string(chosen->name) + ": " + main_.lblAutoMemConn.Caption.get()
                                     : "no program is chosen";
    dialog_.cmdLink.Caption = main_.sourceConnected() ? "Disconnect" : "Connect";
    dialog_.cmdLink.Enabled = chosen != nullptr;
    const auto hertz = chosen && main_.sourceConnected() ? chosen->hertz() : std::nullopt;
    dialog_.lblHeard.Caption =
        hertz ? runtime::shortestText(form::megahertzOf(*hertz)) + " MHz" : "nothing heard yet";
}

void Assistant::testCoils(Engine& engine, int rounds, int milliseconds) {
    const bool again = coils_.running() && tested_ == &engine && rounds_ == rounds;
    halt();
    if (again) return;
    if (!hardware_.portWorks()) {
        dialog_.lblTrouble.Caption = "The outputs do not work: choose them anew";
        return;
    }
    // The test reaches the board that is chosen, as the test in Hardware and links does.
    if (hardware_.settings().usb != config::kNone && !main_.chkUsbOn.ticked()) main_.chkUsbOn.Value = 1;
    dialog_.lblTrouble.Caption = "";
    advise(engine.shown, "");
    tested_ = &engine;
    rounds_ = rounds;
    engine.hasTurned = true;
    coils_.start(engine.side.motor, rounds, milliseconds);
}

void Assistant::showCoil(int coil) {
    for (Engine* engine : {&a_, &b_}) {
        for (int n = 1; n <= engine::kLamps; ++n)
            engine->shown.lamp[n].FillColor = engine == tested_ && n == coil ? form::kRed : form::kBlack;
    }
}

void Assistant::turned(Engine& engine, engine::Turned turned) {
    halt();
    if (!std::exchange(engine.hasTurned, false)) {
        advise(engine.shown, "Press Turn first");
        return;
    }
    if (turned == engine::Turned::kTrembled) ++engine.trembles;
    const auto swap = engine::wiresToSwap(turned, engine.trembles);
    std::string text;
    if (swap) {
        const int before = engine.side.firstOutput - 1;
        text = "Exchange wires " + std::to_string(before + swap->first) + " and " +
               std::to_string(before + swap->second) + ", then Turn again";
    } else if (turned == engine::Turned::kNotAtAll) {
        text = "Check the supply and the common wire";
    } else {
        text = "The wires are right";
        engine.trembles = 0;
    }
    advise(engine.shown, text, swap);
}

void Assistant::advise(form::AssistantEngine& shown, const std::string& advice,
                       std::optional<engine::WireSwap> swap) {
    shown.wiresToSwap.reset();
    if (swap) shown.wiresToSwap = {swap->first, swap->second};
    shown.lblWires.Caption = advice;
}

void Assistant::chooseOutputs() {
    restore(); // another board must not be switched off for the one that was tested
    main_.mnuHardware.Click.raise();
    boardFound_ = main_.chkUsbOn.ticked();
}

} // namespace app
