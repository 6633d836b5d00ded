// Stands for inpoutx64.dll and for k8055d.dll: it notes what it is told.

#include "tests/platform/windows/fake_library.h"

// NOLINTBEGIN: the names are those of the libraries
extern "C" {

__declspec(dllexport) BOOL __stdcall IsInpOutDriverOpen() {
    return FakeDevices::instance().driverRuns;
}

__declspec(dllexport) short __stdcall Inp32(short /*address*/) {
    return static_cast<short>(FakeDevices::instance().port);
}

__declspec(dllexport) void __stdcall Out32(short address, short value) {
    FakeDevices& devices = FakeDevices::instance();
    devices.address = static_cast<unsigned short>(address);
    devices.port = value & 0xFF;
    if (devices.port != 0xFF) devices.wasLit = 1;
}

__declspec(dllexport) long __stdcall OpenDevice(long card) {
    constexpr long kCard = 2; // the only one there
    if (card != kCard) return -1;
    InterlockedIncrement(&FakeDevices::instance().openBoards);
    return card;
}

__declspec(dllexport) void __stdcall WriteAllDigital(long outputs) {
    FakeDevices::instance().board = outputs;
}

__declspec(dllexport) void __stdcall CloseDevice() {
    InterlockedDecrement(&FakeDevices::instance().openBoards);
}
}
// NOLINTEND
