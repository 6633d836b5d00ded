#pragma once

#include <map>
#include <string>

namespace platform {

/// The settings of the machine: texts by section and name, which users may edit by hand.
class Settings {
  public:
    using Texts = std::map<std::string, std::string>;

    virtual ~Settings() = default;
    /// Empty where there is no such section. Throws runtime::FileError when the settings cannot be read.
    virtual Texts read(const std::string& section) const = 0;
    /// Sets these names; all others stay. Throws runtime::FileError; all is then as it was.
    virtual void write(const std::string& section, const Texts& texts) = 0;
};

} // namespace platform
