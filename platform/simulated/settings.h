#pragma once

#include "platform/settings.h"

namespace simulated {

/// Settings in memory.
class Settings : public platform::Settings {
  public:
    Texts read(const std::string& section) const override {
        const auto found = sections.find(section);
        return found == sections.end() ? Texts() : found->second;
    }
    void write(const std::map<std::string, Texts>& changes) override {
        for (const auto& [section, texts] : changes) {
            for (const auto& [name, text] : texts)
                sections[section][name] = text;
        }
    }

    std::map<std::string, Texts> sections;
};

} // namespace simulated
