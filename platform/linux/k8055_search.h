#pragma once

#include <string>
#include <vector>

namespace linux_ports {

/// Device nodes ("/dev/hidraw0") of the K8055 boards with this address, 0 to 3.
std::vector<std::string> pathsOfBoards(int card);

/// In words for the user, why the board behind this node cannot be opened.
std::string whyNotOpened(const std::string& path);

/// In words for the user, why a board with this address that is plugged in has no node; empty when none is.
std::string whyNoNode(int card);

} // namespace linux_ports
