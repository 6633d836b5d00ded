#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace platform {

enum class Icon { None, Critical };
enum class Buttons { Ok, OkCancel };

/// Boxes of the platform. Each call runs a nested event loop until the user answers: timers tick and data
/// arrives meanwhile.
class Dialogs {
  public:
    virtual ~Dialogs() = default;
    /// True when the user answered OK.
    virtual bool message(const std::string& text, const std::string& title, Icon icon, Buttons buttons) = 0;
    /// The text, or nothing when the user cancelled. `proposed` is selected.
    virtual std::optional<std::string> input(const std::string& prompt, const std::string& title,
                                             const std::string& proposed) = 0;
    /// A chosen path, or nothing. `filter` is "description|pattern": "Config File (*.cfg)|*.cfg".
    virtual std::optional<std::string> openFile(const std::string& filter) = 0;
    virtual std::optional<std::string> saveFile(const std::string& filter) = 0;
    /// A blue-green-red colour (255 is pure red), or nothing.
    virtual std::optional<std::uint32_t> chooseColour(std::uint32_t initial, const std::string& title) = 0;
};

} // namespace platform
