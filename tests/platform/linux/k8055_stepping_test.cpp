#include "config/records.h"
#include "event_loop.h"
#include "fake_k8055.h"
#include "platform/hid/k8055.h"
#include "platform/linux/timers.h"
#include "tests/desk.h"

#include <gmock/gmock.h>

using namespace std::chrono_literals;
using ::testing::AllOf;
using ::testing::HasSubstr;

namespace {

/// The program without a window on real timers and an emulated board, both engines at 1000 steps/s.
class K8055Stepping : public ::testing::Test, protected SimulatedOutside {
  protected:
    K8055Stepping() {
        bus.plugIn(2, 0);
        namespace record = config::record;
        config::RecordFile(storage, folder.path() / "save.cfg")
            .write({config::integerRecord(record::kStepsA, 200), config::singleRecord(record::kUnitsA, 1),
                    config::integerRecord(record::kFastA, 1000), config::integerRecord(record::kFastB, 1000),
                    config::integerRecord(record::kSlowA, 1000), config::integerRecord(record::kSlowB, 1000),
                    config::integerRecord(record::kStepsB, 200), config::singleRecord(record::kUnitsB, 1),
                    config::integerRecord(record::kFunction, form::kCoilTuner)});
        app::Ports outside = ports();
        outside.usb = usb;
        outside.timers = timers;
        controller = std::make_unique<app::Controller>(outside, folder.path());
        controller->start();
    }

    form::Form1& f() { return controller->form(); }
    void runBoth() {
        f().cmdAv.Click.fire();
        f().cmdAvB.Click.fire();
    }
    void stopBoth() {
        f().cmdAlt.Click.fire();
        f().cmdAltB.Click.fire();
    }
    static int steps(float position) { return static_cast<int>(std::lround(position * 200)); }
    int stepsA() { return steps(f().sngPosA); }
    int stepsB() { return steps(f().sngPosB); }

    /// The patterns of one engine in the order in which the board got them; all must be full steps in turn.
    static int countSteps(const std::vector<FakeK8055::Report>& reports, int shift) {
        std::vector<int> patterns;
        for (const auto& report : reports) {
            const int pattern = report.at(2) >> shift & 15;
            if (pattern != 0 && (patterns.empty() || patterns.back() != pattern)) patterns.push_back(pattern);
        }
        for (std::size_t i = 0; i < patterns.size(); ++i)
            EXPECT_EQ(patterns[i], 8 >> (i % 4)) << "step " << i << " of the engine at bit " << shift;
        return static_cast<int>(patterns.size());
    }

    FakeK8055 bus;
    EventLoop loop;
    TemporaryFolder folder;
    linux_ports::Timers timers{loop.watcher};
    hid_ports::K8055 usb{2};
    std::unique_ptr<app::Controller> controller;
};

TEST_F(K8055Stepping, ASlowBoardGetsEveryStepOfBothEngines) {
    bus.takeFor(8ms);
    f().chkUsbOn.userClick();
    ASSERT_EQ(f().lblUsb.Caption, "USB Card 2 connected");
    runBoth();
    ASSERT_TRUE(EventLoop::until([&] { return stepsA() > 150 && stepsB() > 150; }, 60000));
    EXPECT_LT(std::abs(stepsA() - stepsB()), 60) << "an engine starves";
    ASSERT_TRUE(EventLoop::until([&] { return !f().rateNotice.Caption.get().empty(); }));
    EXPECT_THAT(f().rateNotice.Caption.get(),
                AllOf(HasSubstr("Engine 1: "), HasSubstr(" of 1000, Engine 2: ")));
    stopBoth();
    ASSERT_TRUE(EventLoop::until([&] { return usb.taken(255); }));
    const auto reports = bus.takeReports();
    EXPECT_EQ(countSteps(reports, 0), stepsA());
    EXPECT_EQ(countSteps(reports, 4), stepsB());
    f().cmdOff.Click.fire();
    ASSERT_TRUE(EventLoop::until([&] { return bus.outputs() == 0; }));
    EXPECT_TRUE(dialogs.takeMessages().empty());
}

TEST_F(K8055Stepping, PullingThePlugInMidMoveStopsAllWithOneBoxAndReplugGoesOn) {
    f().chkUsbOn.userClick();
    runBoth();
    ASSERT_TRUE(EventLoop::until([&] { return stepsA() > 50 && stepsB() > 50; }));
    bus.unplug(0);
    ASSERT_TRUE(EventLoop::until([&] { return !f().chkUsbOn.ticked(); }));
    EXPECT_FALSE(f().Timer1.Enabled || f().Timer4.Enabled);
    EXPECT_EQ(port.data(), 255);
    EXPECT_EQ(f().chkUsbOn.Caption, "USB Off");
    EXPECT_EQ(f().lblUsb.Caption, "USB Card 0 disconnected");
    EventLoop::runFor(100);
    const auto messages = dialogs.takeMessages();
    ASSERT_EQ(messages.size(), 1U);
    EXPECT_THAT(messages[0].text, AllOf(HasSubstr("The K8055 board does not answer any more"),
                                        HasSubstr("Both engines are stopped")));

    f().chkUsbOn.userClick();
    EXPECT_EQ(f().lblUsb.Caption, "USB Card -1 not found");
    f().chkUsbOn.userClick();
    bus.plugIn(2, 1);
    f().chkUsbOn.userClick();
    ASSERT_EQ(f().lblUsb.Caption, "USB Card 2 connected");
    const int before = stepsA();
    bus.takeReports();
    runBoth();
    ASSERT_TRUE(EventLoop::until([&] { return stepsA() > before + 20; }));
    EXPECT_GT(bus.takeReports().size(), 10U);
    EXPECT_TRUE(dialogs.takeMessages().empty());
}

TEST_F(K8055Stepping, PullingThePlugWhileNothingMovesIsTold) {
    f().chkUsbOn.userClick();
    bus.unplug(0);
    ASSERT_TRUE(EventLoop::until([&] { return !f().chkUsbOn.ticked(); }));
    const auto messages = dialogs.takeMessages();
    ASSERT_EQ(messages.size(), 1U);
    EXPECT_THAT(messages[0].text, AllOf(HasSubstr("it is unplugged"), HasSubstr("The outputs are off")));
}

TEST_F(K8055Stepping, ABoardThatHangsInMidMoveStopsAllWithOneBox) {
    f().chkUsbOn.userClick();
    runBoth();
    ASSERT_TRUE(EventLoop::until([&] { return stepsA() > 50 && stepsB() > 50; }));
    bus.hang();
    ASSERT_TRUE(EventLoop::until([&] { return !f().chkUsbOn.ticked(); }));
    EXPECT_FALSE(f().Timer1.Enabled || f().Timer4.Enabled);
    const auto messages = dialogs.takeMessages();
    ASSERT_EQ(messages.size(), 1U);
    EXPECT_THAT(messages[0].text,
                AllOf(HasSubstr("more than a second"), HasSubstr("could NOT be switched off")));
    bus.release();
    EXPECT_TRUE(EventLoop::until([&] { return bus.outputs() == 0; })) << "off came too late or never";
}

} // namespace
