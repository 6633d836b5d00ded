#include "platform/hid/k8055_search.h"

#include "platform/windows/outside/handle.h"
#include "platform/windows/text.h"

namespace hid_ports {

std::string whyNotOpened(const std::string& path) {
    const windows_ports::Handle device(
        CreateFileW(windows_ports::wide(path).c_str(), GENERIC_READ | GENERIC_WRITE,
                    FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING, 0, nullptr));
    const std::string words = "The K8055 board is there, but it cannot be opened: ";
    if (device) return words + "it is no device that takes reports";
    const DWORD error = GetLastError();
    if (error == ERROR_SHARING_VIOLATION || error == ERROR_ACCESS_DENIED)
        return words + "another program has it; end that program";
    return words + windows_ports::reason(error);
}

std::string whyNoNode(int /*card*/) {
    return {}; // the system's own driver takes every such board
}

} // namespace hid_ports
