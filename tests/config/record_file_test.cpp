#include "config/record_file.h"
#include "config/record_table.h"
#include "platform/simulated/storage.h"
#include "runtime/errors.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <map>

namespace config {
namespace {

using Fault = simulated::Storage::Fault;

constexpr const char* kFile = "save.cfg";
constexpr const char* kJournal = "save.cfg.journal";
constexpr const char* kKept = "save.cfg.bak";

class RecordFileTest : public ::testing::Test {
  protected:
    simulated::Storage disk;
    RecordFile file{disk, kFile};
};

TEST_F(RecordFileTest, LaysRecordsOutByteByByte) {
    file.write({integerRecord(2, -2), textRecord(1, "ñ1"), byteRecord(3, 200), singleRecord(4, 12.35F),
                booleanRecord(5, true), taggedTextRecord(6, "Home")});
    const std::string expected =
        std::string("\x02\x00\xF1"
                    "1\0\0\0\0\0\0\0\0",
                    12) +
        std::string("\xFE\xFF\0\0\0\0\0\0\0\0\0\0", 12) + std::string("\xC8\0\0\0\0\0\0\0\0\0\0\0", 12) +
        std::string("\x9A\x99\x45\x41\0\0\0\0\0\0\0\0", 12) +
        std::string("\xFF\xFF\0\0\0\0\0\0\0\0\0\0", 12) + std::string("\x08\0\x04\0Home\0\0\0\0", 12);
    EXPECT_EQ(disk.bytesOf(kFile), expected);
    EXPECT_FALSE(disk.exists(kJournal));
    RecordImage records = RecordFile(disk, kFile).read();
    EXPECT_EQ(records.text(1), "ñ1");
    EXPECT_EQ(records.integer(2), -2);
    EXPECT_EQ(records.byte(3), 200);
    EXPECT_EQ(records.single(4), 12.35F);
    EXPECT_TRUE(records.boolean(5));
    EXPECT_EQ(records.taggedText(6), "Home");
    EXPECT_EQ(records.integer(899), 0);
    EXPECT_EQ(records.text(900), "");
    EXPECT_TRUE(records.damaged().empty());
    file.write({integerRecord(10, 1)});
    EXPECT_EQ(disk.bytesOf(kFile),
              expected + std::string(36, '\0') + std::string("\x01", 1) + std::string(11, '\0'));
}

TEST_F(RecordFileTest, RefusesWhatARecordCannotHold) {
    EXPECT_NO_THROW(textRecord(1, "&H8000000F"));
    EXPECT_THROW(textRecord(1, "12345678901"), runtime::BadRecordLength);
    EXPECT_NO_THROW(taggedTextRecord(62, "ññññññññ"));
    EXPECT_THROW(taggedTextRecord(62, "123456789"), runtime::BadRecordLength);
}

TEST_F(RecordFileTest, ReadsDamagedRecordsAsFarAsTheyGo) {
    disk.put(kFile, "\xFF\xFF"
                    "abcdefghij\x08");
    RecordImage records = file.read();
    EXPECT_EQ(records.text(1), "abcdefghij");
    EXPECT_EQ(records.integer(2), 8);
    EXPECT_TRUE(records.truncated());
    EXPECT_EQ(records.damaged(), std::vector<int>{1});
}

TEST_F(RecordFileTest, AFileOrJournalThatCannotBeReadIsNeverWrittenTo) {
    for (const char* unreadable : {kFile, kJournal}) {
        disk.put(kFile, std::string(24, 'x'));
        disk.breakReading(unreadable);
        RecordFile other(disk, kFile);
        EXPECT_THROW(other.read(), runtime::FileError) << unreadable;
        disk.restart(); // the card works again, but what the program holds is not what the file held
        EXPECT_THROW(other.write({integerRecord(1, 1)}), runtime::FileError);
        EXPECT_EQ(disk.bytesOf(kFile), std::string(24, 'x'));
        other.replaceBy("abc");
        EXPECT_EQ(disk.bytesOf(kFile), "abc");
        EXPECT_EQ(disk.bytesOf(kKept), std::string(24, 'x'));
    }
}

TEST_F(RecordFileTest, LoadConfigOverWhatCannotBeReadIsOneUnit) {
    const std::string old(24, 'x'), fresh(36, 'n');
    for (const char* unreadable : {kFile, kJournal}) {
        const auto load = [&](simulated::Storage& card) {
            card.put(kFile, old);
            card.put(kJournal, "waiting");
            card.breakReading(unreadable);
            RecordFile other(card, kFile);
            EXPECT_THROW(other.read(), runtime::FileError);
            try {
                other.replaceBy(fresh);
            } catch (const runtime::FileError&) {
                EXPECT_THROW(other.write({integerRecord(1, 1)}), runtime::FileError);
            }
        };
        simulated::Storage whole;
        load(whole);
        ASSERT_GT(whole.calls(), 8);
        EXPECT_EQ(whole.bytesOf("save.cfg.journal.bak"), "waiting");
        for (int call = 0; call <= whole.calls(); ++call) {
            for (const Fault fault : {Fault::Short, Fault::Kill, Fault::KillHalf}) {
                simulated::Storage card;
                card.failAt(call, fault);
                load(card);
                card.restart();
                if (card.bytesOf(kFile) == old && unreadable == std::string(kFile)) card.breakReading(kFile);
                RecordFile next(card, kFile);
                try {
                    next.read();
                } catch (const runtime::FileError&) {
                    EXPECT_EQ(card.bytesOf(kFile), old);
                    continue;
                }
                const bool done = card.bytesOf(kFile) == fresh;
                EXPECT_EQ(card.bytesOf(done ? kKept : kFile), old) << unreadable << " call " << call;
            }
        }
    }
}

TEST_F(RecordFileTest, WhatWaitsInTheJournalIsReadAndAnotherLoadLosesNothing) {
    const std::string first(24, '\0'), second(36, '\0');
    disk.put(kFile, first);
    disk.holdsJobs = true;
    file.read();
    file.replaceBy(second);
    file.replaceBy(file.configuration(kKept));
    file.finish();
    EXPECT_EQ(disk.bytesOf(kFile), first);
    EXPECT_EQ(disk.bytesOf(kKept), second);
}

TEST_F(RecordFileTest, AJournalThatWasRemovedIsMadeAgain) {
    for (const bool another : {false, true}) { // a change comes before the next attempt
        file.write({integerRecord(1, 1)});
        disk.failAt(1, Fault::Error);
        file.write({integerRecord(1, 2)});
        EXPECT_NE(file.takeNotice(), "");
        disk.take(kJournal);
        if (another) file.write({integerRecord(2, 3)});
        file.finish();
        EXPECT_EQ(file.takeNotice(), "");
        EXPECT_FALSE(disk.exists(kJournal));
        RecordImage records = RecordFile(disk, kFile).read();
        EXPECT_EQ(records.integer(1), 2);
        EXPECT_EQ(records.integer(2), another ? 3 : 0);
    }
}

TEST_F(RecordFileTest, AFileThatCannotBeReadWhileRunningIsNeverSavedOver) {
    file.write({integerRecord(1, 1)});
    const std::string before = disk.bytesOf(kFile);
    disk.breakReading(kFile);
    file.write({integerRecord(1, 2)});
    const std::string notice = file.takeNotice();
    EXPECT_NE(notice.find("Input/output error. The changes wait in"), std::string::npos) << notice;
    EXPECT_EQ(disk.bytesOf(kFile), before);
    EXPECT_THROW(file.finish(), runtime::FileError);
    disk.restart();
    file.finish();
    EXPECT_EQ(file.takeNotice(), "");
    EXPECT_EQ(RecordFile(disk, kFile).read().integer(1), 2);
}

TEST_F(RecordFileTest, GroupsBehindADamagedOneNeverCountAgain) {
    const auto group = [](int value) { return encodeUnit({{}, {integerRecord(1, value)}}); };
    disk.put(kFile, std::string(12, '\0'));
    disk.put(kJournal, group(1) + std::string(group(2).size(), 'x') + group(3));
    disk.holdsJobs = true;
    file.write({integerRecord(1, 4)}); // fills the gap
    EXPECT_EQ(RecordFile(disk, kFile).read().integer(1), 4);
}

TEST_F(RecordFileTest, WhatVanishedOrWasReplacedIsWrittenWholeAtTheNextChange) {
    file.write({integerRecord(1, 1), integerRecord(90, 90)});
    const std::pair<const char*, std::function<void()>> changes[] = {
        {"gone", [this] { disk.take(kFile); }},
        {"other", [this] { disk.put(kFile, "other"); }},
        {"cut", [this] { disk.put(kFile, ""); }}};
    int value = 1;
    for (const auto& [name, change] : changes) {
        change();
        file.write({integerRecord(1, ++value)});
        EXPECT_NE(file.takeNotice(), "") << name;
        EXPECT_EQ(RecordFile(disk, kFile).read().integer(1), value) << name;
        EXPECT_EQ(RecordFile(disk, kFile).read().integer(90), 90) << name;
        file.write({integerRecord(1, ++value)});
        EXPECT_EQ(file.takeNotice(), "") << name;
    }
}

TEST_F(RecordFileTest, RefusesWhatIsNoConfigurationByName) {
    struct Case {
        std::string bytes;
        const char* fault;
    };
    const std::string good(99 * kRecordLength, '\0');
    const auto with = [&good](const std::vector<Record>& records) {
        std::string bytes = good;
        for (const Record& record : records)
            bytes.replace(static_cast<std::size_t>(record.number - 1) * 12, 12, record.bytes.data(), 12);
        return bytes;
    };
    const Case cases[] = {
        {"", "it is empty"},
        {std::string(899 * 12 + 1, '\0'), "it is too long"},
        {std::string(5000, 'x'), "out of range"},
        {with({integerRecord(31, 4), integerRecord(64, -1), integerRecord(81, 3)}), "3 of its settings"},
        {with({integerRecord(1, 11), byteRecord(43, 3), integerRecord(99, 201)}), "3 of its settings"},
        {with({integerRecord(31, 4), integerRecord(64, 5)}), nullptr},
        {with({integerRecord(11, -1), integerRecord(65, -1), integerRecord(66, 32000)}), nullptr},
        {std::string(12, '\0'), nullptr},
    };
    for (const Case& each : cases) {
        disk.put("field.cfg", each.bytes);
        std::string fault;
        try {
            EXPECT_EQ(file.configuration("field.cfg"), each.bytes);
        } catch (const runtime::FileError& error) {
            fault = error.what();
        }
        EXPECT_EQ(fault.empty(), !each.fault) << fault;
        if (!each.fault) continue;
        EXPECT_NE(fault.find("\"field.cfg\" is no configuration"), std::string::npos) << fault;
        EXPECT_NE(fault.find(each.fault), std::string::npos) << fault;
    }
    EXPECT_THROW(file.configuration("missing.cfg"), runtime::FileError);
}

TEST_F(RecordFileTest, ACopyStandsWhenItIsWholeAndNothingIsWrittenAfterTheSeal) {
    file.write({integerRecord(1, 7)});
    disk.put("home.cfg", "old");
    for (const Fault fault : {Fault::Error, Fault::Short}) {
        disk.failAt(0, fault);
        EXPECT_THROW(file.copyTo("home.cfg"), runtime::FileError);
        EXPECT_EQ(disk.bytesOf("home.cfg"), "old");
        disk.failAt(1, fault); // on the thread
        file.copyTo("home.cfg");
        EXPECT_NE(file.takeNotice(), "");
        EXPECT_EQ(disk.bytesOf("home.cfg"), "old");
    }
    file.copyTo("home.cfg");
    EXPECT_EQ(disk.bytesOf("home.cfg"), disk.bytesOf(kFile));
    EXPECT_FALSE(disk.exists("home.cfg.part"));
    file.seal();
    file.write({integerRecord(1, 9)});
    EXPECT_EQ(RecordFile(disk, kFile).read().integer(1), 7);
}

/// A session whose every change writes its own number into all records of its group.
struct Session {
    static constexpr int kFirstState = 1;
    inline static const std::vector<std::vector<int>> kGroups = {
        {1, 21, 71}, {57, 58, 59, 60}, {32, 33, 90}, {1, 21, 71}, {45, 65}};
    static constexpr int kReplaced = 2; // before this group, another configuration is loaded

