#pragma once

#include <map>
#include <string>

namespace platform {

/// The settings of this computer: texts by section and name. Users may edit them by hand.
class Settings {
  public:
    using Texts = std::map<std::string, std::string>;

    virtual ~Settings() = default;
    /// Empty if there is no such section. Throws runtime::FileError if the settings cannot be read.
    virtual Texts read(const std::string& section) const = 0;
    /// Sets these names, by section; all other names keep their values. If it throws runtime::FileError,
    /// nothing has changed.
    virtual void write(const std::map<std::string, Texts>& sections) = 0;
};

} // namespace platform
