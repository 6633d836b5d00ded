#include "config/tuner_settings.h"

#include "runtime/number.h"

#include <map>

namespace config {

namespace {

using form::TunerSettings;

constexpr const char* kYes = "yes";
constexpr const char* kNo = "no";
constexpr const char* kStraight = "straight";
constexpr const char* kSmooth = "smooth";

template <bool TunerSettings::*kFlag>
std::string flagText(const TunerSettings& settings) {
    return settings.*kFlag ? kYes : kNo;
}

template <bool TunerSettings::*kFlag>
bool takeFlag(TunerSettings& settings, const std::string& text) {
    if (text != kYes && text != kNo) return false;
    settings.*kFlag = text == kYes;
    return true;
}

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

constexpr const char* kYesOrNo = "yes or no";
constexpr const char* kThousand = "a whole number from 0 to 1000";
constexpr const char* kPlay = "a whole number from 0 to 10000";

} // namespace

const std::array<TunerField, 8> kTunerFields = {{
    {"recall", "exact", flagText<&TunerSettings::exact>, takeFlag<&TunerSettings::exact>, kYesOrNo},
    {"recall", "exact-khz", numberText<&TunerSettings::exactKilohertz>,
     takeNumber<&TunerSettings::exactKilohertz, 1, 1000>, "a whole number from 1 to 1000"},
    {"recall", "semi-auto-khz", numberText<&TunerSettings::semiAutoKilohertz>,
     takeNumber<&TunerSettings::semiAutoKilohertz, 0, 1000>, kThousand},
    {"recall", "wait-while-transmitting", flagText<&TunerSettings::waitWhileTransmitting>,
     takeFlag<&TunerSettings::waitWhileTransmitting>, kYesOrNo},
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
    std::map<std::string, platform::Settings::Texts> sections;
    for (const TunerField& field : kTunerFields) {
        if (!sections.contains(field.section)) sections[field.section] = file.read(field.section);
        const auto& texts = sections[field.section];
        const auto text = texts.find(field.name);
        if (text == texts.end() || field.take(settings, text->second)) continue;
        faults += std::string("[") + field.section + "] " + field.name + ": \"" + text->second +
                  "\" is not " + field.shape + "\n";
    }
    return settings;
}

void writeTunerSettings(platform::Settings& file, const TunerSettings& before,
                        const TunerSettings& settings) {
    std::map<std::string, platform::Settings::Texts> sections;
    for (const TunerField& field : kTunerFields) {
        const std::string text = field.text(settings);
        if (text != field.text(before)) sections[field.section][field.name] = text;
    }
    file.write(sections);
}

} // namespace config
