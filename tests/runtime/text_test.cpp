#include "runtime/number.h"
#include "runtime/text.h"

#include <cmath>
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

TEST(FormatFixed, AgreesWithTheDecimalTextEverywhere) {
    // Steps that land on and beside halves, where a short cut could round the wrong way.
    for (int i = -200000; i < 200000; ++i) {
        const float value = static_cast<float>(i) * 0.005F;
        const std::string text = shortestText(std::fabs(value));
        const std::size_t point = text.find('.');
        std::string digits =
            text.substr(0, point) + (point == std::string::npos ? "" : text.substr(point + 1));
        const std::size_t decimals = point == std::string::npos ? 0 : text.size() - point - 1;
        digits.append(decimals < 3 ? 3 - decimals : 0, '0');
        digits.resize(digits.size() - (decimals > 3 ? decimals - 3 : 0));
        const long hundredths = (std::stol(digits) + 5) / 10;
        const double expected = static_cast<double>(hundredths) / 100 * (value < 0 ? -1 : 1);
        ASSERT_EQ(parseNumber(formatShown(value)), expected) << text;
    }
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
    EXPECT_EQ(hexText(0x3BC, "0x"), "0x3BC");
}

} // namespace
} // namespace runtime
