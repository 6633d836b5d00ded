#include "bridge/protocol.h"

#include <gmock/gmock.h>

using ::testing::ElementsAre;
using ::testing::Optional;

namespace {

std::vector<std::string> texts(bridge::LineReader& reader) {
    std::vector<std::string> texts;
    while (const auto line = reader.next())
        texts.push_back(line->tooLong ? "(too long)" : line->text);
    return texts;
}

TEST(Protocol, FieldsComeBackAsTheyWere) {
    const std::vector<std::string_view> fields = {
        "changed",           "7", "", "two  words\tand \\s, a\r\nline", std::string_view("\0", 1),
        "Gr\xc3\xbc\xc3\x9f"};
    const std::string line = bridge::join(fields);
    EXPECT_EQ(line.find('\n'), line.size() - 1);
    EXPECT_THAT(bridge::split(line.substr(0, line.size() - 1)),
                Optional(::testing::ElementsAreArray(fields)));
}

TEST(Protocol, ABadEscapeIsNoLine) {
    EXPECT_EQ(bridge::split("changed 1 a\\x"), std::nullopt);
    EXPECT_EQ(bridge::split("changed 1 a\\"), std::nullopt);
    EXPECT_THAT(bridge::split(""), Optional(ElementsAre("")));
}

TEST(Protocol, NumbersAreWholeOrNothing) {
    EXPECT_EQ(bridge::parseNumber("-7"), -7);
    EXPECT_EQ(bridge::parseNumber("4294967296"), 4294967296);
    for (const auto* text : {"", "-", "7x", " 7", "+7", "99999999999999999999"})
        EXPECT_EQ(bridge::parseNumber(text), std::nullopt) << text;
}

TEST(Protocol, LinesAreCutWhateverThePiecesAre) {
    bridge::LineReader reader;
    for (const char byte : std::string("ping 1\r\n\npong"))
        reader.feed({&byte, 1});
    EXPECT_THAT(texts(reader), ElementsAre("ping 1", ""));
    reader.feed(" 2\nping 3\n");
    EXPECT_THAT(texts(reader), ElementsAre("pong 2", "ping 3"));
}

TEST(Protocol, ALineTooLongIsToldOnceAndTheNextIsGood) {
    bridge::LineReader reader;
    const std::string longest(bridge::kLongestLine - 1, 'x');
    reader.feed(longest + "\n" + longest);
    reader.feed("y");
    reader.feed(longest + "\nping 1\n");
    EXPECT_THAT(texts(reader), ElementsAre(longest, "(too long)", "ping 1"));
}

} // namespace
