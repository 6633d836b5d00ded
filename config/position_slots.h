#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

namespace config {

/// The file beside "save.cfg" while the program runs; docs/save-cfg.md describes it.
inline constexpr const char* kPositionFile = "positions.dat";

/// The phase indexes of one engine, with the names of the form's members.
struct Phases {
    std::int16_t intFase = 0, intFaseHalf = 0, intUltFase = 0, intUltFaseHalf = 0;
    bool operator==(const Phases&) const = default;
};

/// The positions and phases of both engines, in the layout of the file.
struct Standing {
    std::int16_t function = 0; // a form::Function
    std::int16_t unused = 0;
    Phases a, b;
    float posA = 0, posB = 0;         // user units
    float azimuth = 0, elevation = 0; // degrees
    bool operator==(const Standing&) const = default;
};

/// The two slots lie in different disk sectors, so that a power failure during a write damages only one slot.
constexpr std::size_t kSlotDistance = 512; // bytes
constexpr std::size_t kPositionFileSize = 2 * kSlotDistance;

/// Stores `standing` under `number`, over the older slot. Each call uses the next number; numbers wrap.
void storeSlot(std::span<std::byte, kPositionFileSize> file, std::uint32_t number, const Standing& standing);

/// The newest valid slot; empty if nothing has been stored yet. Throws runtime::FileError if the file is
/// damaged.
std::optional<Standing> newestSlot(std::string_view file);

} // namespace config
