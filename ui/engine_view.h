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

/// The panel of one engine: its name, lamps, position, motion, speeds and parameters. Elements that show a
/// direction keep their side; everything else is mirrored between the two engines.
class EngineView : public Card {
  public:
    EngineView(const EngineControls& engine, Adapters& adapters);

    /// Speeds and parameters, which a small window shows elsewhere.
    QWidget* settings() { return settings_; }
    PushButton* stop() { return stop_; }
    /// Leaves room for two engines side by side in a small window.
    void setCompact(bool compact);

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void layOutHeader();
    void layOutDisplay();
    void layOutMovement(Display& display);
    void layOutMotion();
    void layOutJogChoice();
    void layOutSpeeds(QBoxLayout& place);
    QWidget* notices();
    void layOutParameters(QBoxLayout& place);
    QLayout* parameter(const EngineControls::Parameter& parameter, const Words& words,
                       const QString& captions);
    void nameEverything();
    PushButton* withKey(PushButton* button, const char* key);

    EngineControls engine_;
    Adapters& adapters_;
    QWidget* settings_;
    QWidget* jogChoice_;
    PushButton* stop_ = nullptr;
    QBoxLayout* jogLine_ = nullptr;
    QBoxLayout *motion_ = nullptr, *speeds_ = nullptr; // the places of jogChoice_
    std::vector<form::Control*> named_;
};

} // namespace ui
