#pragma once

#include "engine/side.h"
#include "form/boxes.h"
#include "form/frequency_source.h"
#include "memory/memory_slots.h"
#include "memory/table_recall.h"
#include "platform/sound.h"

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace memory {

/// The amateur band that a two-character key stands for ("7." gives "40"); any other key stays itself.
std::string bandName(const std::string& key);

/// Mode and its caption as chkBandMode stands.
void applyBandMode(form::Form1& form);

/// Follows the transceiver: each tick of tmrFastMem turns the frequency into a key and, once it has stayed
/// for a whole tick, recalls the first memory whose label matches.
class AutomaticRecall {
  public:
    AutomaticRecall(form::Form1& form, form::Boxes& boxes, MemorySlots& slots, TableRecall& table,
                    config::RecordFile& file, platform::Sound& sound);

    void tmrFastMem_Timer();
    void tmrBandCh_Timer();
    void chkAutoMemOnOff_Click();
    void chkAutoMemOnOff_MouseDown();
    void chkBandMode_Click();
    void chkExact_Click();
    void chkHRM_Click();
    /// The user has begun to tune by hand: no recall until the frequency moves on, or Auto is ticked anew.
    void semiAuto();
    void HScrMemSpeedCh_Change();

    /// The memories that belong to the source's frequency, as the modes stand; automatic recall takes the
    /// first that is not in use.
    std::vector<int> fitting(const form::FrequencySource& source);
    /// The caption of lblAutoMemOnOff while the user tunes by hand.
    static constexpr const char* kSemiAuto = "Semi Auto";

    /// Arms or disarms the automatic outputs-off, once a tick.
    std::function<void()> armOutputsOff;
    /// Brings the chosen source to the front and names it in the status bar.
    std::function<void()> subSelTunerProgr;
    /// The tuner's settings are to be kept.
    std::function<void()> keepSettings;
    /// The program chosen as source of the frequency; null for none.
    std::function<form::FrequencySource*()> chosenSource;

  private:
    /// Derives the key from the chosen source. False when it has nothing to say and the tick ends here.
    bool readSource(form::FrequencySource& source);
    bool frequencyChanged(const form::FrequencySource* source) const;
    void announceChange(const std::string& now);
    void signalBandChange();
    void readFrequency(const form::FrequencySource* source);
    void recallStep(const form::FrequencySource* source);
    /// The memory that belongs to the frequency and is not in use; 0 for none.
    int memoryToRecall();
    int nearestMemory(const std::optional<std::int64_t>& frequency);
    /// Whether what the user tunes by hand is left alone.
    bool staysSemiAuto();
    /// Whether a recall that is due has to wait.
    bool waits(const form::FrequencySource* source);
    bool matches(int n, const std::string& key);
    bool isInUse(int n);
    void subAllarme();

    form::Form1& form_;
    form::Boxes& boxes_;
    MemorySlots& slots_;
    TableRecall& table_;
    config::RecordFile& file_;
    platform::Sound& sound_;
    engine::Sides sides_;
    std::optional<std::int64_t> semiAutoHertz_; // where the user began to tune by hand
};

} // namespace memory
