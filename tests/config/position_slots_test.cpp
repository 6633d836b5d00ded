#include "config/position_slots.h"
#include "runtime/errors.h"

#include <cstring>
#include <gtest/gtest.h>
#include <limits>
#include <string>

namespace {

using config::kPositionFileSize;
using config::Standing;
using Bytes = std::array<std::byte, kPositionFileSize>;

constexpr std::size_t kSlotSize = 48;

std::string text(const Bytes& bytes) {
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

Standing at(float position) {
    return {.function = 2,
            .a = {1, 2, 3, 4},
            .b = {4, 8, 0, -1},
            .posA = position,
            .posB = -position,
            .azimuth = 359.99F,
            .elevation = position / 3};
}

/// A file in which these standings were stored one after the other, the last one under `last`.
Bytes fileOf(const std::vector<Standing>& standings, std::uint32_t last) {
    Bytes file{};
    std::uint32_t number = last - static_cast<std::uint32_t>(standings.size());
    for (const Standing& standing : standings)
        config::storeSlot(file, ++number, standing);
    return file;
}

TEST(PositionSlots, TheNewerOneCountsAlsoWhereItsNumberWraps) {
    EXPECT_EQ(config::newestSlot(text(Bytes{})), std::nullopt);
    for (const std::uint32_t last : {1U, 2U, 77U, 0xFFFFFFFFU, 0U, 0x80000000U}) {
        EXPECT_EQ(config::newestSlot(text(fileOf({at(1)}, last))), at(1)) << last;
        EXPECT_EQ(config::newestSlot(text(fileOf({at(1), at(2)}, last))), at(2)) << last;
        EXPECT_EQ(config::newestSlot(text(fileOf({at(1), at(2), at(3)}, last))), at(3)) << last;
    }
}

TEST(PositionSlots, AKillInMidWriteLeavesTheNewOneOrTheOneBefore) {
    const Bytes before = fileOf({at(1), at(2)}, 8);
    Bytes after = before;
    config::storeSlot(after, 9, at(3));
    const std::size_t slot = config::kSlotDistance; // odd numbers lie in the second one
    ASSERT_EQ(std::memcmp(before.data(), after.data(), slot), 0);
    // Whatever the order in which the processor stores the words: each set of them may be all that was.
    constexpr std::size_t kWord = 4;
    constexpr std::size_t kWords = kSlotSize / kWord;
    for (unsigned stored = 0; stored < 1U << kWords; ++stored) {
        Bytes torn = before;
        for (std::size_t word = 0; word < kWords; ++word) {
            if ((stored >> word & 1U) != 0)
                std::memcpy(&torn[slot + word * kWord], &after[slot + word * kWord], kWord);
        }
        const bool whole = torn == after;
        EXPECT_EQ(config::newestSlot(text(torn)), whole ? at(3) : at(2)) << stored;
    }
    for (std::size_t stored = 0; stored < kSlotSize; ++stored) {
        Bytes torn = before;
        std::memcpy(&torn[slot], &after[slot], stored);
        const bool whole = torn == after;
        EXPECT_EQ(config::newestSlot(text(torn)), whole ? at(3) : at(2)) << stored;
    }
}

TEST(PositionSlots, OneDamagedSlotLeavesTheOtherAndTwoAreDamage) {
    const Bytes whole = fileOf({at(1), at(2)}, 2);
    for (std::size_t bit = 0; bit < kSlotSize * 8; ++bit) {
        Bytes file = whole;
        file[bit / 8] ^= std::byte{1} << (bit % 8);
        EXPECT_EQ(config::newestSlot(text(file)), at(1)) << bit;
        file[config::kSlotDistance + bit / 8] ^= std::byte{1} << (bit % 8);
        EXPECT_THROW(config::newestSlot(text(file)), runtime::FileError) << bit;
    }
    for (const std::string& other :
         {std::string(), std::string("text"), text(whole).substr(1), text(whole) + "x"}) {
        EXPECT_THROW(config::newestSlot(other), runtime::FileError) << other.size();
    }
    Standing nowhere = at(1);
    nowhere.azimuth = std::numeric_limits<float>::quiet_NaN();
    EXPECT_THROW(config::newestSlot(text(fileOf({nowhere}, 1))), runtime::FileError);
}

} // namespace
