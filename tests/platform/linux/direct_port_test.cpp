#include "platform/linux/direct_port.h"
#include "runtime/errors.h"

#include <cerrno>
#include <gmock/gmock.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

using linux_ports::DirectPort;
using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Pair;

namespace {

/// A register that remembers what was done to it. The real ones of the machine under test are left alone:
/// nobody knows what hangs on them.
class FakePorts : public linux_ports::IoPorts {
  public:
    int allow(int port) override {
        allowed = port;
        return refusal;
    }
    std::uint8_t read(int port) override {
        EXPECT_EQ(port, allowed);
        return data;
    }
    void write(int port, std::uint8_t value) override { writes.emplace_back(port, value); }

    int refusal = 0;
    int allowed = 0;
    std::uint8_t data = 0;
    std::vector<std::pair<int, int>> writes;
};

std::string whyRefused(std::uint16_t address, linux_ports::IoPorts& ports) {
    try {
        const DirectPort port(address, ports);
    } catch (const runtime::ObjectError& error) {
        return error.what();
    }
    return "not refused";
}

constexpr const char* kNoRight =
    "no permission for port 0x378: direct access needs root or CAP_SYS_RAWIO; with "
    "the driver ppdev use --port /dev/parport0";

} // namespace

TEST(DirectPort, ChangesOneBitOfTheByteItHolds) {
    FakePorts ports;
    ports.data = 0b1010'0000;
    DirectPort port(0x378, ports);
    EXPECT_EQ(ports.allowed, 0x378);
    EXPECT_THAT(ports.writes, IsEmpty()) << "opening moves no line";
    ports.data = 0;
    port.setBit(0);
    port.clearBit(7);
    port.setBit(7);
    EXPECT_THAT(ports.writes,
                ElementsAre(Pair(0x378, 0b1010'0001), Pair(0x378, 0b0010'0001), Pair(0x378, 0b1010'0001)));
}

TEST(DirectPort, SaysWhyItIsRefused) {
    FakePorts ports;
    EXPECT_EQ(whyRefused(0xFFF0, ports), "not refused");
    EXPECT_EQ(ports.allowed, 0xFFF0);
    ports.refusal = EPERM;
    EXPECT_EQ(whyRefused(0x378, ports), kNoRight);
    ports.refusal = ENOSYS;
    EXPECT_THAT(whyRefused(0x378, ports), AllOf(HasSubstr("0x378"), HasSubstr("has no such ports")));
    ports.refusal = ENOMEM;
    EXPECT_THAT(whyRefused(0x378, ports), HasSubstr("Cannot allocate memory"));
}

TEST(DirectPort, TheKernelRefusesAnOrdinaryUser) {
    // In a process of its own, which gives its rights up.
    const pid_t child = ::fork();
    if (child == 0) {
        if (::geteuid() == 0 && ::setuid(65534) != 0) ::_exit(9);
        const std::string words = whyRefused(0x378, linux_ports::machineIoPorts());
        ::_exit(words == kNoRight || words.find("no such ports") != std::string::npos ? 0 : 1);
    }
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << status;
}
