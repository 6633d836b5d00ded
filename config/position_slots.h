#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

namespace config {

/// Beside "save.cfg" while the program runs; docs/save-cfg.md describes it.
inline constexpr const char* kPositionFile = "positions.dat";

/// The phase indexes of one engine, under the names that the form has for them.
struct Phases {
    std::int16_t intFase = 0, intFaseHalf = 0, intUltFase = 0, intUltFaseHalf = 0;
    bool operator==(const Phases&) const = default;
};

/// Where both engines stand, laid out as the file holds it.
struct Standing {
    std::int16_t function = 0; // a form::Function
    std::int16_t unused = 0;
    Phases a, b;
    float posA = 0, posB = 0;         // user units
    float azimuth = 0, elevation = 0; // degrees
    bool operator==(const Standing&) const = default;
};

/// The two slots lie in different sectors of a disk, so that a write torn by a power failure hits one.
constexpr std::size_t kSlotDistance = 512; // bytes
constexpr std::size_t kPositionFileSize = 2 * kSlotDistance;

/// Stores `standing` under this number. Numbers follow one another and wrap: each goes over the older slot.
void storeSlot(std::span<std::byte, kPositionFileSize> file, std::uint32_t number, const Standing& standing);

/// The newer one of the whole slots; nothing where none has been stored yet. Throws runtime::FileError when
/// the file is damaged.
std::optional<Standing> newestSlot(std::string_view file);

} // namespace config
