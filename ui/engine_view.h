#pragma once

#include "engine/side.h"
#include "ui/adapters.h"
#include "ui/card.h"

namespace ui {

/// The panel of one engine: its name, lamps, position, motion, speeds and parameters. Elements that show a
/// direction keep their side; everything else is mirrored between the two engines.
class EngineView : public Card {
  public:
    struct Keys {
        const char *slow, *fast, *stop;
    };

    EngineView(const engine::Side& side, Adapters& adapters);

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
    QLayout* parameter(const engine::Parameter& parameter, const Words& words, const QString& captions);
    void nameEverything();
    /// Whether it stands right of the middle of the window.
    bool mirrored() const { return side_.motor == 2; }
    PushButton* withKey(PushButton* button, const char* key);

    const engine::Side side_;
    const Keys& keys_;
    Adapters& adapters_;
    QWidget* settings_;
    QWidget* jogChoice_;
    PushButton* stop_ = nullptr;
    QBoxLayout* jogLine_ = nullptr;
    QBoxLayout *motion_ = nullptr, *speeds_ = nullptr; // the places of jogChoice_
    std::vector<form::Control*> named_;
};

} // namespace ui
