#pragma once

#include "form/tuner_settings.h"
#include "platform/settings.h"

#include <array>
#include <string>

namespace config {

/// One of the tuner's settings: where it stands in the file, and how it is read and written.
struct TunerField {
    const char* section;
    const char* name;
    std::string (*text)(const form::TunerSettings&);
    /// Takes a text; false, and nothing taken, when it is none for this field.
    bool (*take)(form::TunerSettings&, const std::string& text);
    const char* shape; // of a text that would be taken, in words
};

extern const std::array<TunerField, 8> kTunerFields;

/// The settings of the file. A field that is invalid keeps its default and is named in `faults`, a line each.
form::TunerSettings readTunerSettings(const platform::Settings& file, std::string& faults);
/// Writes what differs from `before`. Throws runtime::FileError.
void writeTunerSettings(platform::Settings& file, const form::TunerSettings& before,
                        const form::TunerSettings& settings);

} // namespace config
