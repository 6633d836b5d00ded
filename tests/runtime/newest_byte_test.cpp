#include "runtime/newest_byte.h"

#include <gtest/gtest.h>

using namespace std::chrono_literals;
using runtime::NewestByte;

TEST(NewestByte, SendsTheNewestAndOneReportAtATime) {
    NewestByte byte;
    EXPECT_TRUE(byte.taken(255));
    EXPECT_FALSE(byte.next());
    byte.want(8);
    EXPECT_FALSE(byte.taken(240)) << "nobody knows what the board held before";
    EXPECT_EQ(byte.begin(), 8);
    byte.want(4);
    byte.want(66);
    EXPECT_FALSE(byte.next()) << "a report is under way";
    byte.done(10ms);
    EXPECT_FALSE(byte.taken(15));
    EXPECT_EQ(byte.next(), 10ms);
    EXPECT_EQ(byte.begin(), 66);
    EXPECT_FALSE(byte.taken(2));
    byte.done(20ms);
    EXPECT_TRUE(byte.taken(255));
    byte.want(66);
    EXPECT_TRUE(byte.next()) << "the same byte is sent again when it is written again";
    EXPECT_TRUE(byte.taken(255));
}

TEST(NewestByte, OutputsThatReturnToTheirOldStateAreStillOnTheirWay) {
    NewestByte byte;
    byte.want(4);
    byte.begin();
    byte.done(0ms);
    byte.want(8);
    byte.begin();
    byte.want(4); // what the board holds, but 8 is about to arrive
    EXPECT_FALSE(byte.taken(15));
    byte.done(10ms);
    EXPECT_FALSE(byte.taken(15));
    byte.begin();
    byte.done(20ms);
    EXPECT_TRUE(byte.taken(15));
}

TEST(NewestByte, WaitsALittleForTheOtherEngineThatWasInTheLastReport) {
    NewestByte byte;
    byte.want(0x11);
    byte.begin();
    byte.done(100ms);
    byte.want(0x12);
    EXPECT_EQ(byte.next(), 102ms);
    byte.want(0x22);
    EXPECT_EQ(byte.next(), 100ms) << "both have moved on";
    byte.begin();
    byte.want(0x24);
    byte.done(110ms);
    byte.begin();
    byte.done(120ms);
    byte.want(0x28);
    EXPECT_EQ(byte.next(), 120ms) << "one engine alone waits for nobody";
}
