#pragma once

#include "engine/approach.h"
#include "form/boxes.h"
#include "memory/automatic_recall.h"
#include "memory/fit.h"

#include <array>
#include <optional>

namespace memory {

/// The line in the radio's card: whether the antenna fits the frequency, and what is in the way.
class FitLine {
  public:
    FitLine(form::Form1& form, form::Boxes& boxes, MemorySlots& slots, TableRecall& table,
            AutomaticRecall& recall, const engine::Approach& approach);

    void show();
    /// Another function or configuration: its memories were not recalled.
    void forget() { last_.reset(); }

  private:
    Fit state();
    void readSource(Fit& fit, const form::FrequencySource* source);
    void readMotion(Fit& fit);
    std::optional<Place> wanted(const form::FrequencySource& source);
    Place placeOf(const Recalled& recalled) const;
    Fit::Hold hold(const form::FrequencySource& source, const Place& wanted) const;
    /// Whether both engines stand within `a` and `b`, to the step that a recall may miss them by.
    bool standsAt(float a, float b) const;
    void goOn();

    form::Form1& form_;
    form::Boxes& boxes_;
    MemorySlots& slots_;
    TableRecall& table_;
    AutomaticRecall& recall_;
    const engine::Approach& approach_;
    engine::Sides sides_;
    std::optional<Recalled> last_;
    std::optional<std::array<float, 2>> ended_; // where the last recall left the engines
};

} // namespace memory
