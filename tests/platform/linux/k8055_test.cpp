#include "event_loop.h"
#include "fake_k8055.h"
#include "platform/hid/k8055.h"
#include "runtime/errors.h"

#include <cerrno>
#include <gmock/gmock.h>
#include <sys/wait.h>
#include <unistd.h>

using hid_ports::K8055;
using namespace std::chrono_literals;
using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

namespace {

using Report = FakeK8055::Report;

Report report(std::uint8_t outputs) {
    return {0, 5, outputs, 0, 0, 0, 0, 0, 0};
}

bool settles(K8055& board, int mask = 255) {
    return EventLoop::until([&] { return board.taken(mask); });
}

/// The words of the error that `call` ends with, within some seconds.
std::string failure(const std::function<void()>& call) {
    std::string words;
    EventLoop::until([&] {
        try {
            call();
        } catch (const runtime::ObjectError& error) {
            words = error.what();
        }
        return !words.empty();
    });
    return words;
}

} // namespace

TEST(K8055, AnswersWithTheAddressOfTheChosenCardAlone) {
    FakeK8055 bus;
    K8055 first(0), third(2);
    EXPECT_EQ(first.openDevice(0), -1);
    EXPECT_EQ(first.refusal(), "");
    bus.plugIn(2, 0);
    EXPECT_EQ(first.openDevice(0), -1);
    EXPECT_EQ(third.openDevice(0), 2);
    EXPECT_EQ(first.openDevice(2), 2);
    bus.plugIn(0, 1);
    EXPECT_EQ(first.openDevice(0), 0);
    EXPECT_THROW(K8055(4), runtime::ObjectError);
    EXPECT_THROW(K8055(-1), runtime::ObjectError);
}

TEST(K8055, TellsWhichDeviceItOpensAndWhenItLetsGo) {
    FakeK8055 bus;
    bus.plugIn(1, 3);
    std::vector<std::string> events;
    {
        K8055 board(1, {.opened = [&](const std::string& path) { events.push_back(path); },
                        .closed = [&] { events.emplace_back("closed"); }});
        EXPECT_THAT(events, IsEmpty());
        board.openDevice(0);
        board.closeDevice();
        board.closeDevice();
        EXPECT_THAT(events, ElementsAre("/dev/hidraw3", "closed"));
        board.openDevice(0);
        EXPECT_EQ(bus.openFiles(3), 1);
    }
    EXPECT_THAT(events, ElementsAre("/dev/hidraw3", "closed", "/dev/hidraw3", "closed"));
    EXPECT_TRUE(EventLoop::until([&] { return bus.openFiles(3) == 0; })) << "left open";
}

TEST(K8055, SendsEachByteAsOneReportOfNine) {
    FakeK8055 bus;
    bus.plugIn(0, 0);
    K8055 board(0);
    board.writeAllDigital(255);
    EXPECT_TRUE(board.taken(255)) << "no card is open";
    ASSERT_EQ(board.openDevice(0), 0);
    EXPECT_TRUE(board.taken(255));
    for (const int outputs : {72, 0, 255, 255}) {
        board.writeAllDigital(outputs);
        ASSERT_TRUE(settles(board));
    }
    board.closeDevice(); // and nobody guards it any more
    EXPECT_THAT(bus.takeReports(), ElementsAre(report(72), report(0), report(255), report(255), report(0)));
}

TEST(K8055, ASlowBoardNeverHoldsTheCallerAndGetsTheNewestByte) {
    FakeK8055 bus;
    bus.plugIn(0, 0);
    K8055 board(0);
    board.openDevice(0);
    board.writeAllDigital(0);
    ASSERT_TRUE(settles(board));
    bus.takeReports();
    bus.hang();
    board.writeAllDigital(0x18);
    ASSERT_FALSE(board.taken(15));
    for (int i = 0; i < 10000; ++i) // each would take for ever
        board.writeAllDigital(i % 256);
    board.writeAllDigital(0x40);
    board.writeAllDigital(0); // off
    EXPECT_FALSE(board.taken(240));
    EXPECT_THAT(bus.takeReports(), IsEmpty());
    bus.release();
    ASSERT_TRUE(settles(board));
    const auto reports = bus.takeReports();
    ASSERT_THAT(reports.size(), testing::Le(2U));
    EXPECT_EQ(reports.back(), report(0));
}

