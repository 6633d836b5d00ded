#include "platform/windows/outside/direct_port.h"
#include "platform/windows/outside/handle.h"
#include "platform/windows/outside/watchdog.h"
#include "platform/windows/outside/work_folder.h"
#include "tests/platform/windows/fake_library.h"
#include "tests/platform/windows/pump.h"
#include "tests/platform/windows/subject.h"

#include <algorithm>
#include <chrono>
#include <gtest/gtest.h>
#include <iostream>

namespace {

using windows_ports::Handle;
using Clock = std::chrono::steady_clock;

constexpr LONG kCoilOn = 0xFE;
constexpr LONG kOff = 0xFF;

bool goesOff(const std::string& what) {
    const auto begun = Clock::now();
    const bool off = pumpUntil([] { return FakeDevices::instance().port == kOff; });
    const auto time = std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - begun);
    std::cout << what << ": outputs off after " << time.count() << " ms\n";
    return off;
}

TEST(Watchdog, SwitchesOffHoweverTheProgramEnds) {
    for (const std::string end : {"wait", "crash", "abort"}) {
        const Subject subject(end);
        ASSERT_TRUE(subject.coilWasOn()) << end;
        if (end == "wait") subject.terminate();
        EXPECT_TRUE(goesOff(end == "wait" ? "terminated" : end));
    }
}

TEST(Watchdog, SwitchesOffWhileTheProgramHangs) {
    const Subject subject("hang");
    ASSERT_TRUE(subject.coilWasOn());
    EXPECT_TRUE(goesOff("hung"));
    EXPECT_TRUE(subject.runs());
}

void terminate(const std::set<DWORD>& processes) {
    for (const DWORD number : processes) {
        const Handle process(OpenProcess(PROCESS_TERMINATE, FALSE, number));
        ASSERT_TRUE(process);
        TerminateProcess(process.get(), 1);
    }
}

TEST(Watchdog, IsReplacedWhereItEnds) {
    windows_ports::Watchdog watchdog;
    FakeDevices& devices = FakeDevices::instance();
    windows_ports::DirectPort port(0x378);
    watchdog.guardPortAddress(0x378, kOff);
    std::string unguarded;
    watchdog.watch([] {}, [&](const std::string& why) { unguarded = why; });
    // Each of the two, the other one, and both at once.
    for (int round = 0; round < 3; ++round) {
        const std::set<DWORD> before = watchdogProcesses();
        ASSERT_EQ(before.size(), 2U);
        const std::set<DWORD> ends =
            round == 2 ? before : std::set<DWORD>{round == 0 ? *before.begin() : *before.rbegin()};
        terminate(ends);
        EXPECT_TRUE(pumpUntil([&] {
            const std::set<DWORD> now = watchdogProcesses();
            return now.size() == 2 &&
                   std::ranges::none_of(ends, [&](DWORD one) { return now.contains(one); });
        }));
        EXPECT_EQ(unguarded, "");
        port.clearBit(0);
        EXPECT_EQ(devices.port, kCoilOn);
        watchdog.beat(true);
        EXPECT_TRUE(goesOff("silent, guarded by another one")); // nothing beats here
        watchdog.beat(false);
    }
}

TEST(Watchdog, ThatStandsBySwitchesOffWhereTheFirstEndsWithTheProgram) {
    const Subject subject("wait");
    ASSERT_TRUE(subject.coilWasOn());
    terminate({*watchdogProcesses().begin()});
    subject.terminate();
    EXPECT_TRUE(goesOff("terminated with one watchdog"));
}

} // namespace

int runSubject(const std::string& end) {
    if (end == "serial") return runSerialSubject();
    windows_ports::Watchdog watchdog;
    windows_ports::DirectPort port(0x378);
    watchdog.guardPortAddress(0x378, kOff);
    watchdog.beat(true);
    port.clearBit(0);
    if (end == "crash") *static_cast<volatile int*>(nullptr) = 1;
    if (end == "abort") std::abort();
    while (true) {
        constexpr DWORD kBetweenBeats = 250;
        Sleep(kBetweenBeats);
        if (end != "hang") watchdog.beat(true);
    }
}
