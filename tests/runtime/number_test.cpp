#include "runtime/number.h"

#include <gtest/gtest.h>
#include <limits>

namespace runtime {
namespace {

TEST(Checked, RefusesWhatDoesNotFit) {
    EXPECT_EQ((Int16(32766) + 1).value(), 32767);
    EXPECT_THROW(Int16(32767) + 1, OverflowError);
    EXPECT_THROW(Int16(-32768) - 1, OverflowError);
    EXPECT_THROW(Int16(33) * 1000, OverflowError);
    EXPECT_THROW(Byte(-1), OverflowError);
    EXPECT_THROW(Int32(std::numeric_limits<std::int32_t>::max()) + 1, OverflowError);
}

TEST(Rounding, TakesHalvesToEven) {
    EXPECT_EQ(roundToInt16(998.5), 998);
    EXPECT_EQ(roundToInt16(999.5), 1000);
    EXPECT_EQ(roundToInt16(62.5), 62);
    EXPECT_EQ(roundToInt16(-998.5), -998);
    EXPECT_THROW(roundToInt16(32767.5), OverflowError);
    EXPECT_THROW(roundToInt16(std::numeric_limits<double>::quiet_NaN()), OverflowError);
    EXPECT_THROW(divideSingle(1, 0), DivisionByZero);
    EXPECT_THROW(toSingle(1e39), OverflowError);
}

TEST(ParseNumber, TakesPointAndComma) {
    EXPECT_EQ(parseNumber("12.35"), 12.35);
    EXPECT_EQ(parseNumber(" -12,35 "), -12.35);
    EXPECT_EQ(parseNumber("+.5"), 0.5);
    EXPECT_EQ(parseInt16("12.5"), 12);
    for (const char* text : {"", " ", "-", "12a", "1.2.3", "1,2,3", "+-1", "inf", "nan", "0x10", "1 2"}) {
        EXPECT_THROW(parseNumber(text), TypeMismatch) << text;
    }
    EXPECT_THROW(parseInt16("40000"), OverflowError);
    EXPECT_THROW(parseNumber("1e999"), OverflowError);
}

TEST(LeadingNumber, ReadsWhatItCanAndIgnoresTheRest) {
    const std::pair<const char*, double> cases[] = {
        {"", 0},          {"7.", 7}, {"21.010", 21.01}, {"40m", 40},  {"  14", 14},
        {"-0.01", -0.01}, {"+3", 3}, {"abc", 0},        {"7,050", 7}, {"1.2.3", 1.2},
        {"1e5", 1},       {"-", 0},  {"&HFF00", 65280}, {"&H", 0},    {".", 0}};
    for (const auto& [text, value] : cases)
        EXPECT_EQ(leadingNumber(text), value) << text;
}

TEST(ShortestText, NeverShowsAnExponent) {
    EXPECT_EQ(shortestText(7050.5), "7050.5");
    EXPECT_EQ(shortestText(14200.0), "14200");
    EXPECT_EQ(shortestText(0.1F), "0.1");
    EXPECT_EQ(shortestText(1e20), "100000000000000000000");
    EXPECT_EQ(shortestText(1e-7F), "0.0000001");
}

} // namespace
} // namespace runtime
