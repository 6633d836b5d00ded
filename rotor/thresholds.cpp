#include "rotor/thresholds.h"

#include "config/records.h"
#include "runtime/text.h"

namespace rotor {

namespace {

constexpr float kOffsetsPerDegree = 100;

} // namespace

std::array<Threshold, 6> thresholds(form::Form1& form) {
    namespace record = config::record;
    return {{{form.HScroll2, form.lblHiSpOnAz, record::kThreshold2},
             {form.HScroll4, form.lblHiSpOnEL, record::kThreshold4},
             {form.HScroll6, form.lblAutoRStAz, record::kThreshold6},
             {form.HScroll5, form.lblAutoRStEl, record::kThreshold5},
             {form.HScroll3, form.lblAntiRipEl, record::kThreshold3},
             {form.HScroll1, form.lblAccCurve, record::kThreshold1}}};
}

Thresholds::Thresholds(form::Form1& form, config::RecordFile& file)
    : form_(form), file_(file), all_(thresholds(form)) {
    for (const Threshold& threshold : all_) {
        threshold.bar.Change.attach([this, &threshold] { HScroll_Change(threshold); });
    }
    form_.HScOffsetA.Change.attach([this] { showOffsets(); });
    form_.HScOffsetB.Change.attach([this] { showOffsets(); });
    show();
}

void Thresholds::HScroll_Change(const Threshold& threshold) {
    show();
    file_.write({config::integerRecord(threshold.record, threshold.bar.Value.get())});
}

void Thresholds::show() {
    for (const Threshold& threshold : all_)
        threshold.value.Caption = std::to_string(threshold.bar.Value.get());
    showOffsets();
}

void Thresholds::showOffsets() {
    const auto degrees = [](const form::ScrollBar& bar) {
        return runtime::formatShown(static_cast<float>(bar.Value.get()) / kOffsetsPerDegree);
    };
    form_.lblOffsetA.Caption = degrees(form_.HScOffsetA);
    form_.lblOffsetB.Caption = degrees(form_.HScOffsetB);
}

} // namespace rotor