    simulated::Storage& disk;
    std::map<int, int> told; // by the first record of a group: the last number that was not refused

    static std::string configurationOf(int number) {
        simulated::Storage scratch;
        std::vector<Record> records;
        for (const auto& group : kGroups) {
            for (const int record : group)
                records.push_back(integerRecord(record, number));
        }
        RecordFile(scratch, kFile).write(records);
        return scratch.bytesOf(kFile);
    }

    void attempt(const std::function<void()>& change, const std::function<void()>& done) {
        try {
            change();
            if (!disk.dead()) done();
        } catch (const runtime::FileError&) { // told
        }
    }

    void run() {
        RecordFile file(disk, kFile);
        int number = kFirstState;
        attempt([&] { file.read(); }, [] {});
        for (std::size_t i = 0; i < kGroups.size(); ++i) {
            ++number;
            if (i == kReplaced) {
                attempt([&] { file.replaceBy(configurationOf(number)); },
                        [&] {
                            for (const auto& group : kGroups)
                                told[group[0]] = number;
                        });
                ++number;
            }
            std::vector<Record> records;
            for (const int record : kGroups[i])
                records.push_back(integerRecord(record, number));
            attempt([&] { file.write(records); }, [&] { told[kGroups[i][0]] = number; });
            if (i % 2 == 1) disk.finish();
        }
        attempt([&] { file.finish(); }, [] {});
    }
};

class Faults : public ::testing::TestWithParam<std::tuple<Fault, bool>> {};

TEST_P(Faults, EachGroupIsAsBeforeOrAsAfter) {
    const auto [fault, holdsJobs] = GetParam();
    const auto start = [&, holds = holdsJobs](simulated::Storage& disk) {
        disk.put(kFile, Session::configurationOf(Session::kFirstState));
        disk.holdsJobs = holds;
    };
    simulated::Storage whole;
    start(whole);
    Session{whole, {}}.run();
    ASSERT_GT(whole.calls(), 20);
    for (int call = 0; call < whole.calls(); ++call) {
        simulated::Storage disk;
        start(disk);
        disk.failAt(call, fault);
        Session session{disk, {}};
        session.run();
        const int changes = static_cast<int>(Session::kGroups.size()) + 1;
        disk.restart();
        for (int again = 0; again < 2; ++again) { // what the first start mends stays
            RecordFile file(disk, kFile);
            RecordImage records = file.read();
            for (const auto& group : Session::kGroups) {
                const int number = records.integer(group[0]).value();
                for (const int record : group)
                    EXPECT_EQ(records.integer(record), number) << "call " << call << " record " << record;
                EXPECT_GE(number, Session::kFirstState);
                EXPECT_LE(number, Session::kFirstState + changes);
                if (fault == Fault::PowerCut || fault == Fault::PowerCutNamed) continue;
                // What was saved without an error is there, and where the program lived on, nothing else is.
                const int told = session.told.contains(group[0]) ? session.told.at(group[0]) : 0;
                EXPECT_GE(number, told) << "call " << call;
                if (fault != Fault::Kill && fault != Fault::KillHalf) {
                    EXPECT_EQ(number, std::max(told, Session::kFirstState)) << "call " << call;
                }
            }
            file.finish();
            EXPECT_FALSE(disk.exists(kJournal));
            EXPECT_FALSE(configurationFault(disk.bytesOf(kFile)));
        }
        if (disk.exists(kKept)) {
            EXPECT_EQ(disk.bytesOf(kKept).size(), 90 * kRecordLength) << "call " << call;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(All, Faults,
                         ::testing::Combine(::testing::Values(Fault::Error, Fault::Short, Fault::Kill,
                                                              Fault::KillHalf, Fault::PowerCut,
                                                              Fault::PowerCutNamed),
                                            ::testing::Bool()));

} // namespace
} // namespace config
