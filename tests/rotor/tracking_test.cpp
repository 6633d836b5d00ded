#include "rotor/line_splitter.h"
#include "rotor/tracking_data.h"
#include "rotor/tracking_server.h"
#include "tests/comma_locale.h"
#include "tests/desk.h"

#include <clocale>

namespace {

TEST(LineSplitter, CutsWhateverWayTheBytesCome) {
    std::vector<std::string> lines;
    rotor::LineSplitter splitter([&](const std::string& line) { lines.push_back(line); });
    splitter.add("one\r\ntwo\n\nthr");
    for (const char c : std::string("ee\rfour"))
        splitter.add({&c, 1});
    EXPECT_FALSE(splitter.pending());
    splitter.flush(); // a server that ends its lines has not ended this one
    EXPECT_EQ(lines, (std::vector<std::string>{"one", "two", "three"}));
    splitter.clear();
    lines.clear();
    for (const char* line : {"o", "ne", "two"}) {
        splitter.add(line);
        EXPECT_TRUE(splitter.pending());
        if (line != std::string("o")) splitter.flush();
    }
    EXPECT_EQ(lines, (std::vector<std::string>{"one", "two"}));

    lines.clear();
    splitter.add(std::string(40000, 'x'));
    splitter.add(std::string(40000, 'x'));
    splitter.flush();
    splitter.add("heard again");
    splitter.flush();
    ASSERT_EQ(lines, std::vector<std::string>{"heard again"});
    lines.clear();
    splitter.add(std::string(70000, 'z') + "\nnext\n" + std::string(rotor::LineSplitter::kLongest, 'y') +
                 "\nlast");
    splitter.clear();
    splitter.flush();
    ASSERT_EQ(lines.size(), 2U);
    EXPECT_EQ(lines[0], "next");
    EXPECT_EQ(lines[1].size(), rotor::LineSplitter::kLongest);
}

class TrackingTest : public Desk {
  protected:
    void SetUp() override { start(); }

