#include "platform/windows/outside/direct_port.h"
#include "platform/windows/outside/handle.h"
#include "platform/windows/outside/watchdog.h"
#include "platform/windows/outside/work_folder.h"
#include "tests/platform/windows/fake_library.h"
#include "tests/platform/windows/pump.h"
#include "tests/platform/windows/subject.h"

#include <array>
#include <chrono>
#include <gtest/gtest.h>
#include <iostream>
#include <tlhelp32.h>

namespace {

using windows_ports::Handle;
using Clock = std::chrono::steady_clock;

constexpr LONG kCoilOn = 0xFE;
constexpr LONG kOff = 0xFF;

/// The process of a watchdog; 0 if there is none.
DWORD watchdogProcess() {
    const Handle all(CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0));
    PROCESSENTRY32W entry{};
    entry.dwSize = sizeof entry;
    for (BOOL more = Process32FirstW(all.get(), &entry); more; more = Process32NextW(all.get(), &entry)) {
        if (std::wstring_view(static_cast<const wchar_t*>(entry.szExeFile)) == L"twinstep-watchdog.exe")
            return entry.th32ProcessID;
    }
    return 0;
}

/// This program once more, as the controller of a port whose coil is on; see runSubject.
class Subject {
  public:
    explicit Subject(const std::string& end) {
        FakeDevices::instance().port = kOff;
        FakeDevices::instance().wasLit = 0;
        std::array<wchar_t, MAX_PATH> self{};
        GetModuleFileNameW(nullptr, self.data(), static_cast<DWORD>(self.size()));
        std::wstring line = L"subject --subject=" + std::wstring(end.begin(), end.end());
        STARTUPINFOW start{};
        start.cb = sizeof start;
        PROCESS_INFORMATION started{};
        if (!CreateProcessW(self.data(), line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &start,
                            &started))
            throw std::runtime_error("the subject did not start");
        CloseHandle(started.hThread);
        process_ = Handle(started.hProcess);
    }
    Subject(const Subject&) = delete;
    Subject& operator=(const Subject&) = delete;
    /// Waits until its watchdog writes no more.
    ~Subject() {
        terminate();
        WaitForSingleObject(process_.get(), INFINITE);
        EXPECT_TRUE(pumpUntil([] { return watchdogProcess() == 0; }));
    }
    bool coilWasOn() const {
        return pumpUntil([] { return FakeDevices::instance().wasLit != 0; });
    }
    void terminate() const { TerminateProcess(process_.get(), 1); }
    bool runs() const { return WaitForSingleObject(process_.get(), 0) == WAIT_TIMEOUT; }

  private:
    Handle process_;
};

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

TEST(Watchdog, IsReplacedWhereItEnds) {
    windows_ports::Watchdog watchdog;
    FakeDevices& devices = FakeDevices::instance();
    windows_ports::DirectPort port(0x378);
    watchdog.guardPortAddress(0x378, kOff);
    std::string unguarded;
    watchdog.watch([] {}, [&](const std::string& why) { unguarded = why; });
    const DWORD first = watchdogProcess();
    const Handle process(OpenProcess(PROCESS_TERMINATE, FALSE, first));
    ASSERT_TRUE(process);
    TerminateProcess(process.get(), 1);
    EXPECT_TRUE(pumpUntil([&] { return watchdogProcess() != 0 && watchdogProcess() != first; }));
    EXPECT_EQ(unguarded, "");
    port.clearBit(0);
    EXPECT_EQ(devices.port, kCoilOn);
    watchdog.beat(true);
    EXPECT_TRUE(goesOff("silent, guarded by the second")); // nothing beats here
}

} // namespace

int runSubject(const std::string& end) {
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
