#pragma once

#include "form/form1.h"
#include "ui/adapters.h"
#include "ui/card.h"

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
    form::Button& runBackward;
    form::Button& jogBackward;
    form::Button& stop;
    form::Button& jogForward;
    form::Button& runForward;
    form::Button& slow;
    form::Button& fast;
    form::CheckBox& stepMode;
    form::Button& reset;
    Parameter fastSpeed, slowSpeed, steps, units;
    form::Label& entryNotice; // why an entry was refused
    const char* slowKey;
    const char* fastKey;
    const char* stopKey;
};

EngineControls engineA(form::Form1& form);
EngineControls engineB(form::Form1& form);

/// The panel of one engine: its name, lamps, position, motion, speeds and parameters. Elements that show a
/// direction keep their side; everything else is mirrored between the two engines.
class EngineView : public Card {
  public:
    EngineView(const EngineControls& engine, Adapters& adapters);

  private:
    void layOutHeader();
    void layOutDisplay();
    void layOutMotion();
    void layOutSpeeds();
    void layOutParameters();
    QLayout* parameter(const EngineControls::Parameter& parameter, const Words& words,
                       const QString& captions);
    void nameEverything();
    PushButton* withKey(PushButton* button, const char* key);

    EngineControls engine_;
    Adapters& adapters_;
    std::vector<form::Control*> named_;
};

} // namespace ui
