#pragma once

#include "ui/adapters.h"
#include "ui/card.h"
#include "ui/engine_controls.h"

namespace ui {

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
