#include "memory/table_recall.h"

#include "form/frequency_source.h"
#include "memory/frequency_table.h"
#include "runtime/number.h"

#include <cmath>

namespace memory {

namespace {

constexpr double kHertzPerKilohertz = 1e3;
constexpr std::size_t kInUseCharacters = 10; // what record 54 keeps

} // namespace

TableRecall::TableRecall(form::Form1& form, form::Boxes& boxes, engine::Approach& approach)
    : form_(form), boxes_(boxes), approach_(approach), sides_(form) {}

bool TableRecall::subHiResMem() {
    if (!isDue()) return true;
    recalled_ = form_.frequencyNow;
    const double megahertz = form::megahertzOf(*recalled_);
    const auto positions = positionsAt(form_.hiResMem, megahertz, form_.tuner.curve);
    if (!positions) {
        sayNoEntry(megahertz);
        return true;
    }
    if (standsBelowZero(form_, boxes_, false)) {
        forget();
        return false;
    }
    // Both engines go, or none.
    if (!approach_.canMoveTo(sides_.a, static_cast<float>(positions->a)) ||
        !approach_.canMoveTo(sides_.b, static_cast<float>(positions->b))) {
        forget();
        return false;
    }
    move(sides_.a, positions->a);
    move(sides_.b, positions->b);
    if (subResetPressedMem) subResetPressedMem();
    const std::string shown = runtime::shortestText(megahertz).substr(0, kInUseCharacters);
    form_.lblUsoA.Caption = shown;
    form_.lblUsoB.Caption = shown;
    if (onRecall) onRecall({0, shown, static_cast<float>(positions->a), static_cast<float>(positions->b)});
    return true;
}

void TableRecall::move(const engine::Side& side, double target) {
    const double steps = std::fabs(engine::Approach::stepsTo(side, static_cast<float>(target)));
    // An engine on its way to another frequency's position must not go on to it.
    if (steps < form_.tuner.leastMove && !side.running()) return;
    approach_.moveTo(side, static_cast<float>(target));
}

void TableRecall::sayNoEntry(double megahertz) {
    const auto nearest = nearestEntry(form_.hiResMem, megahertz);
    if (!nearest) {
        form_.notice.tell("The frequency table is empty");
        return;
    }
    const double entry = form_.hiResMem[*nearest].megahertz;
    const double away = std::fabs(entry - megahertz) * form::kHertzPerMegahertz;
    const bool near = away < kHertzPerKilohertz;
    form_.notice.tell("No table entry for " + runtime::shortestText(megahertz) + " MHz: the nearest is " +
                      runtime::shortestText(entry) + ", " +
                      std::to_string(std::llround(near ? away : away / kHertzPerKilohertz)) +
                      (near ? " Hz away" : " kHz away"));
}

} // namespace memory
