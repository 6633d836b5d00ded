#include "runtime/text.h"

#include <gtest/gtest.h>

namespace runtime {
namespace {

TEST(FormatFixed, RoundsHalfAwayFromZeroOnTheShortestDecimal) {
    EXPECT_EQ(formatStored(12.35F), "012.35");
    EXPECT_EQ(formatStored(0.125F), "000.13");
    EXPECT_EQ(formatStored(-0.125F), "-000.13");
    EXPECT_EQ(formatStored(1.005F), "001.01"); // the single lies below 1.005, its shortest text does not
    EXPECT_EQ(formatStored(-12.35F), "-012.35");
    EXPECT_EQ(formatStored(-0.004F), "000.00");
    EXPECT_EQ(formatStored(999.995F), "1000.00");
    EXPECT_EQ(formatStored(0), "000.00");
    EXPECT_EQ(formatShown(-0.01F), "-0.01");
    EXPECT_EQ(formatShown(101), "101.00");
    EXPECT_EQ(formatShown(9.999F), "10.00");
}

TEST(FormatCharacters, FillsFromTheRight) {
    EXPECT_EQ(formatCharacters("14200000", "@@.@@@.@@@"), "14.200.000");
    EXPECT_EQ(formatCharacters("7050000", "@@.@@@.@@@"), " 7.050.000");
    EXPECT_EQ(formatCharacters("144200000", "@@.@@@.@@@"), "144.200.000");
    EXPECT_EQ(formatCharacters("7", "@@"), " 7");
    EXPECT_EQ(formatCharacters("", "@@"), "  ");
}

TEST(Characters, AreCountedNotBytes) {
    EXPECT_EQ(firstCharacters("añoñ", 2), "añ");
    EXPECT_EQ(lastCharacters("añoñ", 2), "oñ");
    EXPECT_EQ(firstCharacters("abc", 9), "abc");
    EXPECT_EQ(lastCharacters("abc", 9), "abc");
    EXPECT_EQ(characterCount("€ß"), 2U);
}

TEST(Ansi, IsWindows1252) {
    EXPECT_EQ(toAnsi("€ñŸa"), "\x80\xF1\x9F"
                              "a");
    EXPECT_EQ(fromAnsi("\x80\xF1\x9F"
                       "a"),
              "€ñŸa");
    EXPECT_EQ(toAnsi("Ωé"), "?\xE9");
    EXPECT_EQ(toAnsi("\xFF\xC3"), "??");
    for (int byte = 0; byte < 256; ++byte) {
        const std::string one(1, static_cast<char>(byte));
        EXPECT_EQ(toAnsi(fromAnsi(one)), one) << byte;
    }
}

TEST(HexText, IsWhatColoursAreStoredAs) {
    EXPECT_EQ(hexText(65280), "&HFF00");
    EXPECT_EQ(hexText(0x8000000F), "&H8000000F");
    EXPECT_EQ(hexText(0), "&H0");
}

} // namespace
} // namespace runtime
