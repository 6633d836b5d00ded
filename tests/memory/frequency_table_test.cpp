#include "memory/frequency_table.h"
#include "memory/table_text.h"
#include "runtime/errors.h"

#include <cmath>
#include <gmock/gmock.h>

namespace memory {
namespace {

using form::TableCurve;
using testing::ElementsAre;
using testing::HasSubstr;

constexpr TableCurve kCurves[] = {TableCurve::kLinear, TableCurve::kMonotoneCubic};

form::FrequencyTable full() {
    form::FrequencyTable table;
    for (int i = 0; i < 200; ++i)
        put(table, {1.0 + i, 0, 0, false});
    return table;
}

TEST(FrequencyTable, KeepsOneEntryAFrequencyInOrder) {
    form::FrequencyTable table;
    EXPECT_EQ(put(table, {14.0255, 3, 4, false}), 0U);
    EXPECT_EQ(put(table, {7.05, 1, 2, false}), 0U);
    EXPECT_EQ(put(table, {14.0255, 5, 6, true}), 1U);
    EXPECT_EQ(put(table, {14.02551, 7, 8, false}), 2U);
    EXPECT_THAT(table, ElementsAre(form::TableEntry{7.05, 1, 2, false}, form::TableEntry{14.0255, 5, 6, true},
                                   form::TableEntry{14.02551, 7, 8, false}));

    form::FrequencyTable most = full();
    EXPECT_NO_THROW(put(most, {200, 9, 9, false}));
    EXPECT_THROW(put(most, {200.5, 9, 9, false}), runtime::SubscriptError);
    EXPECT_EQ(most.size(), 200U);
    most.push_back({0.5, 0, 0, false});
    EXPECT_THROW(sorted(most), runtime::SubscriptError);
}

TEST(FrequencyTable, InterpolatesWithinStretchesOnly) {
    const form::FrequencyTable table = {
        {7.0, 10, 90, false}, {7.1, 20, 80, true}, {14.0, 40, 60, false}, {14.2, 50, 50, false}};
    struct Case {
        double megahertz;
        std::optional<TablePositions> at;
    };
    const Case cases[] = {{6.999, {}},
                          {7.0, TablePositions{10, 90}},
                          {7.025, TablePositions{12.5, 87.5}},
                          {7.1, TablePositions{20, 80}},
                          {7.1001, {}},
                          {13.99, {}},
                          {14.0, TablePositions{40, 60}},
                          {14.1, TablePositions{45, 55}},
                          {14.2001, {}}};
    for (const TableCurve curve : kCurves) {
        for (const Case& each : cases) {
            const auto at = positionsAt(table, each.megahertz, curve);
            ASSERT_EQ(at.has_value(), each.at.has_value()) << each.megahertz;
            if (!at) continue;
            // Two entries are a straight line, whatever the curve.
            EXPECT_NEAR(at->a, each.at->a, 1e-9) << each.megahertz;
            EXPECT_NEAR(at->b, each.at->b, 1e-9) << each.megahertz;
        }
    }
    EXPECT_EQ(positionsAt({}, 7, TableCurve::kLinear), std::nullopt);
    EXPECT_EQ(nearestEntry({}, 7), std::nullopt);
    for (const auto& [megahertz, index] :
         {std::pair{1.0, 0U}, {7.04, 0U}, {7.06, 1U}, {10.0, 1U}, {11.0, 2U}, {50.0, 3U}})
        EXPECT_EQ(nearestEntry(table, megahertz), index) << megahertz;
}

TEST(FrequencyTable, TheCubicIsSmoothAndNeverOvershoots) {
    // Steep, then level: where an ordinary cubic would swing above 80.
    const form::FrequencyTable table = {{7.0, 0, 5, false},
                                        {7.1, 10, 3, false},
                                        {7.12, 80, 2, false},
                                        {7.2, 80, 4, false},
                                        {7.3, 81, 9, false}};
    constexpr double kStep = 1e-5;
    double before = 0;
    for (double megahertz = 7.0; megahertz <= 7.3; megahertz += kStep) {
        const auto at = positionsAt(table, megahertz, TableCurve::kMonotoneCubic);
        ASSERT_TRUE(at);
        EXPECT_GE(at->a, before - 1e-12) << megahertz;
        before = at->a;
        EXPECT_GE(at->b, 2) << megahertz;
    }
    const auto rise = [&](double from) {
        return (positionsAt(table, from + kStep, TableCurve::kMonotoneCubic)->a -
                positionsAt(table, from, TableCurve::kMonotoneCubic)->a) /
               kStep;
    };
    // No kink at the inner entries, where the straight lines' rise changes by thousands.
    for (const double at : {7.1, 7.12, 7.2})
        EXPECT_NEAR(rise(at - kStep), rise(at), 10) << at;
}

TEST(TableText, ReadsWhatItWrites) {
    const form::FrequencyTable table = {{7.0255123, 12.345678, 0.1, false}, {14, 998.99999, 0, true}};
    EXPECT_EQ(readTable(tableText(table)), table);
    EXPECT_EQ(readTable(tableText({})), form::FrequencyTable());
}

TEST(TableText, ReadsExportsOfSpreadsheets) {
    const form::FrequencyTable expected = {{7.05, 12.5, 100, false}, {14.02, 3, 4, true}};
    const char* texts[] = {"7.05\t12.5\t100\n14.02\t3\t4\t1\n",
                           "\xEF\xBB\xBF"
                           "14,02;3;4;1\r\n7,05;12,5;100;0\r\n",
                           "# my loop\n\n 7.05   12.5 100 # best\n14.02 3 4 1",
                           "7.05 1 1\n14.02 3 4 1\n7.05 12.5 100 0\n"};
    for (const char* text : texts)
        EXPECT_EQ(readTable(text), expected) << text;
}

TEST(TableText, NamesTheLineThatIsNoEntry) {
    const std::pair<std::string, const char*> cases[] = {
        {"7 1 1\nMHz A B\n", "Line 2: \"MHz\" is not a number"},
        {"\n\n7.05,1,2", "Line 3: has 1 columns"},
        {"7 1", "Line 1: has 2 columns"},
        {"7 1 1 0 0", "has 5 columns"},
        {"7 1 1 2", "the fourth column"},
        {"0 1 1", "frequency"},
        {"-7 1 1", "frequency"},
        {"10000 1 1", "frequency"},
        {"7 1000 1", "position"},
        {"7 1 -999.1", "position"},
        {"7 1e999 1", "not a number"},
        {"7 nan 1", "not a number"}};
    for (const auto& [text, fault] : cases) {
        try {
            readTable(text);
            ADD_FAILURE() << text;
        } catch (const TableTextError& error) {
            EXPECT_THAT(error.what(), HasSubstr(fault)) << text;
        }
    }
    EXPECT_THROW(readTable(tableText(full()) + "300 1 1\n"), TableTextError);
}

TEST(TableRecords, KeepSixCharactersAndTheFileTheRest) {
    EXPECT_THAT(recordTexts({14.2003, -123.456, 5, true}), ElementsAre(" 14.20", "-123.4", " 5", " 1"));

    const form::FrequencyTable file = {
        {14.2001, 1, 2, false}, {14.2003, 1, 2, false}, {21.05, 3.14159, 4, false}};
    // Two entries coincide in six characters: each has its own digits again.
    const form::FrequencyTable records = {{14.2, 1, 2, false}, {14.2, 1, 2, false}, {21.05, 3.141, 4, false}};
    EXPECT_EQ(withFullDigits(records, file), file);
    // The records win where they disagree, and where the file has none or more.
    const form::FrequencyTable changed = {{14.2, 9, 2, false}, {21.05, 3.141, 4, true}};
    EXPECT_EQ(withFullDigits(changed, file), changed);
    EXPECT_EQ(withFullDigits(records, {}), records);
    // Full digits may change the order.
    const form::FrequencyTable half = {{14.2, 1, 2, false}, {14.2, 9, 2, false}};
    EXPECT_THAT(withFullDigits(half, file), ElementsAre(half[1], file[0]));
    // What another program has left in the fourth column stays.
    const form::FrequencyTable foreign = {{7.05, 1, 2, 3.5}};
    EXPECT_EQ(recordTexts(foreign[0])[3], " 3.5");
    std::string fault;
    EXPECT_EQ(readKeptTable(tableText(foreign), fault), foreign);
    EXPECT_FALSE(foreign[0].endsStretch());
}

} // namespace
} // namespace memory
