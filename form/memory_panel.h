#pragma once

#include "form/controls.h"
#include "form/timer.h"
#include "runtime/checked.h"

#include <array>
#include <functional>

namespace form {

/// The ten memories, and what recalls them.
struct MemoryPanel {
    static constexpr int kMemories = 10;
    static constexpr int kPollMilliseconds = 500;
    static constexpr int kBandChangeMilliseconds = 3000;

    MemoryPanel(Form& form, platform::Timers& timers)
        : form_(form), tmrFastMem(form, "tmrFastMem", timers, kPollMilliseconds),
          tmrBandCh(form, "tmrBandCh", timers, kBandChangeMilliseconds) {
        lblBandCh.Visible = false;
    }

  private:
    Form& form_;
    std::array<std::string, kMemories> posA_, posB_;

  public:
    /// Stored positions of memory n (1 to 10) as texts in the format "000.00"; empty when never stored.
    std::string& strMemPosA(int n) { return posA_.at(static_cast<std::size_t>(n - 1)); }
    std::string& strMemPosB(int n) { return posB_.at(static_cast<std::size_t>(n - 1)); }

    /// The user's commands for memory n beside recalling and storing.
    std::function<void(int n)> onRenameMemory, onClearMemory;

    std::string strMemLabel;       // the label typed last
    runtime::Int16 intMemConfirm;  // the answer of the last confirmation, 1 = OK
    runtime::Int16 intMemSlowDist; // position units below which a recall moves slowly
    bool bolAutoMemByJog = false;  // a jog has switched automatic recall off
    std::string strFreqPrev;       // the source's text at the end of the previous tick
    std::string strFreqKey;        // the key compared with the labels: MHz digits or the band name
    bool bolFreqChanged = false;
    bool bolAutoOffFire = false; // the automatic outputs-off has fired
    bool bolBandMode = false;

    ControlArray<OptionButton, kMemories> Option{form_, "Option"};
    ControlArray<Label, kMemories> lblMem{form_, "lblMem"}; // the numbers; a double-click stores
    ControlArray<Label, kMemories> lblFr{form_, "lblFr"};   // the first 6 characters of the labels

    CheckBox chkAutoMemOnOff{form_, "chkAutoMemOnOff", "A&uto"};
    Label lblAutoMemOnOff{form_, "lblAutoMemOnOff", "Manual"};
    CheckBox chkFastMemory{form_, "chkFastMemory", "Fast Memory Store"};
    CheckBox chkBandMode{form_, "chkBandMode", "&Band Mode"};
    CheckBox chkExact{form_, "chkExact", "E&xact"}; // the memory nearest in frequency
    Label lblBandMode{form_, "lblBandMode", "Frequency Mode"};
    ScrollBar HScrMemSpeedCh{form_, "HScrMemSpeedCh", {0, 100}};
    Label lblMemSpeedCh{form_, "lblMemSpeedCh", "0"};
    Label lblBandCh{form_, "lblBandCh", "Band Changed!"};
    Timer tmrFastMem; // polls the frequency
    Timer tmrBandCh;  // hides "Band Changed!"
};

} // namespace form
