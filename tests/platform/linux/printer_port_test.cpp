#include "fake_parport.h"
#include "platform/linux/printer_port.h"
#include "runtime/errors.h"
#include "tests/desk.h"

#include <cerrno>
#include <chrono>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <linux/ppdev.h>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <unistd.h>

using linux_ports::PrinterPort;
using namespace std::chrono_literals;
using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::EndsWith;
using ::testing::HasSubstr;

namespace {

std::string whyRefused(const std::string& device, const PrinterPort::Limits& limits = {}) {
    try {
        const PrinterPort port(device, limits);
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
    EXPECT_EQ(device.calls(PPWDATA), 8);
    auto requests = device.requests();
    requests.resize(4);
    EXPECT_THAT(requests, ElementsAre(PPEXCL, PPCLAIM, PPDATADIR, PPRDATA));
    EXPECT_EQ(device.direction(), 0);
    EXPECT_EQ(::fcntl(port.descriptor(), F_GETFD) & FD_CLOEXEC, FD_CLOEXEC);
}

TEST(PrinterPort, ADriverThatNeverAnswersCostsNoMoreThanThePatience) {
    FakeParport device;
    device.stall(PPCLAIM);
    const auto before = std::chrono::steady_clock::now();
    EXPECT_THAT(whyRefused("/dev/parport0", {.patience = 50ms}),
                AllOf(HasSubstr("/dev/parport0"), HasSubstr("does not answer")));
    EXPECT_GE(std::chrono::steady_clock::now() - before, 50ms);
    device.release();
    const PrinterPort port("/dev/parport0"); // the late claim was given back
    EXPECT_EQ(device.calls(PPCLAIM), 2);
}

TEST(PrinterPort, NothingIsClaimedWhereItCannotBeHadAlone) {
    FakeParport device;
    device.fail(PPEXCL, EINVAL);
    EXPECT_THAT(whyRefused("/dev/parport0"), HasSubstr("not a printer port"));
    EXPECT_EQ(device.calls(PPCLAIM), 0);
}

TEST(PrinterPort, NamesTheDriverThatHoldsThePort) {
    FakeParport device;
    const TemporaryFolder proc;
    const PrinterPort::Limits limits = {.drivers = proc.path()};
    device.fail(PPCLAIM, ENXIO);
    EXPECT_THAT(whyRefused("/dev/parport0", limits),
                HasSubstr("in use by another driver, or no printer port"));
    const auto drivers = proc.path() / "parport0" / "devices";
    std::filesystem::create_directories(drivers / "lp");
    std::ofstream(drivers / "active") << "lp\n";
    EXPECT_THAT(whyRefused("/dev/parport0", limits),
                EndsWith("in use by another driver: lp (the printer driver: sudo rmmod lp)"));
    std::filesystem::create_directories(drivers / "ppdev0");
    std::filesystem::create_directories(proc.path() / "parport1" / "devices" / "plip");
    EXPECT_THAT(whyRefused("/dev/parport0", limits), EndsWith("in use by another driver: lp, ppdev0"));
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
        EXPECT_THAT(error.what(), AllOf(HasSubstr("/dev/parport0"), HasSubstr("has vanished")));
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
    device.fail(PPCLAIM, ENODEV);
    EXPECT_THAT(whyRefused("/dev/parport0"), HasSubstr("no printer port behind it"));
    device.fail(PPCLAIM, EINVAL);
    EXPECT_THAT(whyRefused("/dev/parport0"), HasSubstr("cannot be claimed"));
    device.fail(PPCLAIM, 0);
    device.fail(PPDATADIR, EIO);
    EXPECT_THAT(whyRefused("/dev/parport0"), HasSubstr("data lines"));
    EXPECT_THAT(whyRefused("/dev/null"), HasSubstr("not a printer port"));
    EXPECT_THAT(whyRefused("/"), HasSubstr("not a printer port"));
    device.fail(PPDATADIR, 0);
    EXPECT_EQ(whyRefused("/dev/parport0"), "not refused");
}

TEST(PrinterPort, WithoutTheRightNamesTheGroup) {
    // As an ordinary user, in a process of its own.
    const TemporaryFolder folder;
    const auto device = folder.path() / "parport";
    std::ofstream(device).close();
    std::filesystem::permissions(device, std::filesystem::perms::none);
    const pid_t child = ::fork();
    if (child == 0) {
        if (::geteuid() == 0 && ::setuid(65534) != 0) ::_exit(9);
        ::_exit(whyRefused(device).find("no permission: add yourself to the group lp") == std::string::npos);
    }
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << status;
}
