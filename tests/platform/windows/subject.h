#pragma once

#include "platform/windows/outside/handle.h"
#include "tests/platform/windows/fake_library.h"
#include "tests/platform/windows/pump.h"

#include <array>
#include <gtest/gtest.h>
#include <set>
#include <stdexcept>
#include <string>
#include <string_view>
#include <tlhelp32.h>

/// A controller with a watchdog and one coil on, in a process of its own: it then waits, crashes, aborts or
/// hangs, as `end` says; "serial": its outputs are those of a board on a COM port.
int runSubject(const std::string& end);
int runSerialSubject();

/// The processes of watchdogs.
inline std::set<DWORD> watchdogProcesses() {
    std::set<DWORD> found;
    const windows_ports::Handle all(CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0));
    PROCESSENTRY32W entry{};
    entry.dwSize = sizeof entry;
    for (BOOL more = Process32FirstW(all.get(), &entry); more; more = Process32NextW(all.get(), &entry)) {
        if (std::wstring_view(static_cast<const wchar_t*>(entry.szExeFile)) == L"twinstep-watchdog.exe")
            found.insert(entry.th32ProcessID);
    }
    return found;
}

/// This program once more, as the controller of a port whose coil is on; see runSubject.
class Subject {
  public:
    explicit Subject(const std::string& end) {
        FakeDevices::instance().port = 0xFF;
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
        process_ = windows_ports::Handle(started.hProcess);
    }
    Subject(const Subject&) = delete;
    Subject& operator=(const Subject&) = delete;
    /// Waits until its watchdogs write no more.
    ~Subject() {
        terminate();
        WaitForSingleObject(process_.get(), INFINITE);
        EXPECT_TRUE(pumpUntil([] { return watchdogProcesses().empty(); }));
    }
    bool coilWasOn() const {
        return pumpUntil([] { return FakeDevices::instance().wasLit != 0; });
    }
    void terminate() const { TerminateProcess(process_.get(), 1); }
    bool runs() const { return WaitForSingleObject(process_.get(), 0) == WAIT_TIMEOUT; }

  private:
    windows_ports::Handle process_;
};
