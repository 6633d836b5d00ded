#pragma once

#include <string>
#include <vector>

namespace linux_ports {

/// Device nodes ("/dev/hidraw0") of the K8055 boards with this address, 0 to 3.
std::vector<std::string> pathsOfBoards(int card);

/// The reason for the user why the board of this node cannot be opened.
std::string whyNotOpened(const std::string& path);

/// The reason for the user why a plugged-in board with this address has no node; empty if no such board is
/// plugged in.
std::string whyNoNode(int card);

} // namespace linux_ports
