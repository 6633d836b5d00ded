#pragma once

#include <string>
#include <vector>

namespace hid_ports {

/// The devices ("/dev/hidraw0") of the K8055 boards with this address, 0 to 3.
std::vector<std::string> pathsOfBoards(int card);

// Each system has its own implementation of what follows.

/// The reason for the user why the board of this device cannot be opened.
std::string whyNotOpened(const std::string& path);

/// The reason for the user why a plugged-in board with this address has no device; empty if no such board is
/// plugged in.
std::string whyNoNode(int card);

} // namespace hid_ports
