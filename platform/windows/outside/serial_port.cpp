#include "platform/windows/outside/serial_port.h"

#include "platform/windows/text.h"
#include "runtime/errors.h"

#include <algorithm>
#include <array>

namespace windows_ports {

namespace {

constexpr DWORD kLastBytes = 200; // milliseconds

std::string whyNotOpened(DWORD error) {
    switch (error) {
    case ERROR_FILE_NOT_FOUND:
        return "there is no such port: plug the board in";
    case ERROR_ACCESS_DENIED:
    case ERROR_SHARING_VIOLATION:
        return "another program has it; end that program";
    default:
        return reason(error);
    }
}

[[noreturn]] void failGone() {
    throw runtime::ObjectError("is gone: " + reason(GetLastError()));
}

} // namespace

SerialPort::SerialPort(const std::string& device, int baud)
    : read_(CreateEventW(nullptr, TRUE, FALSE, nullptr)),
      wake_(CreateEventW(nullptr, FALSE, FALSE, nullptr)) {
    // The prefix is needed from COM10 on.
    port_ = Handle(CreateFileW((L"\\\\.\\" + wide(device)).c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr,
                               OPEN_EXISTING, FILE_FLAG_OVERLAPPED, nullptr));
    if (!port_) throw runtime::ObjectError(device + ": " + whyNotOpened(GetLastError()));
    DCB state{};
    state.DCBlength = sizeof state;
    // A read waits for the first byte, and takes what is there.
    COMMTIMEOUTS patience{};
    patience.ReadIntervalTimeout = MAXDWORD;
    patience.ReadTotalTimeoutMultiplier = MAXDWORD;
    patience.ReadTotalTimeoutConstant = MAXDWORD - 1;
    bool taken = GetCommState(port_.get(), &state);
    state.BaudRate = static_cast<DWORD>(baud);
    state.ByteSize = 8;
    state.Parity = NOPARITY;
    state.StopBits = ONESTOPBIT;
    state.fBinary = TRUE;
    state.fParity = state.fOutxCtsFlow = state.fOutxDsrFlow = state.fDsrSensitivity = FALSE;
    state.fOutX = state.fInX = state.fErrorChar = state.fNull = state.fAbortOnError = FALSE;
    // Boards with a USB interface of their own send nothing without it.
    state.fDtrControl = DTR_CONTROL_ENABLE;
    state.fRtsControl = RTS_CONTROL_ENABLE;
    taken = taken && SetCommState(port_.get(), &state) && SetCommTimeouts(port_.get(), &patience);
    if (!taken) throw runtime::ObjectError(device + ": it is no serial port: " + reason(GetLastError()));
}

SerialPort::~SerialPort() {
    if (!port_) return;
    // The last bytes may switch coils off.
    if (write_->settled(kLastBytes)) return;
    CancelIoEx(port_.get(), &write_->state);
    // A driver that hangs may still read there.
    if (!write_->settled(kLastBytes)) static_cast<void>(write_.release());
}

std::size_t SerialPort::write(std::span<const std::uint8_t> bytes) {
    if (bytes.empty() || !write_->settled(0)) return 0;
    DWORD size = 0;
    if (!write_->bytes.empty() && !GetOverlappedResult(port_.get(), &write_->state, &size, FALSE)) failGone();
    write_->bytes.assign(bytes.begin(), bytes.end());
    write_->state = {};
    write_->state.hEvent = write_->done.get();
    if (!WriteFile(port_.get(), write_->bytes.data(), static_cast<DWORD>(bytes.size()), nullptr,
                   &write_->state) &&
        GetLastError() != ERROR_IO_PENDING) {
        SetEvent(write_->done.get());
        write_->bytes.clear();
        failGone();
    }
    return bytes.size();
}

std::size_t SerialPort::read(std::span<std::uint8_t> buffer, std::chrono::nanoseconds longest) {
    OVERLAPPED state{};
    state.hEvent = read_.get();
    if (!ReadFile(port_.get(), buffer.data(), static_cast<DWORD>(buffer.size()), nullptr, &state) &&
        GetLastError() != ERROR_IO_PENDING) {
        failGone();
    }
    const std::array<HANDLE, 2> sources{read_.get(), wake_.get()};
    const auto patience =
        std::chrono::ceil<std::chrono::milliseconds>(std::max(longest, std::chrono::nanoseconds()));
    if (WaitForMultipleObjects(sources.size(), sources.data(), FALSE, static_cast<DWORD>(patience.count())) !=
        WAIT_OBJECT_0) {
        CancelIoEx(port_.get(), &state);
    }
    DWORD size = 0;
    if (!GetOverlappedResult(port_.get(), &state, &size, TRUE) && GetLastError() != ERROR_OPERATION_ABORTED)
        failGone();
    return size;
}

std::vector<SerialDevice> serialDevices() {
    std::vector<SerialDevice> devices;
    HKEY key = nullptr;
    if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, L"HARDWARE\\DEVICEMAP\\SERIALCOMM", 0, KEY_READ, &key) !=
        ERROR_SUCCESS)
        return devices;
    constexpr DWORD kLongest = 256; // characters
    std::array<wchar_t, kLongest> name{};
    std::array<wchar_t, kLongest> port{};
    DWORD nameSize = kLongest;
    DWORD portSize = sizeof port;
    for (DWORD at = 0; RegEnumValueW(key, at, name.data(), &nameSize, nullptr, nullptr,
                                     reinterpret_cast<BYTE*>(port.data()), &portSize) == ERROR_SUCCESS;
         ++at) {
        port.back() = 0;
        devices.push_back({utf8(port.data()), utf8({name.data(), nameSize})});
        nameSize = kLongest;
        portSize = sizeof port;
    }
    RegCloseKey(key);
    return devices;
}

} // namespace windows_ports
