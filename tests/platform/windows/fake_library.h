#pragma once

#include <windows.h>

/// What the libraries that stand for inpoutx64.dll and k8055d.dll were told, by any process.
struct FakeDevices {
    volatile LONG port = 0xFF; // the byte on the data lines
    volatile LONG address = 0; // of the last write to a port
    volatile LONG wasLit = 0;  // whether an output of the port has been 0
    volatile LONG board = -1;  // the board's outputs; -1: none were set
    volatile LONG openBoards = 0;
    volatile LONG driverRuns = 1; // whether the port's driver answers

    /// Every process has the same.
    static FakeDevices& instance() {
        static FakeDevices* const shared = [] {
            const HANDLE memory = CreateFileMappingW(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0,
                                                     sizeof(FakeDevices), L"Local\\TwinstepFakeDevices");
            const bool first = GetLastError() != ERROR_ALREADY_EXISTS;
            auto* const devices = static_cast<FakeDevices*>(MapViewOfFile(memory, FILE_MAP_WRITE, 0, 0, 0));
            if (first) *devices = FakeDevices();
            return devices;
        }();
        return *shared;
    }
    FakeDevices() = default;
    FakeDevices& operator=(const FakeDevices& other) {
        port = other.port;
        address = other.address;
        wasLit = other.wasLit;
        board = other.board;
        openBoards = other.openBoards;
        driverRuns = other.driverRuns;
        return *this;
    }
    FakeDevices(const FakeDevices&) = delete;
};
