#include "tests/wine/station/commands.h"

#include <cstdio>
#include <cstring>
#include <iostream>
#include <memory>
#include <thread>
#include <vector>
#include <windows.h>
// Needs the types of windows.h.
#include <winternl.h>

static_assert(kCommandMessage == WM_APP);

void readCommands() {
    const DWORD mainThread = GetCurrentThreadId();
    std::thread([mainThread] {
        const auto post = [mainThread](std::string line) {
            auto owned = std::make_unique<std::string>(std::move(line));
            if (PostThreadMessageA(mainThread, kCommandMessage, 0, reinterpret_cast<LPARAM>(owned.get()))) {
                static_cast<void>(owned.release()); // takeCommand has it
            }
        };
        for (std::string line; std::getline(std::cin, line);) {
            if (!line.empty() && line.back() == '\r') line.pop_back();
            post(std::move(line));
        }
        post("quit");
    }).detach();
}

std::string takeCommand(long long lParam) {
    const std::unique_ptr<std::string> line(reinterpret_cast<std::string*>(lParam));
    return *line;
}

std::optional<std::string> argumentOf(std::string_view command, std::string_view word) {
    if (!command.starts_with(word)) return std::nullopt;
    command.remove_prefix(word.size());
    if (command.empty()) return std::string();
    if (command.front() != ' ') return std::nullopt;
    return std::string(command.substr(1));
}

void print(const std::string& line) {
    std::fputs((line + "\n").c_str(), stdout);
    std::fflush(stdout);
}

namespace {

/// Open handles of all processes together. A process cannot be asked for its own everywhere.
ULONG handlesOfAll() {
    constexpr auto kHandles = static_cast<SYSTEM_INFORMATION_CLASS>(16); // SystemHandleInformation
    constexpr NTSTATUS kTooShort = static_cast<NTSTATUS>(0xC0000004);    // STATUS_INFO_LENGTH_MISMATCH
    std::vector<BYTE> table(1 << 16);
    NTSTATUS status = 0;
    while ((status = NtQuerySystemInformation(kHandles, table.data(), static_cast<ULONG>(table.size()),
                                              nullptr)) == kTooShort) {
        table.resize(table.size() * 2);
    }
    ULONG count = 0; // the table's first field
    if (status == 0) std::memcpy(&count, table.data(), sizeof count);
    return count;
}

void printCounts() {
    constexpr ATOM kFirstAtom = 0xC000;
    int atoms = 0;
    for (unsigned atom = kFirstAtom; atom <= 0xFFFF; ++atom) {
        char name[256];
        if (GlobalGetAtomNameA(static_cast<ATOM>(atom), name, sizeof name) > 0) ++atoms;
    }

    int windows = 0;
    EnumWindows(
        [](HWND, LPARAM counter) -> BOOL {
            ++*reinterpret_cast<int*>(counter);
            return TRUE;
        },
        reinterpret_cast<LPARAM>(&windows));
    print("count handles " + std::to_string(handlesOfAll()) + " atoms " + std::to_string(atoms) +
          " windows " + std::to_string(windows));
}

/// The path of the program that a window belongs to; empty when it cannot be told.
std::string programOf(HWND window) {
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    HANDLE handle = OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION, FALSE, process);
    if (!handle) return {};
    char path[MAX_PATH];
    DWORD size = sizeof path;
    const BOOL known = QueryFullProcessImageNameA(handle, 0, path, &size);
    CloseHandle(handle);
    return known ? std::string(path, size) : std::string();
}

void close(const std::string& program) {
    EnumWindows(
        [](HWND window, LPARAM wanted) -> BOOL {
            if (programOf(window).ends_with("\\" + *reinterpret_cast<const std::string*>(wanted)))
                PostMessageA(window, WM_CLOSE, 0, 0);
            return TRUE;
        },
        reinterpret_cast<LPARAM>(&program));
}

} // namespace

bool obeyCommon(const std::string& command) {
    if (command == "count") {
        printCounts();
    } else if (const auto program = argumentOf(command, "close")) {
        close(*program);
    } else {
        return false;
    }
    return true;
}
