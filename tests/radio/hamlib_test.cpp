#include "config/records.h"
#include "tests/desk.h"

#include <gmock/gmock.h>

namespace {

using testing::HasSubstr;

class Hamlib : public Desk {
  protected:
    static constexpr int kPort = 4532;

    void SetUp() override {
        startTuner();
        file.write({config::integerRecord(config::record::kFrequencyProgram, form::kHamlib)});
        start();
        tcp.listen(kPort);
    }
    /// Lets the attempt to connect succeed and the rig answer once with this.
    void meet(const std::string& hertz) {
        tcp.answer();
        ASSERT_EQ(tcp.takeSent(), "\\chk_vfo\n");
        tcp.send("0\n");
        reply(hertz);
    }
    void reply(const std::string& hertz, bool transmitting = false) {
        ASSERT_EQ(tcp.takeSent(), "f\n");
        for (const std::string& answer :
             {hertz + "\n", std::string("0\nVFOA\n"), std::string(transmitting ? "1\n" : "0\n")})
            tcp.send(answer);
        tcp.takeSent();
    }
    void tuneRig(const std::string& hertz, bool transmitting = false) {
        poll();
        reply(hertz, transmitting);
    }
    void open(const std::function<void(form::FrmTunerConn&)>& script) {
        inDialog<form::FrmTunerConn>([this, script](form::FrmTunerConn& dialog) {
            dialog.onUnload = [this] { ++unloads; };
            script(dialog);
        });
        f().mnuTunConn.Click.fire();
    }
    int savedProgram() { return file.read().integer(config::record::kFrequencyProgram).value(); }
    int unloads = 0;
};

TEST_F(Hamlib, ReportsTheFrequencyOfTheDaemonThatTheSettingsName) {
    hardware.use({.rigctld = "shack"});
    f().cmdAutoMemConn.Click.fire();
    EXPECT_EQ(tcp.lastAddress(), "shack:4532");
    EXPECT_EQ(f().lblAutoMemConn.Caption, "Connecting");
    meet("14025500");
    EXPECT_EQ(f().lblAutoMemConn.Caption, "Connected");
    EXPECT_EQ(f().lblFreqHamlib.Caption, "14025.5");
    EXPECT_TRUE(f().chkAutoMemOnOff.Enabled);
    tuneRig("14025500");
    EXPECT_EQ(f().StatusBar1.Panels(form::kPanelSource), "Hamlib");
    EXPECT_EQ(f().strFreqKey, "14");

    tcp.drop();
    EXPECT_EQ(f().lblAutoMemConn.Caption, "Error");
    EXPECT_EQ(f().lblAutoMemConn.ToolTip, "no rigctld at shack:4532");
    EXPECT_EQ(f().notice.Caption, "Hamlib: no rigctld at shack:4532");
    EXPECT_EQ(f().lblFreqHamlib.Caption, "00000");
    EXPECT_EQ(f().cmdAutoMemConn.Caption, "I"); // it goes on trying
    clock.advance(2000);
    meet("7050000");
    EXPECT_EQ(f().lblAutoMemConn.Caption, "Connected");
    EXPECT_EQ(f().lblAutoMemConn.ToolTip, "");
    EXPECT_EQ(f().notice.Caption, "");
    EXPECT_EQ(f().lblFreqHamlib.Caption, "7050");

    f().cmdAutoMemConn.Click.fire();
    EXPECT_EQ(f().lblAutoMemConn.Caption, "Connect");
    EXPECT_EQ(tcp.clients(), 0U);
    clock.advance(10'000);
    EXPECT_EQ(tcp.clients(), 0U);
}

TEST_F(Hamlib, RecallsAMemoryOfTheSameMegahertzBelowHundred) {
    storeMemory(1, 10, 10, "14.020");
    storeMemory(2, 20, 20, "7.050");
    f().sngPosA = 0;
    f().sngPosB = 0;
    f().cmdAutoMemConn.Click.fire();
    meet("144300000");
    f().chkAutoMemOnOff.userClick();
    const auto settleAt = [this](const std::string& hertz) {
        for (int i = 0; i < 4; ++i)
            tuneRig(hertz);
    };
    settleAt("144300000");
    EXPECT_EQ(f().lblFreqHamlib.Caption, "144300");
    EXPECT_FALSE(f().Option[1].Value || f().Option[2].Value);
    settleAt("14300000");
    EXPECT_TRUE(f().Option[1].Value);
    settleAt("7010000");
    EXPECT_TRUE(f().Option[2].Value);
}

TEST_F(Hamlib, IsTriedOutInTheDialog) {
    f().cmdAutoMemConn.Click.fire();
    open([this](form::FrmTunerConn& dialog) {
        EXPECT_EQ(tcp.clients(), 0U); // the main window's connection was ended
        EXPECT_TRUE(dialog.optHamlib.Value);
        EXPECT_EQ(dialog.txtRigctld.Text, "127.0.0.1:4532");
        dialog.txtRigctld.Text.load("attic:99");
        dialog.cmdOnHamlib.Click.fire();
        EXPECT_FALSE(dialog.cmdOnHamlib.Enabled);
        EXPECT_EQ(tcp.lastAddress(), "attic:99");
        tcp.answer();
        EXPECT_EQ(dialog.lblConnHamlib.Caption, "Disc.");
        EXPECT_EQ(dialog.lblConnHamlib.BackColor, form::kRed);
        EXPECT_EQ(dialog.lblConnHamlib.ToolTip, "no rigctld at attic:99");
        EXPECT_EQ(dialog.lblPortError.Caption, "no rigctld at attic:99");
        tcp.listen(99);
        clock.advance(2000);
        meet("14025500");
        EXPECT_EQ(dialog.lblConnHamlib.Caption, "Conn.");
        EXPECT_EQ(dialog.lblConnHamlib.BackColor, form::kBrightGreen);
        EXPECT_EQ(dialog.lblHamlibData.Caption, "14025.5 KHz");
        EXPECT_EQ(dialog.lblPortError.Caption, "");
        EXPECT_NE(f().lblFreqHamlib.Caption, "14025.5");
        dialog.cmdOffHamlib.Click.fire();
        EXPECT_EQ(dialog.lblConnHamlib.Caption, "Disc.");
        EXPECT_EQ(dialog.lblHamlibData.Caption, "");
        EXPECT_EQ(tcp.clients(), 0U);
        dialog.cmdOnHamlib.Click.fire();
        dialog.optLog32.userClick(); // ends the try
        EXPECT_EQ(tcp.clients(), 0U);
        EXPECT_FALSE(dialog.cmdOnHamlib.Enabled || dialog.txtRigctld.Enabled);
        EXPECT_EQ(dialog.txtRigctld.Text, "127.0.0.1:4532"); // what will be kept
        dialog.optHamlib.userClick();
        dialog.cmdOnHamlib.Click.fire();
    });
    EXPECT_EQ(tcp.clients(), 0U); // nor does one outlive the dialog
    EXPECT_EQ(hardware.settings().rigctld, "127.0.0.1:4532");
}

TEST_F(Hamlib, AddressAndProgramAreKeptTogether) {
    f().intConnProgrTuner = form::kN1mmLogger;
    file.write({config::integerRecord(config::record::kFrequencyProgram, form::kN1mmLogger)});
    open([this](form::FrmTunerConn& dialog) {
        dialog.optHamlib.userClick();
        for (const char* text : {"", "shack:", "shack:0", "shack:65536", "two words", "::1"}) {
            dialog.txtRigctld.Text.load(text);
            dialog.cmdOnHamlib.Click.fire();
            EXPECT_EQ(dialog.lblPortError.Caption, "Insert HOST or HOST:PORT.") << text;
            EXPECT_EQ(tcp.attempts(), 0) << text;
            dialog.cmdSaveTConf.Click.fire();
            EXPECT_EQ(unloads, 0) << text;
        }
        dialog.txtRigctld.Text.load("[::1]:4533");
        dialog.cmdSaveTConf.Click.fire();
    });
    EXPECT_EQ(unloads, 1);
    EXPECT_EQ(savedProgram(), form::kHamlib);
    EXPECT_EQ(f().intConnProgrTuner, form::kHamlib);
    EXPECT_EQ(hardware.kept().rigctld, "[::1]:4533");

    hardware.fillDisk();
    open([this](form::FrmTunerConn& dialog) {
        dialog.txtRigctld.Text.load("attic");
        dialog.cmdSaveTConf.Click.fire();
        EXPECT_EQ(unloads, 1);
        EXPECT_EQ(dialog.txtRigctld.Text, "attic");
        EXPECT_THAT(dialogs.takeMessages().at(0).text, HasSubstr("twinstep.ini"));
    });
    EXPECT_EQ(hardware.settings().rigctld, "[::1]:4533");

    hardware.fix(&platform::HardwareSettings::rigctld);
    open([](form::FrmTunerConn& dialog) {
        EXPECT_TRUE(dialog.optHamlib.Value && dialog.cmdOnHamlib.Enabled);
        EXPECT_FALSE(dialog.txtRigctld.Enabled);
    });
}

} // namespace