TEST(K8055, ClosingLetsTheLastByteArrive) {
    FakeK8055 bus;
    bus.plugIn(0, 0);
    bus.takeFor(20ms);
    K8055 board(0);
    board.openDevice(0);
    board.writeAllDigital(8);
    board.writeAllDigital(0);
    board.closeDevice();
    EXPECT_EQ(bus.outputs(), 0);
    EXPECT_TRUE(EventLoop::until([&] { return bus.openFiles(0) == 0; }));
}

TEST(K8055, ABoardThatHangsIsGivenUpAndFindsItsOutputsOffWhenItComesBack) {
    FakeK8055 bus;
    bus.plugIn(0, 0);
    K8055 board(0);
    board.openDevice(0);
    bus.hang();
    board.writeAllDigital(8);
    EXPECT_THAT(failure([&] { board.taken(15); }),
                AllOf(HasSubstr("does not answer any more"), HasSubstr("more than a second")));
    EXPECT_THROW(board.writeAllDigital(0), runtime::ObjectError);
    const auto before = std::chrono::steady_clock::now();
    EXPECT_THROW(board.closeDevice(), runtime::ObjectError);
    EXPECT_GE(std::chrono::steady_clock::now() - before, 150ms) << "no time was left for the last byte";
    bus.release();
    EXPECT_TRUE(EventLoop::until([&] { return bus.outputs() == 0 && bus.openFiles(0) == 0; }));
}

TEST(K8055, NoBoardIsOpenedBeforeTheLastOneHasLetGoOfItsLastReport) {
    FakeK8055 bus;
    bus.plugIn(0, 0);
    bus.plugIn(1, 1);
    K8055 board(0);
    board.openDevice(0);
    bus.hang();
    board.writeAllDigital(8);
    EXPECT_THROW(board.closeDevice(), runtime::ObjectError);
    for (const int card : {0, 1}) {
        K8055 chosen(card); // the kernel would keep whoever opens it
        EXPECT_EQ(chosen.openDevice(0), -1);
        EXPECT_THAT(chosen.refusal(), HasSubstr("still does not answer"));
    }
    bus.release();
    ASSERT_TRUE(EventLoop::until([&] { return board.openDevice(0) == 0; }));
    EXPECT_EQ(board.refusal(), "");
    board.writeAllDigital(4);
    ASSERT_TRUE(settles(board));
    EXPECT_EQ(bus.outputs(), 4);
}

TEST(K8055, EachFaultIsNamedAndABoardThatStaysFindsItsOutputsOffAfterIt) {
    struct Fault {
        std::function<void(FakeK8055&)> bring, lift;
        std::string words;
    };
    const Fault faults[] = {
        {[](FakeK8055& bus) { bus.unplug(0); }, {}, "it is unplugged"},
        {[](FakeK8055& bus) { bus.failWith(EIO); }, [](FakeK8055& bus) { bus.failWith(0); },
         "Input/output error"},
        {[](FakeK8055& bus) { bus.takeOnly(3); }, [](FakeK8055& bus) { bus.takeOnly(9); },
         "it took 3 of 9 bytes"},
        {[](FakeK8055& bus) { bus.takeOnly(0); }, [](FakeK8055& bus) { bus.takeOnly(9); },
         "it took 0 of 9 bytes"},
    };
    for (const Fault& fault : faults) {
        SCOPED_TRACE(fault.words);
        FakeK8055 bus;
        bus.plugIn(0, 0);
        int guarded = 0;
        K8055 board(0, {.opened = [&](const std::string&) { ++guarded; }, .closed = [&] { --guarded; }});
        board.openDevice(0);
        board.writeAllDigital(4);
        ASSERT_TRUE(settles(board));
        fault.bring(bus);
        board.writeAllDigital(8);
        EXPECT_THAT(failure([&] { board.taken(15); }),
                    AllOf(HasSubstr("The K8055 board does not answer any more"), HasSubstr(fault.words)));
        EXPECT_THROW(board.writeAllDigital(0), runtime::ObjectError);
        EXPECT_THROW(board.closeDevice(), runtime::ObjectError);
        EXPECT_NO_THROW(board.writeAllDigital(0)) << "closed after all";
        if (!fault.lift) {
            EXPECT_EQ(guarded, 0) << "it is gone";
            continue;
        }
        EXPECT_EQ(bus.outputs(), 4);
        EXPECT_EQ(guarded, 1) << "its coils are on";
        fault.lift(bus);
        EXPECT_TRUE(EventLoop::until([&] { return bus.outputs() == 0 && bus.openFiles(0) == 0; }));
        EXPECT_EQ(board.openDevice(0), 0);
        EXPECT_EQ(guarded, 1) << "once more";
        board.closeDevice();
        EXPECT_EQ(guarded, 0);
    }
}

