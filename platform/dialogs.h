#pragma once

#include <cstddef>
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
    /// The text entered; empty if the user cancelled. `proposed` is preset and selected. No more than
    /// `longest` characters can be typed; 0 for any number.
    virtual std::optional<std::string> input(const std::string& prompt, const std::string& title,
                                             const std::string& proposed, std::size_t longest) = 0;
    /// The chosen path; empty if the user cancelled. `filter` is "description|pattern": "Config File
    /// (*.cfg)|*.cfg". `proposed` is a folder, or a file in it; empty for none.
    virtual std::optional<std::string> openFile(const std::string& filter, const std::string& proposed) = 0;
    virtual std::optional<std::string> saveFile(const std::string& filter, const std::string& proposed) = 0;
    /// The chosen colour, blue-green-red (255 is pure red); empty if the user cancelled.
    virtual std::optional<std::uint32_t> chooseColour(std::uint32_t initial, const std::string& title) = 0;
};

} // namespace platform
