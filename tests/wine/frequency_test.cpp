#include "tests/wine/station_window.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QLabel>
#include <QTest>
#include <QTimer>
#include <cmath>

namespace {

class Frequency : public StationWindow {
  protected:
    /// Keeps memory n at these positions, as a user does.
    void keepMemory(int n, float a, float b, const std::string& label) {
        f().sngPosA = a;
        f().sngPosB = b;
        dialogs.okAnswers.push_back(true);
        dialogs.textAnswers.emplace_back(label);
        f().lblMem[n].DblClick.fire();
    }
    /// Two memories and Auto on: what frequencies there are to follow.
    void followFrequency() {
        keepMemory(1, 2.0F, 3.0F, "7.050");
        keepMemory(2, 4.0F, 5.0F, "14.05");
        click("chkAutoMemOnOff");
        ASSERT_TRUE(shows("lblAutoMemOnOff", "Auto"));
    }
    /// Both engines have come to rest here, as near as single precision lets them: to within a step.
    ::testing::AssertionResult standsAt(double a, double b) {
        constexpr double kNear = 0.05 * 1.1;
        const auto near = [](double position, double wanted) { return std::fabs(position - wanted) < kNear; };
        const auto rest = [this] {
            return !f().Timer1.Enabled && !f().Timer2.Enabled && !f().Timer3.Enabled && !f().Timer4.Enabled;
        };
        if (waitFor([&] { return rest() && near(f().sngPosA, a) && near(f().sngPosB, b); }))
            return ::testing::AssertionSuccess();
        return ::testing::AssertionFailure()
               << "the engines stand at " << f().sngPosA << " and " << f().sngPosB;
    }
};

TEST_F(Frequency, ComesFromHamRadioDeluxeAndRecallsMemories) {
    startBridge();
    std::optional<DdeServer> radio;
    radio.emplace(DdeServer::HamRadioDeluxe, "7.012.000");
    start(form::kCoilTuner, form::kHamRadioDeluxe);
    click("cmdAutoMemConn");
    ASSERT_TRUE(shows("lblAutoMemConn", "Connected"));
    EXPECT_TRUE(shows("lblFreqRx", "7.012.000"));
    followFrequency();
    EXPECT_TRUE(standsAt(2, 3));
    radio->set("14.074.000");
    EXPECT_TRUE(shows("lblFreqRx", "14.074.000"));
    EXPECT_TRUE(standsAt(4, 5));

    radio->set("14.074.000 Gr\u00FC\u00DFe");
    EXPECT_TRUE(shows("lblFreqRx", "14.074.000 Gr\u00FC\u00DFe"));
    radio->tell("bare 14.080.000");
    EXPECT_TRUE(shows("lblFreqRx", "14.080.000"));

    // It quits, and comes back.
    radio->tell("quit");
    ASSERT_TRUE(radio->ends());
    EXPECT_TRUE(shows("lblAutoMemConn", "Connect"));
    EXPECT_TRUE(shows("lblFreqRx", ""));
    radio.emplace(DdeServer::HamRadioDeluxe, "7.033.000");
    click("cmdAutoMemConn");
    EXPECT_TRUE(shows("cmdAutoMemConn", "0"));
    click("cmdAutoMemConn");
    EXPECT_TRUE(shows("lblAutoMemConn", "Connected"));
    EXPECT_TRUE(shows("lblFreqRx", "7.033.000"));
    click("cmdAutoMemConn");
    radio->line("disconnected");
}

TEST_F(Frequency, IsAnErrorWithoutHamRadioDeluxeOrWithoutABridge) {
    start(form::kCoilTuner, form::kHamRadioDeluxe);
    constexpr int kSecondAndLeeway = 1500;
    const auto fails = [&] {
        f().lblAutoMemConn.Caption = "waiting";
        EXPECT_TRUE(shows("lblAutoMemConn", "waiting"));
        QElapsedTimer clock;
        clock.start();
        click("cmdAutoMemConn");
        EXPECT_TRUE(shows("lblAutoMemConn", "Error"));
        EXPECT_TRUE(shows("cmdAutoMemConn", "0"));
        return clock.elapsed() < kSecondAndLeeway;
    };
    EXPECT_TRUE(fails() || fails()) << "it must not take longer than a second";
    startBridge();
    EXPECT_TRUE(fails() || fails());
}

TEST_F(Frequency, ComesFromLogger32WhichIsSubscribedToAnew) {
    startBridge();
    const LoggerWindow another("Logger32 - Logbook");
    start(form::kCoilTuner, form::kLogger32);
    click("cmdAutoMemConn");
    ASSERT_TRUE(shows("lblAutoMemConn", "Disconnected"));

    std::optional<LoggerWindow> logger;
    logger.emplace();
    EXPECT_TRUE(shows("lblAutoMemConn", "Connected"));
    const std::string subscribed = logger->line("subscribed ");
    logger->tell("frequency 7050000");
    EXPECT_TRUE(shows("lblLog32DataM", " 7.050.000"));
    followFrequency();
    EXPECT_TRUE(standsAt(2, 3));
    logger->tell("frequency 14200000");
    EXPECT_TRUE(shows("lblLog32DataM", "14.200.000"));
    EXPECT_TRUE(standsAt(4, 5));

    logger->tell("quit");
    ASSERT_TRUE(logger->ends());
    EXPECT_TRUE(shows("lblAutoMemConn", "Disconnected"));
    logger.emplace();
    EXPECT_EQ(logger->line("subscribed "), subscribed) << "the same window of the bridge's";
    EXPECT_TRUE(shows("lblAutoMemConn", "Connected"));
    logger->tell("frequency 7033000");
    EXPECT_TRUE(shows("lblLog32DataM", " 7.033.000"));

    // A crash is no quieter than an end.
    logger->kill();
    EXPECT_TRUE(shows("lblAutoMemConn", "Disconnected"));
    logger.emplace();
    logger->line("subscribed ");
    EXPECT_TRUE(shows("lblAutoMemConn", "Connected"));

    click("cmdAutoMemConn");
    logger->line("unsubscribed");
    EXPECT_TRUE(shows("lblLog32DataM", ""));
}

TEST_F(Frequency, ComesBackFromLogger32WhenTheBridgeDoes) {
    startBridge();
    LoggerWindow logger;
    start(form::kCoilTuner, form::kLogger32);
    click("cmdAutoMemConn");
    logger.line("subscribed ");
    logger.tell("frequency 21005000");
    EXPECT_TRUE(shows("lblLog32DataM", "21.005.000"));

    crashBridge(logger);
    EXPECT_TRUE(shows("lblAutoMemConn", "Disconnected"));
    startBridge();
    logger.line("subscribed ");
    EXPECT_TRUE(shows("lblAutoMemConn", "Connected"));
    logger.tell("frequency 28005000");
    EXPECT_TRUE(shows("lblLog32DataM", "28.005.000"));
}

TEST_F(Frequency, EndsWithTheBridgeAndIsConnectedAgainByHand) {
    startBridge();
    DdeServer radio(DdeServer::HamRadioDeluxe, "3.700.000");
    start(form::kCoilTuner, form::kHamRadioDeluxe);
    click("cmdAutoMemConn");
    EXPECT_TRUE(shows("lblFreqRx", "3.700.000"));

    crashBridge(radio);
    EXPECT_TRUE(shows("lblAutoMemConn", "Connect"));
    EXPECT_TRUE(shows("lblFreqRx", ""));
    startBridge();
    click("cmdAutoMemConn");
    EXPECT_TRUE(shows("cmdAutoMemConn", "0"));
    click("cmdAutoMemConn");
    EXPECT_TRUE(shows("lblFreqRx", "3.700.000"));
    radio.set("3.800.000");
    EXPECT_TRUE(shows("lblFreqRx", "3.800.000"));
}

TEST_F(Frequency, CanBeTriedOutInTheTunerConnections) {
    startBridge();
    DdeServer radio(DdeServer::HamRadioDeluxe, "3.700.000");
    LoggerWindow logger;
    start(form::kCoilTuner, form::kHamRadioDeluxe);
    const auto inDialog = [](QWidget& dialog, const char* name, const std::string& expected) {
        auto* label = dialog.findChild<QLabel*>(name);
        return label && waitFor([&] { return label->text().toStdString() == expected; });
    };
    const auto press = [](QWidget& dialog, const char* name) {
        auto* button = dialog.findChild<QWidget*>(name);
        ASSERT_TRUE(waitFor([&] { return button->isEnabled(); })) << name;
        QTest::mouseClick(button, Qt::LeftButton);
    };
    bool tried = false;
    QTimer::singleShot(0, [&] {
        waitFor([] { return QApplication::activeModalWidget() != nullptr; });
        QWidget& dialog = *QApplication::activeModalWidget();
        press(dialog, "cmdOn");
        EXPECT_TRUE(inDialog(dialog, "lblConn", "Conn"));
        EXPECT_TRUE(inDialog(dialog, "lblDDE", "3.700.000"));
        radio.set("3.701.000");
        EXPECT_TRUE(inDialog(dialog, "lblDDE", "3.701.000"));
        press(dialog, "cmdOff");
        EXPECT_TRUE(inDialog(dialog, "lblConn", "Disc."));
        radio.line("disconnected");

        press(dialog, "optLog32");
        press(dialog, "cmdOnLog32");
        EXPECT_TRUE(inDialog(dialog, "lblConnLog32", "Conn."));
        logger.line("subscribed ");
        logger.tell("frequency 50100000");
        EXPECT_TRUE(inDialog(dialog, "lblLog32Data", "50.100.000"));
        press(dialog, "cmdOffLog32");
        logger.line("unsubscribed");
        EXPECT_TRUE(inDialog(dialog, "lblConnLog32", "Disc."));
        tried = true;
        press(dialog, "cmdExitTConf");
    });
    f().mnuTunConn.Click.fire();
    EXPECT_TRUE(tried);
}

} // namespace