TEST(K8055, AFaultThatPassesIsOverWhenTheBoardIsClosed) {
    FakeK8055 bus;
    bus.plugIn(0, 0);
    K8055 board(0);
    board.openDevice(0);
    bus.takeOnly(3);
    board.writeAllDigital(8);
    EXPECT_NE(failure([&] { board.taken(15); }), "");
    bus.takeOnly(9);
    ASSERT_TRUE(EventLoop::until([&] { return bus.outputs() == 0; }));
    EXPECT_NO_THROW(board.closeDevice()) << "its outputs are off";
}

TEST(K8055, WithoutAGuardNoBoardIsOpened) {
    FakeK8055 bus;
    bus.plugIn(0, 0);
    K8055 board(0, {.opened = [](const std::string&) { throw runtime::ObjectError("no guard"); },
                    .closed = [] { ADD_FAILURE(); }});
    EXPECT_EQ(board.openDevice(0), -1);
    EXPECT_EQ(board.refusal(), "no guard");
    board.writeAllDigital(8);
    EXPECT_EQ(bus.openFiles(0), 0);
    EXPECT_THAT(bus.takeReports(), IsEmpty());
}

TEST(K8055, AnUnplugIsNoticedWhileNothingIsSent) {
    FakeK8055 bus;
    bus.plugIn(0, 0);
    K8055 board(0);
    board.openDevice(0);
    board.writeAllDigital(8);
    ASSERT_TRUE(settles(board));
    EventLoop::runFor(1200);
    EXPECT_TRUE(board.taken(255));
    bus.unplug(0);
    EXPECT_THAT(failure([&] { board.taken(255); }), HasSubstr("it is unplugged"));
    EXPECT_THROW(board.closeDevice(), runtime::ObjectError) << "its outputs were on";
}

TEST(K8055, ABoardThatTheKernelPassesOverIsToldApartFromAMissingOne) {
    FakeK8055 bus;
    bus.plugInWithoutNode(2, 0, "");
    bus.plugInWithoutNode(3, 1, "vmk80xx");
    K8055 missing(1), passedOver(2), taken(3);
    EXPECT_EQ(missing.openDevice(0), -1);
    EXPECT_EQ(missing.refusal(), "");
    EXPECT_EQ(passedOver.openDevice(0), -1);
    EXPECT_THAT(passedOver.refusal(), AllOf(HasSubstr("usbhid passes such boards over"),
                                            HasSubstr("options usbhid quirks=0x10cf:0x5502:0x40000000\n"),
                                            Not(HasSubstr("alias"))));
    EXPECT_EQ(taken.openDevice(0), -1);
    EXPECT_THAT(taken.refusal(),
                AllOf(HasSubstr("the driver vmk80xx has it"), HasSubstr("quirks=0x10cf:0x5503:"),
                      HasSubstr("alias usb:v10CFp5503d* usbhid\n")));
}

TEST(K8055, IsFoundAgainAfterReplugging) {
    FakeK8055 bus;
    bus.plugIn(0, 0);
    K8055 board(0);
    ASSERT_EQ(board.openDevice(0), 0);
    bus.unplug(0);
    board.writeAllDigital(8);
    EXPECT_NE(failure([&] { board.taken(15); }), "");
    EXPECT_EQ(board.openDevice(0), -1);
    bus.plugIn(0, 1);
    ASSERT_EQ(board.openDevice(0), 0);
    board.writeAllDigital(4);
    ASSERT_TRUE(settles(board));
    EXPECT_EQ(bus.outputs(), 4);
}

TEST(K8055, AMissingRightIsToldApartFromAMissingBoard) {
    FakeK8055 bus;
    bus.plugIn(0, 0);
    bus.forbid(0);
    // As an ordinary user, in a process of its own.
    const pid_t child = ::fork();
    if (child == 0) {
        if (::geteuid() == 0 && ::setuid(65534) != 0) ::_exit(9);
        K8055 board(0);
        const int result = board.openDevice(0);
        const std::string words = board.refusal();
        const bool clear = words.find("/dev/hidraw0") != std::string::npos &&
                           words.find("no permission") != std::string::npos;
        ::_exit(result == -1 && clear ? 0 : 1);
    }
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << status;
}
