#pragma once

#include "config/record_file.h"
#include "engine/approach.h"
#include "form/boxes.h"
#include "platform/sound.h"

#include <functional>
#include <optional>
#include <string>

namespace memory {

/// Positions that a recall sends the engines to.
struct Recalled {
    int memory = 0;    // 1 to 10; 0 for the frequency table
    std::string label; // what the window shows as in use
    float a = 0, b = 0;
};

/// What a memory holds, as its three records have it; empty texts for one that was never stored.
struct Contents {
    std::string posA, posB, label;
};

/// The ten memories: storing, recalling, and the fast store.
class MemorySlots {
  public:
    MemorySlots(form::Form1& form, form::Boxes& boxes, config::RecordFile& file, platform::Sound& sound,
                engine::Motion& motion, engine::Approach& approach);

    /// Stores memory n (1 to 10) after a confirmation; asks for its label.
    void lblMem_DblClick(int n);
    /// Asks for another label of memory n; Cancel keeps the old one.
    void rename(int n);
    /// Memory n becomes one that was never stored.
    void clear(int n);
    Contents contents(int n);
    /// Writes the three records of memory n, and shows it.
    void put(int n, const Contents& contents);
    /// Called when the user has changed memory n; `what` names the change.
    std::function<void(int n, const Contents& before, const std::string& what)> onChange;
    /// Recalls memory n (1 to 10), and selects it. A memory that cannot be recalled is not selected. The
    /// memories hold positions of the tuner functions: in Satellite Rotor neither this nor storing acts.
    void Option_Click(int n);
    /// What the automatic recall does: recalls memory n once and selects it. False when it was refused.
    bool recallAndSelect(int n);
    /// No memory is selected any longer.
    void subResetPressedMem();
    /// Stops both engines; unless a start keeps the loaded positions, those in user units become 0 and
    /// no memory is in use. Azimuth and elevation stay.
    void subAzzeraLabel();
    /// Stores the positions into the selected memory, if there is one; its label stays. Does nothing when
    /// both texts are stored already and no coil was energised until now.
    void fastStore(bool energised);

    /// What a recall of memory n goes to. Precondition: it is stored.
    Recalled recalled(int n);
    /// Called when a recall has begun.
    std::function<void(const Recalled&)> onRecall;

    /// The label of memory n with all characters that are kept; its list entry shows the first ones.
    const std::string& label(int n) const { return labels_.at(static_cast<std::size_t>(n - 1)); }
    /// A memory that was never stored has no positions, and cannot be recalled.
    bool isStored(int n);
    /// Tool tip, label and selectability of memory n as its texts say. `label` is the whole label.
    void show(int n, const std::string& label);

  private:
    bool recall(int n);
    void select(int n);
    /// The label that the user types, at most what is kept of it; empty for Cancel.
    std::optional<std::string> askLabel(const std::string& proposed);
    void showToolTip(int n, const std::string& label);
    void subAlarmMemUp();
    void changed(int n, const Contents& before, const char* how);
    bool isRotor() const { return form_.intFunzione == form::kSatelliteRotor; }

    form::Form1& form_;
    form::Boxes& boxes_;
    config::RecordFile& file_;
    platform::Sound& sound_;
    engine::Motion& motion_;
    engine::Approach& approach_;
    engine::Sides sides_;
    std::array<std::string, form::Form1::kMemories> labels_;
    int selected_ = 0; // the memory that is selected, 0 for none
};

/// Tells, with a box, when engine A (and with `both` engine B) stands below zero, where no recall may start.
bool standsBelowZero(form::Form1& form, form::Boxes& boxes, bool both);

} // namespace memory
