#pragma once

#include "engine/approach.h"
#include "form/boxes.h"
#include "form/form1.h"
#include "memory/memory_slots.h"

#include <cstdint>
#include <optional>

namespace memory {

/// Recalls positions from the frequency table, in the place of the ten memories.
class TableRecall {
  public:
    TableRecall(form::Form1& form, form::Boxes& boxes, engine::Approach& approach);

    /// The frequency has settled: both engines go where the table says, once for each frequency. Outside all
    /// stretches nothing moves, and the notice says how far the next entry is. False when the recall was
    /// refused, after a box.
    bool subHiResMem();
    /// Whether the next call would recall.
    bool isDue() const { return form_.frequencyNow && form_.frequencyNow != recalled_; }
    /// The next call recalls even at the same frequency.
    void forget() { recalled_.reset(); }

    /// Called to deselect the memory: fast store must not put the table's positions into it.
    std::function<void()> subResetPressedMem;
    /// Called when a recall has begun.
    std::function<void(const Recalled&)> onRecall;

  private:
    void move(const engine::Side& side, double target);
    void sayNoEntry(double megahertz);

    form::Form1& form_;
    form::Boxes& boxes_;
    engine::Approach& approach_;
    engine::Sides sides_;
    std::optional<std::int64_t> recalled_; // hertz of the last recall
};

} // namespace memory
