#pragma once

#include "config/setting_field.h"
#include "form/dialogs.h"
#include "platform/settings.h"
#include "rotor/direction.h"

#include <array>
#include <optional>
#include <string>

namespace rotor {

/// The rotator's settings, in the section [rotor] of twinstep.ini.
struct RotorSettings {
    Ranges ranges;
    double followFrom = -5; // the antenna follows targets above this elevation, -90 to 90 degrees
    int silence = 10;       // seconds of silence until a target is lost, 1 to 3600
    Direction park{180, 0}; // in degrees of the rotator
    bool parkAfterPass = false;
    bool holdElevation = false; // the coils of the elevation engine stay on while the engine stands
    bool operator==(const RotorSettings&) const = default;
};

inline constexpr const char* kRotorSection = "rotor";
/// One field, and its control in the dialog.
struct RotorField : config::SettingField<RotorSettings> {
    form::TextBox form::FrmRotator::*box;
    form::CheckBox form::FrmRotator::*check; // instead of a text box, for yes-or-no fields
};

extern const std::array<RotorField, 7> kRotorFields;

/// Why these settings do not go together; empty if they do.
std::optional<std::string> faultOf(const RotorSettings& settings);

/// Reads the settings from the file. An invalid field keeps its default and is named in `faults`, one line
/// each.
RotorSettings readRotorSettings(const platform::Settings& file, std::string& faults);
void writeRotorSettings(platform::Settings& file, const RotorSettings& settings);

} // namespace rotor
