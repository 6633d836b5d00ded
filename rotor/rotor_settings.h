#pragma once

#include "form/dialogs.h"
#include "platform/settings.h"
#include "rotor/direction.h"

#include <array>
#include <optional>
#include <string>

namespace rotor {

/// What is set about the machine, in the section [rotor] of the settings.
struct RotorSettings {
    Ranges ranges;
    double followFrom = -5; // degrees of elevation from which the antenna follows, -90 to 90
    int silence = 10;       // seconds without a word until a target is lost, 1 to 3600
    Direction park{180, 0}; // of the machine
    bool parkAfterPass = false;
    bool holdElevation = false; // the coils of the elevation engine stay on while it stands
    bool operator==(const RotorSettings&) const = default;
};

inline constexpr const char* kRotorSection = "rotor";
inline constexpr const char* kYes = "yes";
inline constexpr const char* kNo = "no";

/// One field: its name in the file, how it is read and written, and its place in the dialog.
struct RotorField {
    const char* name;
    std::string (*text)(const RotorSettings&);
    /// Takes a text; false, and nothing taken, when it is none for this field.
    bool (*take)(RotorSettings&, const std::string& text);
    const char* shape; // of a text that would be taken, in words
    form::TextBox form::FrmRotator::*box;
    form::CheckBox form::FrmRotator::*check; // in its place, where the field is yes or no
};

extern const std::array<RotorField, 7> kRotorFields;

/// Why these settings do not fit together; nothing when they do.
std::optional<std::string> faultOf(const RotorSettings& settings);

/// The settings of the file. A field that is invalid keeps its default and is named in `faults`, a line each.
RotorSettings readRotorSettings(const platform::Settings& file, std::string& faults);
void writeRotorSettings(platform::Settings& file, const RotorSettings& settings);

} // namespace rotor
