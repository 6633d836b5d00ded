#include "tests/wine/station/commands.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
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

/// Calls `act` with the windows of the program of this file name, and its process, which may be ended.
void withProgram(const std::string& file, const std::function<void(HWND, HANDLE)>& act) {
    struct Search {
        const std::string ending;
        const std::function<void(HWND, HANDLE)>& act;
    };
    const Search search{"\\" + file, act};
    EnumWindows(
        [](HWND window, LPARAM parameter) -> BOOL {
            const auto& wanted = *reinterpret_cast<const Search*>(parameter);
            DWORD id = 0;
            GetWindowThreadProcessId(window, &id);
            HANDLE process = OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION | PROCESS_TERMINATE, FALSE, id);
            if (!process) return TRUE;
            char path[MAX_PATH];
            DWORD size = sizeof path;
            if (QueryFullProcessImageNameA(process, 0, path, &size) &&
                std::string_view(path, size).ends_with(wanted.ending))
                wanted.act(window, process);
            CloseHandle(process);
            return TRUE;
        },
        reinterpret_cast<LPARAM>(&search));
}

} // namespace

bool obeyCommon(const std::string& command) {
    if (command == "count") {
        printCounts();
    } else if (const auto program = argumentOf(command, "close")) {
        withProgram(*program, [](HWND window, HANDLE) { PostMessageA(window, WM_CLOSE, 0, 0); });
    } else if (const auto victim = argumentOf(command, "end")) {
        withProgram(*victim, [](HWND, HANDLE process) { TerminateProcess(process, EXIT_FAILURE); });
    } else {
        return false;
    }
    return true;
}
