#include "fake_parport.h"
#include "platform/linux/printer_port.h"
#include "runtime/errors.h"

#include <cerrno>
#include <filesystem>
#include <gmock/gmock.h>
#include <linux/ppdev.h>
#include <sys/ioctl.h>

using linux_ports::PrinterPort;
using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::HasSubstr;

namespace {

std::string whyRefused(const std::string& device) {
    try {
        const PrinterPort port(device);
    } catch (const runtime::ObjectError& error) {
        return error.what();
    }
    return "not refused";
}

} // namespace

TEST(PrinterPort, ClaimsOnceAloneAndDrivesTheLinesOut) {
    FakeParport device;
    PrinterPort port("/dev/parport0");
    for (int bit = 0; bit < 8; ++bit)
        port.setBit(bit);
    EXPECT_EQ(device.calls(PPEXCL), 1);
    EXPECT_EQ(device.calls(PPCLAIM), 1);
    EXPECT_EQ(device.direction(), 0);
    EXPECT_EQ(device.calls(PPWDATA), 8);
}

TEST(PrinterPort, ChangesOneBitOfTheByteItHolds) {
    FakeParport device;
    device.setData(0b1010'0000);
    PrinterPort port("/dev/parport0");
    EXPECT_THAT(device.takeWritten(), ElementsAre()) << "opening moves no line";
    port.setBit(0);
    port.clearBit(7);
    port.clearBit(6);
    port.setBit(0);
    EXPECT_THAT(device.takeWritten(), ElementsAre(0b1010'0001, 0b0010'0001, 0b0010'0001, 0b0010'0001));
    device.setData(0);
    port.setBit(1);
    EXPECT_EQ(device.data(), 0b0010'0011) << "the byte is our own, not what the lines read back";
}

TEST(PrinterPort, RefusedWriteNamesTheDeviceAndKeepsTheByte) {
    FakeParport device;
    PrinterPort port("/dev/parport0");
    port.setBit(3);
    device.fail(PPWDATA, ENXIO);
    try {
        port.setBit(5);
        FAIL() << "the write went through";
    } catch (const runtime::ObjectError& error) {
        EXPECT_THAT(error.what(), HasSubstr("/dev/parport0"));
    }
    device.fail(PPWDATA, 0);
    port.setBit(1);
    EXPECT_EQ(device.data(), 0b0000'1010);
}

TEST(PrinterPort, SaysWhyItCannotBeOpened) {
    FakeParport device;
    EXPECT_THAT(whyRefused("/dev/parport7"),
                AllOf(HasSubstr("/dev/parport7"), HasSubstr("no such printer port")));
    device.fail(PPCLAIM, ENXIO);
    EXPECT_THAT(whyRefused("/dev/parport0"), AllOf(HasSubstr("/dev/parport0"), HasSubstr("another driver")));
    device.fail(PPCLAIM, EINVAL);
    EXPECT_THAT(whyRefused("/dev/parport0"), HasSubstr("cannot be claimed"));
    device.fail(PPCLAIM, 0);
    device.fail(PPDATADIR, EIO);
    EXPECT_THAT(whyRefused("/dev/parport0"), HasSubstr("data lines"));
    EXPECT_THAT(whyRefused("/dev/null"), HasSubstr("not a printer port"));
    device.fail(PPDATADIR, 0);
    EXPECT_EQ(whyRefused("/dev/parport0"), "not refused");
}
