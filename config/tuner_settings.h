#pragma once

#include "config/setting_field.h"
#include "form/tuner_settings.h"
#include "platform/settings.h"

#include <array>
#include <string>

namespace config {

extern const std::array<SettingField<form::TunerSettings>, 9> kTunerFields;

/// The settings of the file. A field that is invalid keeps its default and is named in `faults`, a line each.
form::TunerSettings readTunerSettings(const platform::Settings& file, std::string& faults);
/// Writes what differs from `before`. Throws runtime::FileError.
void writeTunerSettings(platform::Settings& file, const form::TunerSettings& before,
                        const form::TunerSettings& settings);

} // namespace config
