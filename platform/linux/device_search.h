#pragma once

#include "platform/hardware.h"

#include <string>
#include <vector>

namespace linux_ports {

/// The printer ports, serial devices on USB by their USB name, and GPIO chips of this computer.
std::vector<platform::OutputDevice> findOutputDevices();

/// The lines of "gpiochip0"; empty if the chip is not there or may not be opened.
std::vector<platform::GpioLine> gpioLinesOf(const std::string& chip);

} // namespace linux_ports
