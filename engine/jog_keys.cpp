#include "engine/jog_keys.h"

#include <algorithm>

namespace engine {

namespace {

constexpr int kLowerToUpper = -32; // a key's code is that of the upper-case letter

bool isLetter(const std::string& stored, char letter) {
    return stored.size() == 1 && stored.front() + kLowerToUpper == letter;
}

} // namespace

JogKeys::JogKeys(form::Form1& form, Motion& motion)
    : form_(form), motion_(motion), sides_(form), keys_{{{&sides_.a, form::kForward, &form.strCW1},
                                                         {&sides_.a, form::kBackward, &form.strCCW1},
                                                         {&sides_.b, form::kForward, &form.strCW2},
                                                         {&sides_.b, form::kBackward, &form.strCCW2}}} {}

JogKeys::Key* JogKeys::keyOf(char letter) {
    const auto has = [letter](const Key& key) { return isLetter(*key.letter, letter); };
    const auto count = std::ranges::count_if(keys_, has);
    if (count == 1) return &*std::ranges::find_if(keys_, has);
    if (count > 1) {
        form_.notice.tell(std::string("Key ") + letter +
                          " is set for more than one move: see General Settings");
    }
    return nullptr;
}

bool JogKeys::otherIsHeld(const Key& key) const {
    return std::ranges::any_of(
        keys_, [&](const Key& other) { return &other != &key && other.side == key.side && other.held; });
}

void JogKeys::keyDown(char letter, bool shift) {
    Key* const key = keyOf(letter);
    if (!key || key->held) return;
    key->held = true;
    if (otherIsHeld(*key)) {
        motion_.release(*key->side);
    } else {
        start(*key, shift);
    }
}

void JogKeys::start(Key& key, bool shift) {
    const Side& side = *key.side;
    fastBefore_.at(static_cast<std::size_t>(side.motor - 1)) = side.bolVelAlta;
    if (form_.chkAutoMemOnOff.ticked() && onSemiAuto) onSemiAuto();
    if (form_.intFunzione == form::kSatelliteRotor) {
        (key.direction == form::kForward ? side.cmdJogForward : side.cmdJogBackward).MouseDown.raise();
    } else {
        side.bolMem = false; // an engine that runs already goes on as long as the key is down
        const bool runs = side.timer(key.direction).Enabled && !motion_.movesByIncrement(side);
        if (!runs && !motion_.jog(side, key.direction)) return;
        side.lblUso.Caption = "Manual";
    }
    // An increment goes on after the release, at the speed that is selected.
    if (!side.running() || motion_.movesByIncrement(side)) return;
    if (shift) {
        motion_.fast(side);
    } else {
        motion_.slow(side);
    }
}

void JogKeys::keyUp(char letter) {
    for (Key& key : keys_) {
        if (key.held && isLetter(*key.letter, letter)) release(key);
    }
}

void JogKeys::releaseAll() {
    for (Key& key : keys_) {
        if (key.held) release(key);
    }
}

void JogKeys::release(Key& key) {
    key.held = false;
    // The engine stands already where both letters were down.
    if (otherIsHeld(key)) return;
    const Side& side = *key.side;
    if (motion_.movesByIncrement(side)) return;
    if (form_.intFunzione == form::kSatelliteRotor) {
        (key.direction == form::kForward ? side.cmdJogForward : side.cmdJogBackward).MouseUp.raise();
    } else {
        motion_.release(side);
    }
    if (fastBefore_.at(static_cast<std::size_t>(side.motor - 1))) {
        motion_.fast(side);
    } else {
        motion_.slow(side);
    }
}

} // namespace engine
