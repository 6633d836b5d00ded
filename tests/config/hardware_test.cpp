#include "config/hardware_settings.h"
#include "engine/coil_check.h"
#include "tests/desk.h"

#include <gmock/gmock.h>

using ::testing::ElementsAre;
using ::testing::HasSubstr;

namespace {

TEST(HardwareSettings, TextsAreReadOrRefused) {
    struct Case {
        const char* name;
        std::vector<const char*> good, bad;
    };
    const Case cases[] = {
        {"port",
         {"auto", "simulated", "/dev/parport0", "0x378", "0X3bc", "0xFFF0", "0XdFf8", "firmata:/dev/ttyACM0",
          "firmata:COM3:22,23,24,25,26,27,28,127", "firmata:/dev/ttyUSB0:115200",
          "firmata:/dev/serial/by-path/pci-0000:00:14.0-usb-0:2:1.0:2,3,4,5,6,7,8,9:9600", "gpio:gpiochip4",
          "gpio:gpiochip0:0,1,2,3,4,5,6,1023"},
         {"",
          "parport0",
          "0x",
          "0x37",
          "0x379",
          "0x10378",
          "0x-378",
          "888",
          "0x378 ",
          "0x37g",
          "0xFFF4",
          "firmata:",
          "firmata::2,3,4,5,6,7,8,9",
          "firmata:/dev/ttyACM0:2,3,4,5,6,7,8",
          "firmata:/dev/ttyACM0:2,3,4,5,6,7,8,9,10",
          "firmata:/dev/ttyACM0:1,3,4,5,6,7,8,9",
          "firmata:/dev/ttyACM0:2,3,4,5,6,7,8,128",
          "firmata:/dev/ttyACM0:2,3,4,5,6,7,8,2",
          "firmata:/dev/ttyACM0:2,3,4,5,6,7,8,",
          "firmata:/dev/ttyACM0:300",
          "firmata:/dev/ttyACM0:",
          "gpio:",
          "gpio:/dev/gpiochip0",
          "gpio:gpiochip0:1,2,3,4,5,6,7",
          "gpio:gpiochip0:0,1,2,3,4,5,6,1024",
          "gpio:gpiochip0:0,1,2,3,4,5,6,-1"}},
        {"coils-on", {"auto", "low", "high"}, {"", "LOW", "1"}},
        {"usb",
         {"none", "simulated", "k8055", "k8055:0", "k8055:3"},
         {"", "k8055:4", "k8055:", "k8055:-1", "K8055", "k80550"}},
        {"n1mm-listen",
         {"127.0.0.1", "0.0.0.0", "255.255.255.255"},
         {"", "localhost", "1.2.3", "1.2.3.4.5", "256.0.0.1", "1.2.3.", "1..2.3", "1.2.3.04", "-1.2.3.4",
          "1.2.3.4 "}},
        {"tracking-server", {"127.0.0.1", "shack.local", "::1"}, {"", "a b", "a\nb"}},
        {"bridge",
         {"station", "station:7380", "10.0.0.2:1", "[fe80::1]:65535", "[::1]"},
         {"", ":7380", "station:", "station:0", "station:65536", "fe80::1", "[::1", "[::1]7380", "a b"}},
        {"rigctld", {"shack", "127.0.0.1:4532"}, {"", "4532:", ":4532"}},
        {"rotctld",
         {"off", "4533", "127.0.0.1:4533", "0.0.0.0:65535"},
         {"", "on", "0", "65536", ":4533", "127.0.0.1", "127.0.0.1:", "localhost:4533", "127.0.0.1:0",
          "4533 "}},
        {"rotctld-allow",
         {"", " ", "192.168.1.20", "192.168.1.20,192.168.1.21", " 10.0.0.1 , 10.0.0.2 "},
         {",", "shack", "10.0.0.1,", "10.0.0.1 10.0.0.2", "10.0.0.0/8"}},
    };
    for (const config::HardwareField& field : config::kHardwareFields) {
        const auto* const found = std::ranges::find(cases, std::string(field.name), &Case::name);
        ASSERT_NE(found, std::end(cases)) << field.name;
        for (const char* text : found->good)
            EXPECT_EQ(field.fault(text), std::nullopt) << field.name << " " << text;
        for (const char* text : found->bad)
            EXPECT_NE(field.fault(text), std::nullopt) << field.name << " " << text;
    }
    EXPECT_EQ(config::ioAddress("0x3BC"), 0x3BC);
    EXPECT_EQ(config::cardAddress("k8055:2"), 2);
    EXPECT_EQ(config::serialBoard("firmata:COM3"),
              (config::SerialBoard{"COM3", {2, 3, 4, 5, 6, 7, 8, 9}, 57600}));
    EXPECT_EQ(config::serialBoard("firmata:/dev/a:1.0:9,8,7,6,5,4,3,2:9600"),
              (config::SerialBoard{"/dev/a:1.0", {9, 8, 7, 6, 5, 4, 3, 2}, 9600}));
    EXPECT_EQ(config::gpioLines("gpio:gpiochip0"),
              (config::GpioLines{"gpiochip0", {17, 27, 22, 23, 24, 25, 16, 26}}));
    for (const auto& [port, coilsOn, high] : {std::tuple("auto", "auto", false),
                                              {"0x378", "auto", false},
                                              {"/dev/parport0", "high", true},
                                              {"gpio:gpiochip0", "auto", true},
                                              {"firmata:COM3", "auto", true},
                                              {"firmata:COM3", "low", false}})
        EXPECT_EQ(config::coilsOnHigh({.port = port, .coilsOn = coilsOn}), high) << port << coilsOn;
    EXPECT_EQ(config::parseEndpoint("[::1]:9", 7), (config::Endpoint{"::1", 9}));
    EXPECT_EQ(config::parseEndpoint("shack", 7), (config::Endpoint{"shack", 7}));
    EXPECT_EQ(config::listenEndpoint("4534"), (config::Endpoint{"127.0.0.1", 4534}));
    EXPECT_THAT(*config::addressList(" 10.0.0.1 ,10.0.0.2"), ElementsAre("10.0.0.1", "10.0.0.2"));
    platform::HardwareSettings settings{.rotctld = "0.0.0.0:4533"};
    EXPECT_THAT(*config::faultOf(settings), HasSubstr("0.0.0.0:4533"));
    settings.rotctldAllow = "10.0.0.1";
    EXPECT_EQ(config::faultOf(settings), std::nullopt);
}

struct HardwareDialog : Desk {
    void SetUp() override { startTuner(); }
    void open(std::function<void(form::FrmHardware&)> script) {
        bool opened = false;
        inDialog<form::FrmHardware>([&](form::FrmHardware& dialog) {
            opened = true;
            script(dialog);
        });
        f().mnuHardware.Click.fire();
        ASSERT_TRUE(opened);
    }
    static void choosePort(form::FrmHardware& dialog, const std::string& entry) {
        const auto found = std::ranges::find(dialog.cmbPort.List, entry);
        ASSERT_NE(found, dialog.cmbPort.List.end()) << entry;
        dialog.cmbPort.ListIndex = static_cast<int>(found - dialog.cmbPort.List.begin());
        dialog.cmbPort.Click.fire();
    }
    static void chooseBoard(form::FrmHardware& dialog, const std::string& entry) {
        const auto found = std::ranges::find(dialog.cmbUsb.List, entry);
        ASSERT_NE(found, dialog.cmbUsb.List.end()) << entry;
        dialog.cmbUsb.ListIndex = static_cast<int>(found - dialog.cmbUsb.List.begin());
    }
    void nextCoil() { clock.advance(engine::CoilCheck::kMillisecondsPerCoil); }
    /// The texts of the boxes since the last call.
    std::vector<std::string> told() {
        std::vector<std::string> texts;
        for (const auto& message : dialogs.takeMessages())
            texts.push_back(message.text);
        return texts;
    }
    std::string outputsPanel() { return f().StatusBar1.Panels(form::kPanelOutputs); }
};

TEST_F(HardwareDialog, SavingUsesAndKeepsWhatIsChosen) {
    open([this](form::FrmHardware& dialog) {
        EXPECT_FALSE(dialog.txtPortAddress.Enabled);
        choosePort(dialog, "/dev/parport1");
        chooseBoard(dialog, "K8055, card 2");
        dialog.txtN1mmListen.Text = "0.0.0.0";
        dialog.txtTrackingServer.Text = "shack";
        dialog.txtBridge.Text = "shack:9";
        dialog.txtRotctld.Text = "off";
        dialog.cmdSaveHardware.Click.fire();
    });
    const platform::HardwareSettings wanted{.port = "/dev/parport1",
                                            .usb = "k8055:2",
                                            .n1mmListen = "0.0.0.0",
                                            .trackingServer = "shack",
                                            .bridge = "shack:9",
                                            .rotctld = "off"};
    EXPECT_EQ(hardware.settings(), wanted);
    EXPECT_EQ(hardware.kept(), wanted);
    EXPECT_EQ(outputsPanel(), "/dev/parport1");
    EXPECT_EQ(port.data(), 0xFF);
    open([](form::FrmHardware& dialog) {
        EXPECT_EQ(dialog.cmbPort.List.at(static_cast<std::size_t>(dialog.cmbPort.ListIndex.get())),
                  "/dev/parport1");
        EXPECT_EQ(dialog.cmbUsb.List.at(static_cast<std::size_t>(dialog.cmbUsb.ListIndex.get())),
                  "K8055, card 2");
        EXPECT_EQ(dialog.txtBridge.Text.get(), "shack:9");
    });
}

TEST_F(HardwareDialog, WhatIsRefusedIsToldAndChangesNothing) {
    const auto before = hardware.settings();
    hardware.refuse("/dev/parport1");
    open([this](form::FrmHardware& dialog) {
        bool unloaded = false;
        dialog.onUnload = [&] { unloaded = true; };
        choosePort(dialog, "/dev/parport1");
        dialog.cmdSaveHardware.Click.fire();
        EXPECT_THAT(told(), ElementsAre(HasSubstr("/dev/parport1: not there")));
        choosePort(dialog, "I/O address");
        EXPECT_TRUE(dialog.txtPortAddress.Enabled);
        dialog.txtPortAddress.Text = "0x37";
        dialog.cmdSaveHardware.Click.fire();
        EXPECT_THAT(told(), ElementsAre(HasSubstr("0x37")));
        choosePort(dialog, "/dev/parport0");
        hardware.fillDisk();
        dialog.cmdSaveHardware.Click.fire();
        EXPECT_THAT(told(), ElementsAre(HasSubstr("cannot be written")));
        EXPECT_FALSE(unloaded);
        dialog.cmdExitHardware.Click.fire();
        EXPECT_TRUE(unloaded);
    });
    EXPECT_EQ(hardware.settings(), before);
    EXPECT_EQ(outputsPanel(), before.port);
}

TEST_F(HardwareDialog, WhatTheCommandLineGaveCannotBeChanged) {
    hardware.fix(&platform::HardwareSettings::trackingServer);
    open([](form::FrmHardware& dialog) {
        EXPECT_FALSE(dialog.txtTrackingServer.Enabled);
        EXPECT_TRUE(dialog.txtBridge.Enabled);
        EXPECT_TRUE(dialog.lblFixed.Visible);
    });
}

TEST_F(HardwareDialog, APortThatIsAwayIsTriedAgainAndLosesNothing) {
    auto wanted = hardware.settings();
    wanted.port = "/dev/parport1";
    hardware.use(wanted);
    hardware.refuse("/dev/parport1");
    wanted.bridge = "shack";
    open([&](form::FrmHardware& dialog) {
        dialog.cmdTestA.Click.fire();
        EXPECT_THAT(told(), ElementsAre(HasSubstr("/dev/parport1: not there")));
        EXPECT_EQ(port.data(), 0xFF);
        dialog.txtBridge.Text = "shack";
        dialog.cmdSaveHardware.Click.fire();
        EXPECT_THAT(told(), ElementsAre(HasSubstr("/dev/parport1: not there")));
    });
    EXPECT_EQ(hardware.kept(), wanted);
    hardware.accept("/dev/parport1");
    open([this](form::FrmHardware& dialog) {
        dialog.cmdTestA.Click.fire();
        EXPECT_EQ(port.data(), 0xFE);
    });
    EXPECT_TRUE(told().empty());
}

TEST_F(HardwareDialog, TheTestLightsOneCoilAfterTheOther) {
    open([this](form::FrmHardware& dialog) {
        choosePort(dialog, "/dev/parport0");
        dialog.cmdTestB.Click.fire();
        EXPECT_EQ(outputsPanel(), "/dev/parport0");
        for (const int data : {0xEF, 0xDF, 0xBF, 0x7F}) {
            EXPECT_EQ(port.data(), data);
            nextCoil();
        }
        EXPECT_EQ(port.data(), 0xFF);
        EXPECT_EQ(dialog.lblTest.Caption, "");

        dialog.cmdTestA.Click.fire();
        nextCoil();
        EXPECT_EQ(port.data(), 0xFD);
        EXPECT_EQ(dialog.lblTest.Caption, f().lblEngineA.Caption.get() + ": coil 2");
        EXPECT_EQ(f().out2.FillColor, form::kRed);
        dialog.cmdTestB.Click.fire(); // the other engine at once
        EXPECT_EQ(port.data(), 0xEF);
        dialog.cmdTestB.Click.fire(); // the same again: the end
        EXPECT_EQ(port.data(), 0xFF);

        dialog.cmdTestA.Click.fire();
        dialog.cmdExitHardware.Click.fire();
        EXPECT_EQ(port.data(), 0xFF);
    });
    EXPECT_EQ(outputsPanel(), "simulated");
    clock.advance(10000);
    EXPECT_EQ(port.data(), 0xFF);
}

TEST_F(HardwareDialog, TheTestReachesTheBoardAndLeavesItAsItWas) {
    open([this](form::FrmHardware& dialog) {
        chooseBoard(dialog, "K8055, card 0");
        dialog.cmdTestA.Click.fire();
        for (const int data : {8, 4, 2, 1}) {
            EXPECT_EQ(board.outputs(), data);
            nextCoil();
        }
        EXPECT_EQ(board.outputs(), 0);
        EXPECT_FALSE(f().chkUsbOn.ticked());
        board.answerWith(-1);
        dialog.cmdTestA.Click.fire();
        EXPECT_THAT(told(), ElementsAre(HasSubstr("not found")));
        EXPECT_FALSE(f().chkUsbOn.ticked());
        EXPECT_EQ(port.data(), 0xFF);
    });
}

TEST_F(HardwareDialog, NothingIsTestedOrExchangedUnderARunningEngine) {
    f().cmdAv.Click.fire();
    open([this](form::FrmHardware& dialog) {
        dialog.cmdTestA.Click.fire();
        choosePort(dialog, "/dev/parport0");
        dialog.cmdSaveHardware.Click.fire();
        EXPECT_EQ(told().size(), 2U);
        EXPECT_TRUE(f().Timer1.Enabled);
    });
    EXPECT_EQ(outputsPanel(), "simulated");
}

TEST_F(HardwareDialog, APortThatFailsEndsTheTest) {
    open([this](form::FrmHardware& dialog) {
        dialog.cmdTestA.Click.fire();
        port.breakDown("gone");
        nextCoil();
        EXPECT_EQ(told().size(), 1U);
        EXPECT_EQ(dialog.lblTest.Caption, "");
        nextCoil();
        EXPECT_TRUE(told().empty());
    });
}

TEST_F(HardwareDialog, AnArduinoAndPinsAreChosenWithTheirPinsAndLevel) {
    open([this](form::FrmHardware& dialog) {
        choosePort(dialog, "Arduino Uno (ttyACM0)");
        EXPECT_EQ(dialog.txtPortAddress.Text.get(), "2,3,4,5,6,7,8,9");
        dialog.txtPortAddress.Text = "22,23,24,25,26,27,28,29";
        dialog.cmdSaveHardware.Click.fire();
    });
    EXPECT_EQ(hardware.kept().port, "firmata:/dev/ttyACM0:22,23,24,25,26,27,28,29");
    EXPECT_EQ(hardware.kept().coilsOn, "auto");
    open([this](form::FrmHardware& dialog) {
        EXPECT_EQ(dialog.txtPortAddress.Text.get(), "22,23,24,25,26,27,28,29");
        choosePort(dialog, "Pins of pinctrl-bcm2835 (gpiochip0)");
        EXPECT_EQ(dialog.txtPortAddress.Text.get(), config::kUsualLines);
        EXPECT_THAT(dialog.txtPortAddress.ToolTip.get(), HasSubstr("10 GPIO10 (taken by spi0), 11 GPIO11"));
        struct Case {
            const char* lines;
            int level; // in the list: 1 low, 2 high
            const char* remark;
        };
        for (const Case& each : {Case{config::kUsualLines, 2, "Lines GPIO17, GPIO27"},
                                 {"17,27,22,23,24,25,16,5", 2, "Coils on while Twinstep does not run: GPIO5"},
                                 {"2,3,4,5,6,7,8,26", 1, "Coils on while Twinstep does not run: GPIO26"},
                                 {"17,27,22,23,24,25,16,10", 2, "Taken: GPIO10 (spi0)"},
                                 {"17,27,22,23,24,25,16,9", 2, "Measure their level at boot: GPIO17"},
                                 {"17,27,22,23,24,25,16,28", 2, "There is no line 28"},
                                 {"17,17", 2, "Eight different lines"}}) {
            dialog.cmbCoilsOn.ListIndex = each.level;
            dialog.txtPortAddress.Text = each.lines;
            dialog.txtPortAddress.Change.fire();
            EXPECT_THAT(dialog.lblOutputs.Caption.get(), HasSubstr(each.remark)) << each.lines;
        }
        dialog.cmdSaveHardware.Click.fire();
        EXPECT_THAT(told(), ElementsAre(HasSubstr("gpio:gpiochip0:17,17")));
    });
}

TEST_F(HardwareDialog, LowOnAnArduinoIsTakenOnlyAfterAQuestion) {
    const auto before = hardware.settings();
    open([this](form::FrmHardware& dialog) {
        choosePort(dialog, "Arduino Uno (ttyACM0)");
        dialog.cmbCoilsOn.ListIndex = 1;
        dialog.cmbCoilsOn.Click.fire();
        EXPECT_EQ(dialog.lblOutputs.ForeColor, form::kRed);
        dialog.cmdSaveHardware.Click.fire();
        EXPECT_THAT(told(), ElementsAre(HasSubstr("all eight coils are on")));
        EXPECT_EQ(hardware.settings().coilsOn, "auto");
        dialogs.okAnswers = {true};
        dialog.cmdSaveHardware.Click.fire();
        EXPECT_EQ(told().size(), 1U);
    });
    EXPECT_EQ(hardware.kept().coilsOn, "low");
    open([this](form::FrmHardware& dialog) {
        dialog.cmdSaveHardware.Click.fire();
        EXPECT_TRUE(told().empty()) << "it was answered";
        choosePort(dialog, "Simulated");
        dialog.cmdTestA.Click.fire();
        dialog.cmdExitHardware.Click.fire();
        EXPECT_TRUE(told().empty()) << "Cancel goes back to what was agreed to";
        EXPECT_EQ(hardware.settings().port, hardware.kept().port);
        choosePort(dialog, "Arduino Mega (ttyACM1)");
        dialog.cmdTestA.Click.fire();
        EXPECT_THAT(told(), ElementsAre(HasSubstr("all eight coils are on"))) << "another board";
        EXPECT_EQ(hardware.settings().port, hardware.kept().port);
    });
}

TEST_F(HardwareDialog, LowOnAnArduinoThatTheUserHasNotAgreedToIsAskedForAtTheStart) {
    const platform::HardwareSettings low{.port = "firmata:/dev/ttyACM1", .coilsOn = "low"};
    hardware.use(low);
    start();
    EXPECT_THAT(told(), ElementsAre(HasSubstr("all eight coils are on")));
    open([this](form::FrmHardware& dialog) { // chosen already, but not agreed to
        dialog.cmdSaveHardware.Click.fire();
        EXPECT_THAT(told(), ElementsAre(HasSubstr("all eight coils are on")));
        dialogs.okAnswers = {true};
        dialog.cmdTestA.Click.fire();
        EXPECT_EQ(told().size(), 1U);
        EXPECT_EQ(port.data(), 0xFE);
    });
    start();
    EXPECT_TRUE(told().empty());
}

TEST_F(HardwareDialog, TheTestWaitsForADeviceThatStarts) {
    port.setStarting("Arduino ttyACM0 is starting");
    open([this](form::FrmHardware& dialog) {
        dialog.cmdTestA.Click.fire();
        nextCoil();
        EXPECT_EQ(port.data(), 0xFF);
        EXPECT_EQ(dialog.lblTest.Caption, "Waits for the Arduino");
        port.setStarting("");
        for (const int data : {0xFE, 0xFD}) {
            nextCoil();
            EXPECT_EQ(port.data(), data);
        }
        dialog.cmdTestA.Click.fire();
        EXPECT_EQ(port.data(), 0xFF);
        port.setStarting("again");
        dialog.cmdTestA.Click.fire();
        dialog.cmdTestA.Click.fire();
        port.setStarting("");
        clock.advance(10000);
        EXPECT_EQ(port.data(), 0xFF) << "a test that was ended while it waited";
    });
}

} // namespace
