#pragma once

#include <windows.h>

/// The functions of the users' own libraries, which stand beside the program.
namespace watchdog {

/// Both give 0 or an error of GetLastError.

/// inpoutx64.dll: the computer's I/O ports.
class PortLibrary {
  public:
    DWORD load();
    void write(unsigned address, unsigned char value) const;

  private:
    void(__stdcall* out_)(short address, short value) = nullptr;
};

/// k8055d.dll: the board, by its card address.
class BoardLibrary {
  public:
    DWORD load();
    /// Opens the board, switches all outputs off and closes it.
    DWORD switchOff(long card) const;

  private:
    long(__stdcall* open_)(long card) = nullptr;
    void(__stdcall* write_)(long outputs) = nullptr;
    void(__stdcall* close_)() = nullptr;
};

} // namespace watchdog
