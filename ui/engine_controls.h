#pragma once

#include "form/form1.h"

#include <array>

namespace ui {

/// The controls of one engine, so that its panel is laid out once for both.
struct EngineControls {
    struct Parameter {
        form::Label& label;
        form::TextBox& box;
    };
    bool mirrored; // stands right of the middle of the window
    form::Label& name;
    form::Label& use;
    std::array<form::Shape*, 4> lamps;
    form::Shape& display;
    form::Label& position;
    form::Label& angle;
    form::Label& received;
    form::Label& unit;
    form::Label& target;
    form::Label& toGo;
    form::Bar& bar;
    form::Button& runBackward;
    form::Button& jogBackward;
    form::Button& stop;
    form::Button& jogForward;
    form::Button& runForward;
    form::Button& slow;
    form::Button& fast;
    form::CheckBox& stepMode;
    form::ComboBox& jogChoice;
    form::Label& otherSpeed; // of the direction that Fast and Slow do not act on
    form::Button& reset;
    Parameter fastSpeed, slowSpeed, steps, units;
    form::Label& step;        // what follows from the parameters
    form::Label& entryNotice; // why an entry was refused
    const char* slowKey;
    const char* fastKey;
    const char* stopKey;
};

EngineControls engineA(form::Form1& form);
EngineControls engineB(form::Form1& form);

} // namespace ui
