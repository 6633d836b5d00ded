#include "platform/hid/k8055_search.h"

#include <hidapi/hidapi.h>
#include <memory>

namespace hid_ports {

namespace {

constexpr unsigned short kVendor = 0x10cf;       // Velleman
constexpr unsigned short kFirstProduct = 0x5500; // plus the card's address

} // namespace

std::vector<std::string> pathsOfBoards(int card) {
    const std::unique_ptr<hid_device_info, decltype(&hid_free_enumeration)> found(
        hid_enumerate(kVendor, static_cast<unsigned short>(kFirstProduct + card)), &hid_free_enumeration);
    std::vector<std::string> paths;
    for (const hid_device_info* info = found.get(); info; info = info->next)
        paths.emplace_back(info->path);
    return paths;
}

} // namespace hid_ports
