#pragma once

#include "config/record_file.h"
#include "engine/approach.h"
#include "form/boxes.h"
#include "platform/sound.h"

namespace memory {

/// The ten memories: storing, recalling, and the fast store.
class MemorySlots {
  public:
    MemorySlots(form::Form1& form, form::Boxes& boxes, config::RecordFile& file, platform::Sound& sound,
                engine::Motion& motion, engine::Approach& approach);

    /// Stores memory n (1 to 10) after a confirmation; asks for its label.
    void lblMem_DblClick(int n);
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
    /// both texts are stored already.
    void fastStore();

    /// A memory that was never stored has no positions, and cannot be recalled.
    bool isStored(int n);
    /// Tool tip, label and selectability of memory n as its texts say. `label` is the whole label.
    void show(int n, const std::string& label);

  private:
    bool recall(int n);
    void select(int n);
    void showToolTip(int n, const std::string& label);
    void subAlarmMemUp();
    bool isRotor() const { return form_.intFunzione == form::kSatelliteRotor; }

    form::Form1& form_;
    form::Boxes& boxes_;
    config::RecordFile& file_;
    platform::Sound& sound_;
    engine::Motion& motion_;
    engine::Approach& approach_;
    engine::Sides sides_;
    int selected_ = 0; // the memory that is selected, 0 for none
};

/// Tells, with a box, when engine A (and with `both` engine B) stands below zero, where no recall may start.
bool standsBelowZero(form::Form1& form, form::Boxes& boxes, bool both);

} // namespace memory