    void use(int source, int offsetA, int offsetB) {
        f().intSatSource = source;
        f().HScOffsetA.set(offsetA);
        f().HScOffsetB.set(offsetB);
    }
    std::vector<std::string> received() {
        return {f().lblRealAz.Caption, f().lblRealEl.Caption, f().lblAzRx.Caption, f().lblElRx.Caption};
    }
    using Texts = std::vector<std::string>;
};

TEST_F(TrackingTest, OrbitronCrossesTheRawValuesAndTakesOneOffset) {
    use(rotor::kOrbitron, 700, 0);
    rotor::subSatData(f(), "ISS AZ123.4 EL45.6 MORE");
    EXPECT_EQ(received(), (Texts{"45.6", "123.4", "123.4", "45.6"}));
    use(rotor::kOrbitron, 700, 150);
    rotor::subSatData(f(), "ISS AZ12,5 EL-0,5");
    EXPECT_EQ(received(), (Texts{"-0,5", "12,5", "14", "1"}));
    // A failing step leaves what was set before it.
    rotor::subSatData(f(), "ISS AZ9");
    EXPECT_EQ(received(), (Texts{"-0,5", "12,5", "14", "1"}));
    rotor::subSatData(f(), "ISS AZxx EL7");
    EXPECT_EQ(received(), (Texts{"7", "xx", "14", "8.5"}));
    rotor::subSatData(f(), "ISS AZ1  EL7"); // two blanks: an empty token
    EXPECT_EQ(received(), (Texts{"", "1", "14", "8.5"}));
}

TEST_F(TrackingTest, SatPc32TakesBothOffsetsAndAMalformedLineChangesNothing) {
    use(rotor::kSatPc32, 150, 25);
    rotor::subSatData(f(), "AO-7 7 12.5 12.5 7");
    const Texts expected{"12.5", "7", "014.00", "007.25"};
    EXPECT_EQ(received(), expected);
    for (const char* line : {"", " ", "AO-7 1 2 3", "AO-7 1 2 x 4", "AO-7 1 2 3 x", "AO-7 1 2 1e99 4"}) {
        rotor::subSatData(f(), line);
        EXPECT_EQ(received(), expected) << line;
    }
    f().intSatSource = 0;
    rotor::subSatData(f(), "AO-7 1 2 3 4");
    EXPECT_EQ(received(), expected);
}

TEST_F(TrackingTest, NumbersAreTheSameInALocaleWithADecimalComma) {
    ASSERT_TRUE(setCommaLocale(folder.path()));
    ASSERT_STREQ(std::localeconv()->decimal_point, ",");
    use(rotor::kSatPc32, 150, 25);
    rotor::subSatData(f(), "AO-7 7 12.5 12.5 7,5");
    EXPECT_EQ(f().lblAzRx.Caption, "014.00");
    EXPECT_EQ(f().lblElRx.Caption, "007.75");
    use(rotor::kOrbitron, 0, 0);
    rotor::subSatData(f(), "ISS AZ123.4 EL45.6");
    EXPECT_EQ(f().lblAzRx.Caption, "123.4");
    std::setlocale(LC_ALL, "C");
}

TEST_F(TrackingTest, SatPc32sItemIsSearchedForItsTags) {
    use(0, 100, -50);
    rotor::readSatPc32Item(f(), "SNAZUR EL AZ123.4 EL45,6 UP0 UMFM DN0 DMFM MA1.0");
    EXPECT_EQ(received(), (Texts{"123.4", "45,6", "124.40", "045.10"}));
    for (const char* text : {"", "** NO SATELLITE **", "SNx AZ1", "SNx AZ EL", "SNx AZ1 ELx"}) {
        rotor::readSatPc32Item(f(), text);
        EXPECT_EQ(f().lblAzRx.Caption, "124.40") << text;
    }
}

class TrackingServerTest : public TrackingTest {
  protected:
    void SetUp() override {
        start();
        tcp.listen(6969);
        f().intSatSource = rotor::kSatPc32;
    }
    void connect() {
        f().mnuSat.Click.fire();
        tcp.answer();
        clock.advance(500);
    }
};

TEST_F(TrackingServerTest, ConnectsInSatelliteRotorAloneAndShowsItsState) {
    EXPECT_EQ(tcp.attempts(), 0);
    f().mnuSat.Click.fire();
    clock.advance(500);
    EXPECT_EQ(f().lblOpenCom.Caption, "Connecting");
    tcp.answer();
    clock.advance(500);
    EXPECT_EQ(f().lblOpenCom.Caption, "Connected");
    EXPECT_TRUE(f().chkRotOnOff.Enabled);
    tcp.send("AO-7 7 12.5 12.5 7\nAO-7 7 12.5 13");
    EXPECT_EQ(f().lblAzRx.Caption, "012.50");
    tcp.send(".5 8\n");
    EXPECT_EQ(f().lblAzRx.Caption, "013.50");
    tcp.send("AO-7 7 12.5 14.5 8");
    clock.advance(5000);
    EXPECT_EQ(f().lblAzRx.Caption, "013.50"); // half a line
    f().intSatSource = rotor::kOrbitron;      // whose state is not shown
    tcp.drop();
    clock.advance(500);
    EXPECT_EQ(f().lblOpenCom.Caption, "Connect");
    f().mnuCoilTuner.Click.fire();
    EXPECT_FALSE(f().chkRotOnOff.Enabled);
    const int attempts = tcp.attempts();
    clock.advance(60000);
    EXPECT_EQ(tcp.attempts(), attempts);
}

TEST_F(TrackingServerTest, SilenceEndsALineOfAServerWithoutLineEnds) {
    connect();
    tcp.send("AO-7 7 12.5 14.5 8");
    clock.advance(60);
    tcp.send("8"); // still arriving
    clock.advance(99);
    EXPECT_EQ(f().lblElRx.Caption, "");
    clock.advance(1);
    EXPECT_EQ(f().lblElRx.Caption, "088.00");
}

TEST_F(TrackingServerTest, AnotherFormatGivesAnOpenOrbitronLinkItsStateBack) {
    links.run("Orbitron|Tracking");
    f().mnuSat.Click.fire();
    f().cmdConnect.Click.fire();
    clock.advance(500);
    EXPECT_EQ(f().lblOpenCom.Caption, "Connecting"); // the server's
    f().intSatSource = rotor::kOrbitron;
    clock.advance(500);
    EXPECT_EQ(f().lblOpenCom.Caption, "Connected");
}

TEST_F(TrackingServerTest, TriesAgainAtGrowingIntervals) {
    connect();
    tcp.stopListening(6969);
    tcp.drop();
    std::vector<std::int64_t> times;
    auto last = clock.now();
    int attempts = tcp.attempts();
    while (times.size() < 7) {
        clock.advance(100);
        if (tcp.attempts() == attempts) continue;
        attempts = tcp.attempts();
        times.push_back((clock.now() - last) / std::chrono::milliseconds(1));
        last = clock.now();
        tcp.answer();
    }
    EXPECT_EQ(times, (std::vector<std::int64_t>{1000, 2000, 4000, 8000, 16000, 30000, 30000}));
    tcp.listen(6969);
    clock.advance(30000);
    tcp.answer();
    tcp.drop();
    attempts = tcp.attempts();
    clock.advance(1000); // it had worked: from the shortest again
    EXPECT_EQ(tcp.attempts(), attempts + 1);
}

TEST_F(TrackingServerTest, AnotherPortEndsTheWaitForTheOldOne) {
    connect();
    tcp.stopListening(6969);
    tcp.drop();
    tcp.listen(7000);
    f().intPortaSat = 7000;
    inDialog<form::FrmSatConn>([](form::FrmSatConn& dialog) {
        dialog.txtServerPort.Text.load("7000");
        dialog.cmdSaveSatCfg.Click.fire();
    });
    f().mnuSatConn.Click.fire();
    tcp.answer();
    const int attempts = tcp.attempts();
    clock.advance(60000);
    EXPECT_EQ(tcp.attempts(), attempts);
    f().mnuUscita.Click.fire();
    tcp.drop();
    clock.advance(60000);
    EXPECT_EQ(tcp.attempts(), attempts);
}

TEST_F(TrackingServerTest, TheDialogsChoiceTakesEffectAtOnce) {
    connect();
    tcp.listen(7000);
    int unloads = 0;
    const auto open = [&](const std::string& text, bool orbitron) {
        inDialog<form::FrmSatConn>([&, text, orbitron](form::FrmSatConn& dialog) {
            dialog.onUnload = [&] { ++unloads; };
            dialog.txtServerPort.Text.load(text);
            if (orbitron) dialog.optOrbitron.userClick();
            dialog.cmdSaveSatCfg.Click.fire();
            if (unloads == 0) {
                EXPECT_NE(dialog.lblPortError.Caption, "") << text;
                dialog.cmdExitSatConn.Click.fire();
            }
        });
        f().mnuSatConn.Click.fire();
    };
    const std::string before = bytesOf(file.path());
    for (const char* text : {"", "abc", "32768", "-1", "999999999999"}) {
        unloads = 0;
        open(text, true);
        EXPECT_EQ(bytesOf(file.path()), before) << text;
    }
    unloads = 0;
    open("0", false); // a fresh file: nothing chosen, nothing changed
    EXPECT_EQ(file.read().integer(45), 0);
    EXPECT_EQ(file.read().integer(81), 0);
    unloads = 0;
    open("7000", true);
    EXPECT_EQ(file.read().integer(45), 7000);
    EXPECT_EQ(file.read().integer(81), 1);
    EXPECT_EQ(f().StatusBar1.Panels(4), "7000");
    EXPECT_EQ(f().intSatSource, 1);
    tcp.answer();
    tcp.send("x AZ1 EL2\n");
    EXPECT_EQ(f().lblAzRx.Caption, "1");
}

TEST_F(TrackingTest, TheDialogKeepsSatPc32AndItsPort) {
    const auto open = [this](const std::function<void(form::FrmSatConn&)>& script) {
        inDialog<form::FrmSatConn>(script);
        f().mnuSatConn.Click.fire();
    };
    f().mnuSat.Click.fire();
    open([](form::FrmSatConn& dialog) {
        EXPECT_FALSE(dialog.optOrbitron.Value || dialog.optSatPc32.Value);
        dialog.optSatPc32.userClick();
        dialog.txtServerPort.Text.load("6970");
        dialog.cmdSaveSatCfg.Click.fire();
    });
    EXPECT_EQ(file.read().integer(45), 6970);
    EXPECT_EQ(file.read().integer(81), 2);
    EXPECT_EQ(f().StatusBar1.Panels(4), "6970");
    EXPECT_EQ(f().intSatSource, 2);
    const std::string before = bytesOf(file.path());
    open([](form::FrmSatConn& dialog) {
        EXPECT_TRUE(dialog.optSatPc32.Value);
        EXPECT_EQ(dialog.txtServerPort.Text, "6970");
        dialog.optOrbitron.userClick();
        EXPECT_FALSE(dialog.optSatPc32.Value);
        dialog.cmdExitSatConn.Click.fire();
    });
    EXPECT_EQ(bytesOf(file.path()), before);
    EXPECT_EQ(f().intSatSource, 2);
}

TEST_F(TrackingTest, OrbitronsLinkIsToggled) {
    f().mnuSat.Click.fire();
    f().intSatSource = rotor::kOrbitron;
    f().cmdConnect.Click.fire(); // not running
    EXPECT_EQ(f().cmdConnect.Caption, "0");
    EXPECT_EQ(f().lblOpenCom.Caption, "Disconnected");
    links.run("Orbitron|Tracking");
    f().cmdConnect.Click.fire();
    EXPECT_EQ(f().cmdConnect.Caption, "I");
    EXPECT_EQ(f().cmdConnect.BackColor, form::kRed);
    EXPECT_EQ(f().lblOpenCom.Caption, "Connected");
    links.poke("Orbitron|Tracking", "TrackingData", "ISS AZ10 EL20");
    EXPECT_EQ(f().lblElRx.Caption, "20");
    f().chkRotOnOff.Value = 1;
    f().cmdConnect.Click.fire();
    EXPECT_EQ(f().lblOpenCom.Caption, "Disconnected");
    EXPECT_FALSE(f().chkRotOnOff.ticked());
    f().cmdConnect.Click.fire();
    links.quit("Orbitron|Tracking");
    EXPECT_EQ(f().lblOpenCom.Caption, "Disconnected");
    f().mnuAmpli.Click.fire();
    EXPECT_EQ(f().cmdConnect.Caption, "0");
}

TEST_F(TrackingTest, SatPc32sLinkIsTicked) {
    f().mnuSat.Click.fire();
    f().chkOpenCom.userClick();
    EXPECT_EQ(dialogs.takeMessages(),
              (std::vector<simulated::Dialogs::Message>{
                  {"Cannot connect to satellite data! Restart SatPc32", "Error!", true}}));
    EXPECT_FALSE(f().chkOpenCom.ticked());
    links.run("SatPC32|SatPcDdeConv");
    f().chkOpenCom.userClick();
    EXPECT_EQ(f().lblOpenCom.Caption, "Connected");
    EXPECT_EQ(f().lblOpenCom.BackColor, form::kRed);
    EXPECT_TRUE(f().chkRotOnOff.Enabled);
    links.poke("SatPC32|SatPcDdeConv", "SatPcDdeItem", "SNISS AZ10.5 EL20.5 UP0");
    EXPECT_EQ(f().lblAzRx.Caption, "010.50");
    links.quit("SatPC32|SatPcDdeConv");
    EXPECT_EQ(f().lblOpenCom.Caption, "Disconnected");
    f().chkOpenCom.userClick();
    EXPECT_EQ(f().lblOpenCom.Caption, "Connect");
    EXPECT_EQ(f().lblOpenCom.BackColor, form::kGreen);
    EXPECT_FALSE(f().chkRotOnOff.Enabled);
}

} // namespace
