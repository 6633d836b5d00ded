#include "radio/frequency_note.h"

#include "engine/movement.h"

#include <array>

namespace radio {

namespace {

struct Band {
    std::int64_t from, to; // kilohertz
    const char* name;
};

constexpr std::array<Band, 15> kBands = {{{1800, 2000, "160 m"},
                                          {3500, 4000, "80 m"},
                                          {5250, 5450, "60 m"},
                                          {7000, 7300, "40 m"},
                                          {10100, 10150, "30 m"},
                                          {14000, 14350, "20 m"},
                                          {18068, 18168, "17 m"},
                                          {21000, 21450, "15 m"},
                                          {24890, 24990, "12 m"},
                                          {28000, 29700, "10 m"},
                                          {50000, 54000, "6 m"},
                                          {70000, 70500, "4 m"},
                                          {144000, 148000, "2 m"},
                                          {420000, 450000, "70 cm"},
                                          {1240000, 1300000, "23 cm"}}};

} // namespace

std::string amateurBand(std::int64_t hertz) {
    constexpr std::int64_t kHertz = 1000;
    for (const Band& band : kBands) {
        if (hertz >= band.from * kHertz && hertz <= band.to * kHertz) return band.name;
    }
    return {};
}

void showFrequencyNote(form::Form1& form, const form::FrequencySource* source) {
    const auto hertz = source && form.sourceConnected() ? source->hertz() : std::nullopt;
    std::string note;
    if (hertz) {
        note = source->unit;
        if (const std::string band = amateurBand(*hertz); !band.empty()) note += ", " + band;
        if (source->isOld()) note += ", " + engine::timeText(source->silence()) + " ago";
    } else if (source && !source->label.Caption.get().empty()) {
        note = std::string(source->unit) + ", not current";
    }
    form.lblFreqNote.Caption = note;
    if (source) source->label.Enabled = hertz && !source->isOld();
}

} // namespace radio
