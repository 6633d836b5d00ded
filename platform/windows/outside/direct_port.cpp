#include "platform/windows/outside/direct_port.h"

#include "runtime/errors.h"
#include "runtime/text.h"

namespace windows_ports {

DirectPort::DirectPort(std::uint16_t address) try : address_(address), library_(kLibrary) {
    BOOL(__stdcall * isOpen)() = nullptr;
    short(__stdcall * in)(short address) = nullptr;
    library_.find("IsInpOutDriverOpen", isOpen);
    library_.find("Inp32", in);
    library_.find("Out32", out_);
    if (!isOpen()) {
        throw runtime::ObjectError(
            "the driver of inpoutx64.dll does not run. Start Twinstep once as administrator, so "
            "that it can install the driver");
    }
    data_ = static_cast<std::uint8_t>(in(static_cast<short>(address)));
} catch (const runtime::ObjectError& error) {
    throw runtime::ObjectError("port " + runtime::hexText(address, "0x") + ": " + error.what());
}

void DirectPort::write(unsigned data) {
    out_(static_cast<short>(address_), static_cast<short>(data));
    data_ = data;
}

} // namespace windows_ports
