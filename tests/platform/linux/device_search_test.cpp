#include "platform/linux/device_search.h"

#include <gmock/gmock.h>
#include <umockdev.h>

using ::testing::Contains;

TEST(DeviceSearch, ListsSerialDevicesByTheirUsbName) {
    UMockdevTestbed* testbed = umockdev_testbed_new();
    GError* error = nullptr;
    umockdev_testbed_add_from_string(testbed,
                                     "P: /devices/usb1/1-1\nE: SUBSYSTEM=usb\nA: product=Arduino Uno\n\n"
                                     "P: /devices/usb1/1-1/1-1:1.0\nE: SUBSYSTEM=usb\n\n"
                                     "P: /devices/usb1/1-1/1-1:1.0/tty/ttyACM3\nN: ttyACM3\n"
                                     "E: DEVNAME=/dev/ttyACM3\nE: SUBSYSTEM=tty\nL: device=../..\n",
                                     &error);
    ASSERT_EQ(error, nullptr) << error->message;
    std::vector<std::string> found;
    for (const auto& device : linux_ports::findOutputDevices())
        found.push_back(device.port + " " + device.name);
    EXPECT_THAT(found, Contains("firmata:/dev/ttyACM3 Arduino Uno (ttyACM3)"));
    g_object_unref(testbed);
}
