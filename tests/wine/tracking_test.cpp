#include "tests/wine/station_window.h"

namespace {

constexpr const char* kNoSatellite = "Cannot connect to satellite data! Restart SatPc32";

class Tracking : public StationWindow {};

TEST_F(Tracking, ComesFromOrbitronWhichQuitsAndComesBack) {
    startBridge();
    std::optional<DdeServer> orbitron;
    orbitron.emplace(DdeServer::Orbitron, "UPDATE AZ1.0 EL2.0");
    start(form::kSatelliteRotor);
    f().intSatSource = 1;
    for (const bool orderly : {true, false}) {
        click("cmdConnect");
        EXPECT_TRUE(shows("lblOpenCom", "Connected"));
        orbitron->line("linked");
        orbitron->set("UPDATE AZ123.4 EL45.6");
        EXPECT_TRUE(shows("lblAzRx", "123.4"));
        EXPECT_TRUE(shows("lblElRx", "45.6"));

        orbitron->tell(orderly ? "quit" : "vanish");
        ASSERT_TRUE(orbitron->ends());
        EXPECT_TRUE(shows("lblOpenCom", "Disconnected")) << "orderly: " << orderly;
        orbitron.emplace(DdeServer::Orbitron, "UPDATE AZ3.0 EL4.0");
        click("cmdConnect");
        EXPECT_TRUE(shows("cmdConnect", "0"));
    }
    click("cmdConnect");
    EXPECT_TRUE(shows("lblAzRx", "3"));
    EXPECT_TRUE(shows("lblElRx", "4"));
    click("cmdConnect");
    orbitron->line("disconnected");
}

TEST_F(Tracking, ComesFromSatPc32WhichQuitsAndComesBack) {
    startBridge();
    std::optional<DdeServer> program;
    program.emplace(DdeServer::SatPc32, "SNAO-7 AZ1.0 EL2.0 UP0 UMFM DN0 DMFM MA1");
    start(form::kSatelliteRotor);
    for (const bool orderly : {true, false}) {
        click("chkOpenCom");
        program->line("linked");
        EXPECT_TRUE(shows("lblOpenCom", "Connected"));
        program->set("SNAO-7 AZ123.4 EL45.6 UP0 UMFM DN0 DMFM MA1");
        EXPECT_TRUE(shows("lblAzRx", "123.40"));
        EXPECT_TRUE(shows("lblElRx", "045.60"));

        program->tell(orderly ? "quit" : "vanish");
        ASSERT_TRUE(program->ends());
        EXPECT_TRUE(shows("lblOpenCom", "Disconnected")) << "orderly: " << orderly;
        program.emplace(DdeServer::SatPc32, "SNAO-7 AZ3.0 EL4.0 UP0 UMFM DN0 DMFM MA1");
        click("chkOpenCom");
        EXPECT_TRUE(shows("lblOpenCom", "Connect"));
    }
    click("chkOpenCom");
    EXPECT_TRUE(shows("lblAzRx", "003.00"));
    EXPECT_TRUE(shows("lblElRx", "004.00"));
}

TEST_F(Tracking, SaysThatNobodyAnswers) {
    start(form::kSatelliteRotor);
    for (const bool withBridge : {false, true}) {
        if (withBridge) startBridge();
        click("cmdConnect");
        EXPECT_TRUE(shows("lblOpenCom", "Disconnected"));
        EXPECT_TRUE(shows("cmdConnect", "0"));

        click("chkOpenCom");
        EXPECT_TRUE(said(kNoSatellite)) << "with a bridge: " << withBridge;
        EXPECT_TRUE(shows("lblOpenCom", "Connect"));
        EXPECT_FALSE(f().chkOpenCom.ticked());
    }
}

TEST_F(Tracking, EndsWithTheBridgeAndIsConnectedAgainByHand) {
    startBridge();
    DdeServer orbitron(DdeServer::Orbitron, "UPDATE AZ10.5 EL20.5");
    start(form::kSatelliteRotor);
    f().intSatSource = 1;
    click("cmdConnect");
    EXPECT_TRUE(shows("lblAzRx", "10.5"));

    crashBridge(orbitron);
    EXPECT_TRUE(shows("lblOpenCom", "Disconnected"));
    startBridge();
    click("cmdConnect");
    EXPECT_TRUE(shows("cmdConnect", "0"));
    click("cmdConnect");
    EXPECT_TRUE(shows("lblOpenCom", "Connected"));
}

} // namespace
