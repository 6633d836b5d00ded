#include "config/tuner_settings.h"

#include "runtime/number.h"

#include <map>

namespace config {

namespace {

using form::TunerSettings;

constexpr const char* kStraight = "straight";
constexpr const char* kSmooth = "smooth";

template <int TunerSettings::*kNumber>
std::string numberText(const TunerSettings& settings) {
    return std::to_string(settings.*kNumber);
}

template <int TunerSettings::*kNumber, int kLeast, int kMost>
bool takeNumber(TunerSettings& settings, const std::string& text) {
    try {
        const double value = runtime::parseNumber(text);
        if (value < kLeast || value > kMost || value != static_cast<int>(value)) return false;
        settings.*kNumber = static_cast<int>(value);
        return true;
    } catch (const runtime::RunTimeError&) {
        return false;
    }
}

std::string curveText(const TunerSettings& settings) {
    return settings.curve == form::TableCurve::kLinear ? kStraight : kSmooth;
}

bool takeCurve(TunerSettings& settings, const std::string& text) {
    if (text != kStraight && text != kSmooth) return false;
    settings.curve = text == kStraight ? form::TableCurve::kLinear : form::TableCurve::kMonotoneCubic;
    return true;
}

constexpr const char* kThousand = "a whole number from 0 to 1000";
constexpr const char* kPlay = "a whole number from 0 to 10000";

} // namespace

const std::array<SettingField<TunerSettings>, 9> kTunerFields = {{
    yesOrNo<TunerSettings, &TunerSettings::useTable>("recall", "table"),
    yesOrNo<TunerSettings, &TunerSettings::exact>("recall", "exact"),
    {"recall", "exact-khz", numberText<&TunerSettings::exactKilohertz>,
     takeNumber<&TunerSettings::exactKilohertz, 1, 1000>, "a whole number from 1 to 1000"},
    {"recall", "semi-auto-khz", numberText<&TunerSettings::semiAutoKilohertz>,
     takeNumber<&TunerSettings::semiAutoKilohertz, 0, 1000>, kThousand},
    yesOrNo<TunerSettings, &TunerSettings::waitWhileTransmitting>("recall", "wait-while-transmitting"),
    {"table", "curve", curveText, takeCurve, "straight or smooth"},
    {"table", "least-move", numberText<&TunerSettings::leastMove>,
     takeNumber<&TunerSettings::leastMove, 0, 1000>, kThousand},
    {"engine-1", "backlash", numberText<&TunerSettings::backlash1>,
     takeNumber<&TunerSettings::backlash1, 0, 10000>, kPlay},
    {"engine-2", "backlash", numberText<&TunerSettings::backlash2>,
     takeNumber<&TunerSettings::backlash2, 0, 10000>, kPlay},
}};

TunerSettings readTunerSettings(const platform::Settings& file, std::string& faults) {
    TunerSettings settings;
    readFields(file, kTunerFields, settings, faults);
    return settings;
}

void writeTunerSettings(platform::Settings& file, const TunerSettings& before,
                        const TunerSettings& settings) {
    std::map<std::string, platform::Settings::Texts> sections;
    for (const SettingField<TunerSettings>& field : kTunerFields) {
        const std::string text = field.text(settings);
        if (text != field.text(before)) sections[field.section][field.name] = text;
    }
    file.write(sections);
}

} // namespace config
