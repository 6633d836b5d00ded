#include "form/port_entry.h"

#include "runtime/number.h"

namespace form {

std::optional<runtime::Int16> portFromText(const std::string& text, int lowest) {
    if (text.empty() || text.find_first_not_of("0123456789") != std::string::npos) return {};
    const double port = runtime::leadingNumber(text);
    if (port < lowest || port > kHighestPort) return {};
    return runtime::Int16(static_cast<int>(port));
}

std::string portRange(int lowest) {
    return "Insert a port from " + std::to_string(lowest) + " to " + std::to_string(kHighestPort);
}

} // namespace form
