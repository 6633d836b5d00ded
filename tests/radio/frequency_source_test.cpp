#include "radio/frequency_text.h"
#include "radio/n1mm.h"
#include "radio/n1mm_source.h"
#include "tests/desk.h"

namespace {

TEST(N1mmDatagram, TellsKilohertz) {
    const std::pair<std::string, const char*> cases[] = {
        {"<RadioInfo><TXFreq>1420000</TXFreq>", "14200"},
        {"<TXFreq>705050</TXFreq>", "7050.5"},
        {"<TXFreq>5000000", "50000"},
        {"<TXFreq>14400000</TXFreq>", "14400"}, // only seven digits count
        {"<TXFreq>abc</TXFreq>", "0"},
        {"<TXFreq>", "0"},
        {"<txfreq>1420000", "0"},
        {"12345671402500", "14025"}, // without a tag, from the eighth character
        {"", "0"},
        {"short", "0"},
        {std::string("\0\xFF<TXFreq>\0", 11), "0"},
        {"<TXFreq>1<TXFreq>2", "0.01"}};
    for (const auto& [datagram, kilohertz] : cases)
        EXPECT_EQ(radio::n1mmKilohertz(datagram), kilohertz) << datagram;
}

TEST(FrequencyText, KeepsItsFullResolution) {
    const std::pair<const char*, std::int64_t> megahertz[] = {
        {"14.0255", 14025500}, {"14,0255", 14025500},  {"14.025.500", 14025500},   {" 7.050.001", 7050001},
        {"7", 7000000},        {"  .472.000", 472000}, {"432.100.000", 432100000}, {"14.0255009", 14025500}};
    for (const auto& [text, hertz] : megahertz)
        EXPECT_EQ(radio::hertzOfMegahertz(text), hertz) << text;
    for (const char* text : {"", "0", " ", ".", "-14.1", "14.1 MHz", "NaN", "99999999999999999999"})
        EXPECT_FALSE(radio::hertzOfMegahertz(text)) << text;
    const std::pair<const char*, const char*> keys[] = {
        {"7025.5", "7."}, {"14025", "14"}, {"1830", "1."}, {"472", "0."}, {"50313", "50"}};
    for (const auto& [kilohertz, key] : keys)
        EXPECT_EQ(radio::keyOfKilohertz(kilohertz), key) << kilohertz;
}

class SourceTest : public Desk {
  protected:
    void SetUp() override { startTuner(); }
    void choose(int program) { f().intConnProgrTuner = program; }
    void click() { f().cmdAutoMemConn.Click.fire(); }
    void expectConnected(bool connected, const std::string& state) {
        EXPECT_EQ(f().cmdAutoMemConn.Caption, connected ? "I" : "0");
        EXPECT_EQ(f().cmdAutoMemConn.BackColor, connected ? form::kRed : form::kGreen);
        EXPECT_EQ(f().lblAutoMemConn.Caption, state);
        EXPECT_EQ(f().chkAutoMemOnOff.Enabled, connected);
        EXPECT_EQ(f().chkFastMemory.Enabled, connected);
    }
    static constexpr const char* kHrd = "HRD_RADIO_000|HRD_CAT";
};

TEST_F(SourceTest, N1mmLoggerListensAndLetsGo) {
    f().intPortaN1MM = 13000;
    connectN1mm(13000);
    expectConnected(true, "Listening");
    EXPECT_EQ(f().lblFreqN1MM.Caption, "00000");
    udp.send(13000, "<TXFreq>2130000</TXFreq>");
    EXPECT_EQ(f().lblFreqN1MM.Caption, "21300");
    poll();
    EXPECT_EQ(f().StatusBar1.Panels(3), "N1MM Logger");
    f().chkAutoMemOnOff.userClick();
    f().chkFastMemory.userClick();
    click();
    expectConnected(false, "Connect");
    EXPECT_FALSE(f().chkAutoMemOnOff.ticked() || f().chkFastMemory.ticked());
    EXPECT_FALSE(udp.listening(13000));
    udp.occupy(13000);
    click();
    expectConnected(false, "Error");
    EXPECT_NE(f().lblAutoMemConn.ToolTip, "");
    choose(0);
    udp.release(13000);
    click();
    expectConnected(false, "Error");
    choose(form::kHamRadioDeluxe);
    click();
    EXPECT_EQ(f().lblAutoMemConn.ToolTip, ""); // the old failure's
}

TEST_F(SourceTest, N1mmLoggerTellsHertzAndTransmission) {
    radio::N1mmSource source(f(), udp);
    const auto send = [this](const std::string& datagram) { udp.send(12060, datagram); };
    source.connect();
    EXPECT_FALSE(source.hertz() || source.transmitting());
    send("<TXFreq>1402551</TXFreq><IsTransmitting>True</IsTransmitting>");
    EXPECT_EQ(source.hertz(), 14025510);
    EXPECT_TRUE(source.transmitting());
    send("<TXFreq>14432005</TXFreq>"); // says nothing about transmitting
    EXPECT_EQ(source.hertz(), 144320050);
    EXPECT_TRUE(source.transmitting());
    send("<TXFreq>99999999999999999999</TXFreq><IsTransmitting>False</IsTransmitting>");
    EXPECT_FALSE(source.hertz() || source.transmitting());
    send("<TXFreq>1402551</TXFreq><IsTransmitting>True</IsTransmitting>");
    source.release();
    EXPECT_FALSE(source.hertz() || source.transmitting());
}

TEST_F(SourceTest, HamRadioDeluxeIsALink) {
    choose(form::kHamRadioDeluxe);
    click();
    expectConnected(false, "Error");
    links.run(kHrd);
    click();
    expectConnected(true, "Connected");
    links.poke(kHrd, "HRD_FREQUENCY", "14.025.000");
    EXPECT_EQ(f().lblFreqRx.Caption, "14.025.000");
    poll();
    EXPECT_EQ(f().strFreqKey, "14");
    EXPECT_EQ(f().StatusBar1.Panels(3), "HRD");
    links.poke(kHrd, "HRD_FREQUENCY", "7.050.000");
    poll();
    EXPECT_TRUE(f().lblBandCh.Visible);
    EXPECT_EQ(f().strFreqKey, "7.");
    links.quit(kHrd);
    EXPECT_EQ(f().lblAutoMemConn.Caption, "Connect");
    EXPECT_EQ(f().lblFreqRx.Caption, "");
    EXPECT_EQ(f().cmdAutoMemConn.Caption, "I");
    click();
    expectConnected(false, "Connect");
}

TEST_F(SourceTest, AnOpenLinkToHamRadioDeluxeIsEnded) {
    choose(form::kHamRadioDeluxe);
    links.run(kHrd);
    click();
    links.poke(kHrd, "HRD_FREQUENCY", "14.025.000");
    f().chkAutoMemOnOff.userClick();
    poll();
    click();
    expectConnected(false, "Connect");
    EXPECT_FALSE(f().chkAutoMemOnOff.ticked());
    links.poke(kHrd, "HRD_FREQUENCY", "21.025.000");
    EXPECT_EQ(f().lblFreqRx.Caption, "");
    poll();
    EXPECT_FALSE(f().lblBandCh.Visible); // an ended link announces no band
    click();
    expectConnected(true, "Connected");
}

TEST_F(SourceTest, Logger32IsSubscribedWheneverItAppears) {
    using Posted = simulated::StationMessages::Posted;
    choose(form::kLogger32);
    const long window = station.ownWindow("Form1");
    click();
    expectConnected(true, "Connected");
    EXPECT_TRUE(station.hooked(window));
    poll();
    EXPECT_EQ(f().lblAutoMemConn.Caption, "Disconnected");
    station.showWindow("Logger32", 77);
    poll();
    const long message = station.registerMessage("Logger32");
    EXPECT_EQ(station.takePosted(), (std::vector<Posted>{{77, message, 3, window}}));
    EXPECT_EQ(f().lblAutoMemConn.Caption, "Connected");
    poll();
    EXPECT_TRUE(station.takePosted().empty());

    station.deliver(window, message, 100, 14200000);
    EXPECT_EQ(f().lblLog32DataM.Caption, "14.200.000");
    station.deliver(window, message, 99, 1);
    station.deliver(window, message + 1, 100, 1);
    EXPECT_EQ(f().lblLog32DataM.Caption, "14.200.000");
    poll();
    EXPECT_EQ(f().strFreqKey, "14");
    station.deliver(window, message, 100, 3573000);
    EXPECT_EQ(f().lblLog32DataM.Caption, " 3.573.000");
    poll();
    EXPECT_EQ(f().strFreqKey, "3.");

    station.closeWindow("Logger32");
    clock.advance(4500);
    EXPECT_EQ(f().lblLog32DataM.Caption, " 3.573.000");
    EXPECT_EQ(f().frequencySeconds, 4); // nobody confirms what is still shown
    station.showWindow("Logger32", 78);
    poll();
    EXPECT_EQ(station.takePosted(), (std::vector<Posted>{{78, message, 3, window}}));
    click();
    EXPECT_EQ(station.takePosted(), (std::vector<Posted>{{78, message, 4, 0}}));
    EXPECT_FALSE(station.hooked(window));
    EXPECT_EQ(f().lblLog32DataM.Caption, "");
    expectConnected(false, "Connect");
    station.closeWindow("Logger32");
    click();
    poll();
    click(); // never found: nobody to unsubscribe from
    EXPECT_TRUE(station.takePosted().empty());
}

class ConnectionsDialogTest : public SourceTest {
  protected:
    void open(const std::function<void(form::FrmTunerConn&)>& script) {
        inDialog<form::FrmTunerConn>([this, script](form::FrmTunerConn& dialog) {
            dialog.onUnload = [this] { ++unloads; };
            script(dialog);
        });
        f().mnuTunConn.Click.fire();
    }
    static void typePort(form::FrmTunerConn& dialog, const std::string& text) {
        dialog.txtN1mmPortNumb.MouseDown.fire();
        dialog.txtN1mmPortNumb.Text.load(text);
    }
    int unloads = 0;
};

TEST_F(ConnectionsDialogTest, DisconnectsFirstAndSavesWhatItRead) {
    file.write({config::integerRecord(64, 3), config::integerRecord(65, 13001)});
    start();
    connectN1mm(13001);
    open([this](form::FrmTunerConn& dialog) {
        expectConnected(false, "Connect");
        EXPECT_TRUE(dialog.optN1MM.Value);
        EXPECT_EQ(dialog.txtN1mmPortNumb.Text, "13001");
        EXPECT_TRUE(udp.listening(13001));
        udp.send(13001, "<TXFreq>1420000</TXFreq>");
        EXPECT_EQ(dialog.lblN1mmData.Caption, "14200 KHz");
        EXPECT_EQ(f().lblFreqN1MM.Caption, "00000");
        dialog.cmdSaveTConf.Click.fire();
    });
    EXPECT_EQ(unloads, 1);
    EXPECT_EQ(f().intPortaN1MM, 13001);
    EXPECT_EQ(file.read().integer(65), 13001);
    EXPECT_FALSE(udp.listening(13001));
}

TEST_F(ConnectionsDialogTest, FreshFileSelectsNothingAndCancelRemembersNothing) {
    file.write({config::integerRecord(64, 0)});
    start();
    const std::string before = bytesOf(file.path());
    open([](form::FrmTunerConn& dialog) {
        EXPECT_FALSE(dialog.optHamDeluxe.Value || dialog.optLog32.Value || dialog.optN1MM.Value);
        EXPECT_EQ(dialog.txtN1mmPortNumb.Text, "0");
        dialog.optLog32.userClick();
        EXPECT_FALSE(dialog.Command1.Enabled || dialog.txtN1mmPortNumb.Enabled || dialog.cmdOn.Enabled);
        EXPECT_TRUE(dialog.cmdOnLog32.Enabled);
        dialog.optHamDeluxe.userClick();
        EXPECT_FALSE(dialog.optLog32.Value);
        EXPECT_TRUE(dialog.cmdOn.Enabled);
        dialog.cmdExitTConf.Click.fire();
    });
    EXPECT_EQ(bytesOf(file.path()), before);
    EXPECT_EQ(f().intConnProgrTuner, form::kNoProgram);
}

TEST_F(ConnectionsDialogTest, PortsAreChangedTestedAndRefused) {
    udp.occupy(13003);
    open([this](form::FrmTunerConn& dialog) {
        dialog.optN1MM.userClick();
        EXPECT_TRUE(udp.listening(12060));
        EXPECT_TRUE(dialog.lblListening.Visible);
        typePort(dialog, "13002");
        EXPECT_EQ(dialog.txtN1mmPortNumb.BackColor, form::kYellow);
        EXPECT_TRUE(dialog.txtN1mmPortNumb.FontItalic);
        dialog.Command1.Click.fire();
        EXPECT_FALSE(dialog.txtN1mmPortNumb.FontItalic);
        EXPECT_TRUE(udp.listening(13002));
        EXPECT_FALSE(udp.listening(12060));
        for (const char* text : {"", "abc", "32768", "99999999999999999999", "0", "-1", "12 060"}) {
            typePort(dialog, text);
            dialog.Command1.Click.fire();
            EXPECT_NE(dialog.lblPortError.Caption, "") << text;
            dialog.cmdSaveTConf.Click.fire();
            EXPECT_EQ(unloads, 0) << text;
        }
        typePort(dialog, "13003");
        dialog.Command1.Click.fire();
        EXPECT_NE(dialog.lblPortError.Caption.get().find("13003"), std::string::npos);
        typePort(dialog, "13004");
        dialog.cmdSaveTConf.Click.fire();
    });
    EXPECT_EQ(unloads, 1);
    EXPECT_EQ(file.read().integer(65), 13004);
}

TEST_F(ConnectionsDialogTest, ATakenPortLeavesTheDialogUsable) {
    file.write({config::integerRecord(64, 3), config::integerRecord(65, 13001)});
    start();
    udp.occupy(13001);
    udp.occupy(13003);
    open([this](form::FrmTunerConn& dialog) {
        const auto expectListening = [&](bool listening) {
            EXPECT_EQ(dialog.lblListening.Visible, listening);
            EXPECT_EQ(dialog.lblPortError.Caption.get().empty(), listening);
            EXPECT_TRUE(dialog.txtN1mmPortNumb.Enabled && dialog.Command1.Enabled);
            EXPECT_FALSE(dialog.cmdOn.Enabled || dialog.cmdOnLog32.Enabled);
        };
        expectListening(false);
        typePort(dialog, "13002");
        dialog.Command1.Click.fire();
        expectListening(true);
        typePort(dialog, "13003");
        dialog.Command1.Click.fire();
        expectListening(false);
        EXPECT_FALSE(udp.listening(13002));
        typePort(dialog, "no port");
        dialog.optLog32.userClick();
        EXPECT_EQ(dialog.lblPortError.Caption, "");
        EXPECT_EQ(dialog.txtN1mmPortNumb.Text, "13003"); // what will be kept
        EXPECT_FALSE(dialog.txtN1mmPortNumb.FontItalic);
        udp.release(13003);
        dialog.optN1MM.userClick();
        expectListening(true);
        dialog.optHamDeluxe.userClick();
        EXPECT_FALSE(dialog.lblListening.Visible || udp.listening(13003));
        dialog.cmdSaveTConf.Click.fire();
    });
    EXPECT_EQ(unloads, 1);
    EXPECT_EQ(file.read().integer(64), 1);
    EXPECT_EQ(file.read().integer(65), 13003);
}

TEST_F(ConnectionsDialogTest, APortOfZeroBecomesTheDefaultByHandAlone) {
    open([](form::FrmTunerConn& dialog) {
        EXPECT_EQ(dialog.txtN1mmPortNumb.Text, "0");
        EXPECT_TRUE(dialog.lblListening.Visible);
        dialog.cmdSaveTConf.Click.fire();
    });
    EXPECT_EQ(unloads, 1);
    EXPECT_EQ(file.read().integer(65), 0); // not touched
    open([](form::FrmTunerConn& dialog) {
        dialog.optN1MM.userClick();
        EXPECT_EQ(dialog.txtN1mmPortNumb.Text, "12060");
        dialog.cmdSaveTConf.Click.fire();
    });
    EXPECT_EQ(unloads, 2);
    EXPECT_EQ(file.read().integer(65), 12060);
}

TEST_F(ConnectionsDialogTest, LinkAndLogger32AreTriedOutInTheDialog) {
    links.run(kHrd);
    station.showWindow("Logger32", 5);
    long own = 0;
    open([&](form::FrmTunerConn& dialog) {
        own = station.ownWindow("frmTunerConn");
        dialog.optHamDeluxe.userClick();
        dialog.cmdOn.Click.fire();
        EXPECT_EQ(dialog.lblConn.Caption, "Conn");
        EXPECT_EQ(dialog.lblConn.BackColor, form::kBrightGreen);
        links.poke(kHrd, "HRD_FREQUENCY", "14.1");
        EXPECT_EQ(dialog.lblDDE.Caption, "14.1");
        dialog.cmdOff.Click.fire();
        EXPECT_EQ(dialog.lblConn.Caption, "Disc.");
        EXPECT_EQ(dialog.lblConn.BackColor, form::kRed);
        EXPECT_EQ(dialog.lblDDE.Caption, "");

        dialog.optLog32.userClick();
        dialog.cmdOnLog32.Click.fire();
        EXPECT_FALSE(dialog.cmdOnLog32.Enabled);
        clock.advance(500);
        EXPECT_EQ(dialog.lblConnLog32.Caption, "Conn.");
        EXPECT_EQ(station.takePosted().size(), 1U);
        station.deliver(own, station.registerMessage("Logger32"), 100, 7050000);
        EXPECT_EQ(dialog.lblLog32Data.Caption, " 7.050.000");
        EXPECT_EQ(f().lblLog32DataM.Caption, "");
        station.closeWindow("Logger32");
        clock.advance(500);
        EXPECT_EQ(dialog.lblConnLog32.Caption, "Disc.");
        EXPECT_EQ(dialog.lblConnLog32.BackColor, form::kRed);
        station.showWindow("Logger32", 6);
        clock.advance(500);
    });
    // Closing the dialog ended its test, so the main window subscribes anew.
    EXPECT_FALSE(station.hooked(own));
    station.takePosted();
    choose(form::kLogger32);
    click();
    poll();
    EXPECT_EQ(station.takePosted().size(), 1U);
}

} // namespace
