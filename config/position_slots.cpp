#include "config/position_slots.h"

#include "runtime/errors.h"

#include <atomic>
#include <bit>
#include <cmath>
#include <cstring>
#include <string>

namespace config {

namespace {

struct Slot {
    std::uint32_t number = 0;
    Standing standing;
    std::uint64_t sum = 0;
};
static_assert(sizeof(Slot) == 48 && sizeof(Slot) <= kSlotDistance);

using Words = std::array<std::uint64_t, sizeof(Slot) / sizeof(std::uint64_t)>;

/// FNV-1a over 8-byte words. FNV-1a over bytes would take more time than the rest of a step.
std::uint64_t sumOf(const Slot& slot) {
    std::uint64_t sum = 0xCBF29CE484222325;
    const auto words = std::bit_cast<Words>(slot);
    for (std::size_t i = 0; i + 1 < words.size(); ++i)
        sum = (sum ^ words[i]) * 0x100000001B3;
    return sum ^ sum >> 32;
}

bool isWhole(const Slot& slot) {
    const Standing& at = slot.standing;
    return slot.sum == sumOf(slot) && std::isfinite(at.posA) && std::isfinite(at.posB) &&
           std::isfinite(at.azimuth) && std::isfinite(at.elevation);
}

bool isNewer(std::uint32_t number, std::uint32_t other) {
    return static_cast<std::int32_t>(number - other) > 0;
}

} // namespace

void storeSlot(std::span<std::byte, kPositionFileSize> file, std::uint32_t number, const Standing& standing) {
    Slot slot{.number = number, .standing = standing};
    slot.sum = sumOf(slot);
    std::memcpy(file.data() + number % 2 * kSlotDistance, &slot, sizeof slot);
    // This slot must be complete before the next store writes the other slot.
    std::atomic_thread_fence(std::memory_order_release);
}

std::optional<Standing> newestSlot(std::string_view file) {
    const auto damaged = [] {
        return runtime::FileError("\"" + std::string(kPositionFile) + "\" is damaged");
    };
    if (file.size() != kPositionFileSize) throw damaged();
    std::optional<Slot> newest;
    bool blank = true;
    for (std::size_t offset = 0; offset < kPositionFileSize; offset += kSlotDistance) {
        Slot slot;
        std::memcpy(&slot, file.data() + offset, sizeof slot);
        if (std::bit_cast<Words>(slot) == Words{}) continue;
        blank = false;
        if (isWhole(slot) && (!newest || isNewer(slot.number, newest->number))) newest = slot;
    }
    if (newest) return newest->standing;
    if (!blank) throw damaged();
    return std::nullopt;
}

} // namespace config
