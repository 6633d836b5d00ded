#pragma once

#include "engine/motion.h"
#include "form/assistant.h"

#include <optional>
#include <string>

namespace app {

/// One engine in the set-up assistant: its motor and its speeds. What is typed in is tried at once, and
/// stored by the parameters' own entries when the page is left by Next.
class EngineSetUp {
  public:
    /// All arguments outlive this object.
    EngineSetUp(form::Form1& main, form::AssistantEngine& shown, const engine::Side& side,
                engine::Motion& motion, form::Timer& trial);

    /// A page opens: fills the entries, with proposals for what is 0, and remembers what it finds.
    void open();
    /// The engine has again what the page found. Nothing was stored. Its position counts the steps made since
    /// in the units found.
    void restore();
    /// What is wrong with the entries; empty for nothing.
    std::string fault() const;
    /// Per cent of a turn that the shaft stands from where the program found it, 0 to 99.
    int shareOfTurn() const;
    /// Store the entries, which are valid. They return why one was refused; an empty text if none was.
    std::string storeMotor();
    std::string storeSpeeds();

    void cmdOnce_Click();
    void cmdMove_Click();
    void cmdCorrect_Click();
    /// Runs faster and faster, until endTrial.
    void beginTrial(int direction);
    /// The button is up: proposes speeds.
    void endTrial();
    /// The next shorter period of the trial.
    void trial_Timer();

    /// Called with what is wrong with an entry that was to be tried; empty for nothing.
    std::function<void(const std::string&)> tell;
    /// Called before the engine moves.
    std::function<void()> onMove;

  private:
    struct Values {
        int steps, slow, fast; // 0: none
        float units;
        bool half;
    };
    Values now() const;
    /// Uses the values without storing them.
    void put(const Values& values) const;
    /// The entries; throws runtime::ObjectError with what is wrong, and gives that entry the focus.
    Values typed() const;
    /// Uses the entries; false, and told, if one is invalid.
    bool use();
    /// Slowly.
    void move(int direction, double distance);
    /// As a user enters it: by the label's double-click. False if it was refused.
    static bool enter(const engine::Parameter& parameter, const std::string& text);
    std::string name() const { return side_.lblEngine.Caption; }
    /// In the units of the function.
    float& position() const;

    form::Form1& main_;
    form::AssistantEngine& shown_;
    const engine::Side& side_;
    engine::Motion& motion_;
    form::Timer& trial_;

    Values found_{};
    float positionFound_ = 0;
    std::int64_t halfStepsFound_ = 0;
    std::optional<float> moved_; // the units per revolution that the last measured move was made with
    int period_ = 0;             // of the trial under way, in milliseconds; 0: none
};

} // namespace app
