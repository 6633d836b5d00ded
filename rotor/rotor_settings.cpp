#include "rotor/rotor_settings.h"

#include "runtime/errors.h"
#include "runtime/number.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace rotor {

namespace {

constexpr double kLowestAzimuth = -180, kHighestAzimuth = 360;
constexpr double kHighestElevation = 180;
constexpr double kVertical = 90;
constexpr int kLongestSilence = 3600;

std::string number(double value) {
    return runtime::shortestText(static_cast<float>(value));
}

std::optional<double> numberOf(const std::string& text) {
    try {
        return runtime::parseNumber(text);
    } catch (const runtime::RunTimeError&) {
        return std::nullopt;
    }
}

/// The two numbers around a separator.
std::optional<std::pair<double, double>> pairOf(const std::string& text, const std::string& separator) {
    const auto place = text.find(separator);
    if (place == std::string::npos) return std::nullopt;
    const auto first = numberOf(text.substr(0, place));
    const auto second = numberOf(text.substr(place + separator.size()));
    if (!first || !second) return std::nullopt;
    return std::pair(*first, *second);
}

constexpr const char* kBetween = "..";

bool takeAzimuth(RotorSettings& settings, const std::string& text) {
    const auto range = pairOf(text, kBetween);
    if (!range || range->first < kLowestAzimuth || range->first > 0 || range->second > kHighestAzimuth ||
        range->second <= range->first)
        return false;
    settings.ranges.azimuthMin = range->first;
    settings.ranges.azimuthMax = range->second;
    return true;
}

bool takeElevation(RotorSettings& settings, const std::string& text) {
    const auto range = pairOf(text, kBetween);
    if (!range || range->first < 0 || range->second > kHighestElevation || range->second <= range->first)
        return false;
    settings.ranges.elevationMin = range->first;
    settings.ranges.elevationMax = range->second;
    return true;
}

bool takeFollowFrom(RotorSettings& settings, const std::string& text) {
    const auto degrees = numberOf(text);
    if (!degrees || std::fabs(*degrees) > kVertical) return false;
    settings.followFrom = *degrees;
    return true;
}

bool takeSilence(RotorSettings& settings, const std::string& text) {
    const auto seconds = numberOf(text);
    if (!seconds || *seconds < 1 || *seconds > kLongestSilence || *seconds != std::floor(*seconds))
        return false;
    settings.silence = static_cast<int>(*seconds);
    return true;
}

bool takePark(RotorSettings& settings, const std::string& text) {
    const auto place = pairOf(text, ",");
    if (!place || place->first < kLowestAzimuth || place->first > kHighestAzimuth || place->second < 0 ||
        place->second > kHighestElevation)
        return false;
    settings.park = {place->first, place->second};
    return true;
}

} // namespace

const std::array<RotorField, 7> kRotorFields = {{
    {{kRotorSection, "azimuth",
      [](const RotorSettings& s) {
          return number(s.ranges.azimuthMin) + kBetween + number(s.ranges.azimuthMax);
      },
      takeAzimuth, "a range such as 0..360, which begins at -180 to 0 and ends at 360 at most"},
     &form::FrmRotator::txtAzimuth,
     nullptr},
    {{kRotorSection, "elevation",
      [](const RotorSettings& s) {
          return number(s.ranges.elevationMin) + kBetween + number(s.ranges.elevationMax);
      },
      takeElevation, "a range such as 0..90, from 0 up to 180 at most"},
     &form::FrmRotator::txtElevation,
     nullptr},
    {{kRotorSection, "follow-from", [](const RotorSettings& s) { return number(s.followFrom); },
      takeFollowFrom, "an elevation from -90 to 90 degrees"},
     &form::FrmRotator::txtFollowFrom,
     nullptr},
    {{kRotorSection, "silence", [](const RotorSettings& s) { return std::to_string(s.silence); }, takeSilence,
      "whole seconds, 1 to 3600"},
     &form::FrmRotator::txtSilence,
     nullptr},
    {{kRotorSection, "park",
      [](const RotorSettings& s) { return number(s.park.azimuth) + "," + number(s.park.elevation); },
      takePark, "azimuth and elevation such as 180,0"},
     &form::FrmRotator::txtPark,
     nullptr},
    {config::yesOrNo<RotorSettings, &RotorSettings::parkAfterPass>(kRotorSection, "park-after-pass"), nullptr,
     &form::FrmRotator::chkParkAfterPass},
    {config::yesOrNo<RotorSettings, &RotorSettings::holdElevation>(kRotorSection, "hold-elevation"), nullptr,
     &form::FrmRotator::chkHoldElevation},
}};

std::optional<std::string> faultOf(const RotorSettings& settings) {
    const Ranges& ranges = settings.ranges;
    if (settings.park.azimuth < ranges.azimuthMin || settings.park.azimuth > ranges.azimuthMax ||
        settings.park.elevation < ranges.elevationMin || settings.park.elevation > ranges.elevationMax)
        return "The parking place lies outside the range";
    return std::nullopt;
}

RotorSettings readRotorSettings(const platform::Settings& file, std::string& faults) {
    RotorSettings settings;
    config::readFields(file, kRotorFields, settings, faults);
    if (const auto fault = faultOf(settings)) {
        faults += std::string("[") + kRotorSection + "] " + *fault + ". The nearest end is used.\n";
        settings.park = {
            std::clamp(settings.park.azimuth, settings.ranges.azimuthMin, settings.ranges.azimuthMax),
            std::clamp(settings.park.elevation, settings.ranges.elevationMin, settings.ranges.elevationMax)};
    }
    return settings;
}

void writeRotorSettings(platform::Settings& file, const RotorSettings& settings) {
    platform::Settings::Texts texts;
    for (const RotorField& field : kRotorFields)
        texts[field.name] = field.text(settings);
    file.write({{kRotorSection, texts}});
}

} // namespace rotor
