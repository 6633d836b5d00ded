#pragma once

#include "platform/settings.h"

#include <map>
#include <string>

namespace config {

/// One field of `Settings`: its place in "twinstep.ini", and how it is read and written.
template <class Settings>
struct SettingField {
    const char* section;
    const char* name;
    std::string (*text)(const Settings&);
    /// Reads a text into the settings; returns false and changes nothing if the text is invalid.
    bool (*take)(Settings&, const std::string& text);
    const char* shape; // describes a valid text
};

inline constexpr const char* kYes = "yes";
inline constexpr const char* kNo = "no";

/// A field that is "yes" or "no".
template <class Settings, bool Settings::*kFlag>
constexpr SettingField<Settings> yesOrNo(const char* section, const char* name) {
    return {section, name,
            [](const Settings& settings) -> std::string { return settings.*kFlag ? kYes : kNo; },
            [](Settings& settings, const std::string& text) {
                if (text != kYes && text != kNo) return false;
                settings.*kFlag = text == kYes;
                return true;
            },
            "yes or no"};
}

/// Reads all fields into `settings`. An invalid field keeps its default and is named in `faults`, one line
/// each.
template <class Settings, class Fields>
void readFields(const platform::Settings& file, const Fields& fields, Settings& settings,
                std::string& faults) {
    std::map<std::string, platform::Settings::Texts> sections;
    for (const SettingField<Settings>& field : fields) {
        if (!sections.contains(field.section)) sections[field.section] = file.read(field.section);
        const auto& texts = sections[field.section];
        const auto text = texts.find(field.name);
        if (text == texts.end() || field.take(settings, text->second)) continue;
        faults += std::string("[") + field.section + "] " + field.name + ": \"" + text->second +
                  "\" is not " + field.shape + ". The default is used.\n";
    }
}

} // namespace config
