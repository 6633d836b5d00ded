#include "config/position_slots.h"
#include "tests/desk.h"

namespace {

/// A program that is killed is one that the next start() abandons.
class KeptPositionsTest : public Desk {
  protected:
    static constexpr float kStored = 12.5F;

    void store(bool load, int function = form::kCoilTuner) {
        namespace record = config::record;
        file.write({config::integerRecord(record::kStepsA, 200), config::singleRecord(record::kUnitsA, 10),
                    config::integerRecord(record::kSlowA, 100), config::integerRecord(record::kStepsB, 200),
                    config::integerRecord(record::kSlowB, 100), config::singleRecord(record::kUnitsB, 10),
                    config::integerRecord(record::kFunction, function),
                    config::singleRecord(record::kPositionA, kStored),
                    config::singleRecord(record::kPositionB, kStored),
                    config::singleRecord(record::kAzimuth, 180), config::singleRecord(record::kElevation, 45),
                    config::booleanRecord(record::kSavePositions, true),
                    config::booleanRecord(record::kLoadPositions, load),
                    config::textRecord(record::kInUseA, "7.050")});
    }
    void killAndStart(bool accept) {
        dialogs.takeMessages();
        dialogs.okAnswers = {accept};
        start();
    }
    std::optional<config::Standing> kept() const { return config::newestSlot(positions.content().value()); }
};

TEST_F(KeptPositionsTest, EachStepIsKeptAndOfferedAfterAKill) {
    store(true);
    start();
    f().lblUsoA.Caption = "7.050";
    f().cmdAv.Click.fire();
    f().cmdIndB.Click.fire();
    for (int step = 1; step <= 7; ++step) {
        clock.advance(10);
        EXPECT_EQ(kept()->posA, f().sngPosA);
        EXPECT_EQ(kept()->posB, f().sngPosB);
        EXPECT_EQ(kept()->a.intFase, f().intFaseA.value());
    }
    const float posA = f().sngPosA;
    const auto phaseA = f().intFaseA;
    const auto lastB = f().intUltFaseB;
    ASSERT_NE(posA, kStored);
    ASSERT_NE(phaseA, 1);

    killAndStart(true);
    const auto messages = dialogs.takeMessages();
    ASSERT_EQ(messages.size(), 1U);
    for (const char* part : {"Engine 1: 12.85 (stored: 12.50)", "Engine 2: 12.15 (stored: 12.50)",
                             "Azimuth: 180.00 (stored: 180.00)"}) {
        EXPECT_NE(messages[0].text.find(part), std::string::npos) << messages[0].text;
    }
    EXPECT_EQ(messages[0].text.find("Function"), std::string::npos);
    EXPECT_EQ(f().sngPosA, posA);
    EXPECT_EQ(f().Label2.Caption, "12.85");
    EXPECT_EQ(f().intFaseA, phaseA);
    EXPECT_EQ(f().intUltFaseB, lastB);
    EXPECT_EQ(f().lblUsoA.Caption, ""); // the memory in use at the last exit stood elsewhere

    killAndStart(false); // it holds through another kill, until somebody says no
    EXPECT_EQ(dialogs.takeMessages().size(), 1U);
    EXPECT_EQ(f().sngPosA, kStored);
    EXPECT_EQ(f().lblUsoA.Caption, "7.050");
    killAndStart(true);
    EXPECT_TRUE(dialogs.takeMessages().empty());
}

TEST_F(KeptPositionsTest, WithoutLoadAtStartOnlyTheRotorIsOffered) {
    store(false, form::kSatelliteRotor);
    start();
    f().mnuCoilTuner.Click.fire();
    f().cmdAv.Click.fire();
    clock.advance(50);
    f().cmdAlt.Click.fire();
    killAndStart(true);
    EXPECT_TRUE(dialogs.takeMessages().empty()) << "tuner positions start at 0";
    EXPECT_EQ(f().sngPosA, 0);

    f().cmdAv.Click.fire(); // Satellite Rotor again, as stored
    clock.advance(50);
    killAndStart(true);
    const auto messages = dialogs.takeMessages();
    ASSERT_EQ(messages.size(), 1U);
    EXPECT_EQ(messages[0].text.find("Engine"), std::string::npos);
    EXPECT_NE(messages[0].text.find("Azimuth: 180.25 (stored: 180.00)"), std::string::npos);
    EXPECT_EQ(f().lblAzimut.Caption, "180.25");
    EXPECT_FLOAT_EQ(f().sngPosAz, 180.25F);
    EXPECT_EQ(f().sngPosA, 0);
}

TEST_F(KeptPositionsTest, TheFunctionComesBackWithItsPositions) {
    store(true);
    start();
    f().mnuAmpli.Click.fire(); // zeroes the positions
    EXPECT_EQ(kept()->function, form::kTuneAndLoad);
    EXPECT_EQ(kept()->posA, 0);
    f().cmdAv.Click.fire();
    clock.advance(50);
    killAndStart(true);
    const auto messages = dialogs.takeMessages();
    ASSERT_EQ(messages.size(), 1U);
    EXPECT_NE(messages[0].text.find("Function: Tune & Load (stored: Coil Tuner)"), std::string::npos);
    EXPECT_EQ(f().intFunzione, form::kTuneAndLoad);
    EXPECT_EQ(f().Label2.Caption, "0.25");
    EXPECT_EQ(f().sngPosA, 0.25F);
}

TEST_F(KeptPositionsTest, DeclaredPositionsAreKeptToo) {
    store(true);
    start();
    inDialog<form::FrmInsPosition>([](form::FrmInsPosition& dialog) {
        dialog.txtInt.Text = "77";
        dialog.txtDec.Text = "5";
        dialog.txtInt.KeyDown.fire(form::TextBox::kEnter);
    });
    f().Label2.DblClick.fire();
    EXPECT_EQ(kept()->posA, 77.5F);

    dialogs.okAnswers = {true};
    f().cmdResetB.Click.fire();
    EXPECT_EQ(kept()->posB, 0);

    const SavedFile other{storage, folder.path() / "other.cfg"};
    config::RecordFile(storage, file.path()).copyTo(other.path());
    other.write({config::singleRecord(config::record::kPositionA, 3)});
    dialogs.fileAnswers = {other.path().string()};
    // A box at the end of a load, which may stand open for long, does not keep the file waiting.
    other.write({config::integerRecord(config::record::kAutoOffSeconds, 40)});
    bool seen = false;
    dialogs.whileOpen = [&] {
        seen = true;
        EXPECT_EQ(kept()->posA, 3);
    };
    f().mnuLoadConfig.Click.fire();
    EXPECT_TRUE(seen);
}

TEST_F(KeptPositionsTest, AnOrderlyEndLeavesNoFile) {
    store(true);
    start();
    EXPECT_TRUE(positions.content());
    f().cmdAv.Click.fire();
    clock.advance(50);
    const float posA = f().sngPosA;
    f().mnuUscita.Click.fire();
    EXPECT_FALSE(positions.content());
    killAndStart(true);
    EXPECT_TRUE(dialogs.takeMessages().empty());
    EXPECT_EQ(f().sngPosA, posA);
}

TEST_F(KeptPositionsTest, AnEndThatCouldNotSaveLeavesIt) {
    store(true);
    start();
    f().cmdAv.Click.fire();
    clock.advance(50);
    const float posA = f().sngPosA;
    storage.failAt(0, simulated::Storage::Fault::Error);
    dialogs.okAnswers = {false}; // not tried again
    f().mnuUscita.Click.fire();
    EXPECT_FALSE(dialogs.takeMessages().empty());
    storage.breakReading(file.path());
    killAndStart(true); // save.cfg cannot be read: what is kept waits
    storage.breakReading({});
    killAndStart(true);
    EXPECT_EQ(f().sngPosA, posA);
}

TEST_F(KeptPositionsTest, AnEndThatTheJournalTookIsInOrder) {
    store(false);
    start();
    f().cmdAv.Click.fire();
    clock.advance(50);
    storage.breakReading(file.path());
    dialogs.okAnswers = {false}; // not tried again
    f().mnuUscita.Click.fire();
    EXPECT_EQ(dialogs.takeMessages().size(), 1U);
    EXPECT_FALSE(positions.content());
}

TEST_F(KeptPositionsTest, ALoadConfigAfterAFileThatCouldNotBeReadBeginsToKeep) {
    store(true);
    start();
    f().cmdAv.Click.fire();
    clock.advance(50);
    const float posA = f().sngPosA;
    storage.put(folder.path() / "good.cfg", storage.bytesOf(file.path()));
    storage.breakReading(file.path());
    killAndStart(true);
    dialogs.takeMessages();
    dialogs.fileAnswers = {(folder.path() / "good.cfg").string()};
    dialogs.okAnswers = {true};
    f().mnuLoadConfig.Click.fire();
    EXPECT_EQ(f().sngPosA, posA);
    f().cmdAv.Click.fire();
    clock.advance(50);
    EXPECT_GT(f().sngPosA, posA);
    EXPECT_EQ(kept()->posA, f().sngPosA);
    storage.breakReading({});
    f().mnuUscita.Click.fire();
    EXPECT_FALSE(positions.content());
}

TEST_F(KeptPositionsTest, AnEndWhileTheQuestionIsOpenLeavesItToBeAskedAgain) {
    store(true);
    start();
    f().cmdAv.Click.fire();
    clock.advance(50);
    const auto content = positions.content();
    dialogs.whileOpen = [this] { f().mnuUscita.Click.fire(); };
    start();
    EXPECT_EQ(positions.content(), content);
}

TEST_F(KeptPositionsTest, DamageAndADiskThatRefusesAreToldAndTheProgramGoesOn) {
    store(true);
    positions.put("rubbish");
    positions.refuseWith("\"positions.dat\" cannot be written: No space left on device");
    start();
    const auto messages = dialogs.takeMessages();
    ASSERT_EQ(messages.size(), 2U);
    EXPECT_NE(messages[0].text.find("\"positions.dat\" is damaged"), std::string::npos);
    EXPECT_NE(messages[1].text.find("No space left"), std::string::npos);
    EXPECT_EQ(f().sngPosA, kStored);
    f().cmdAv.Click.fire();
    clock.advance(50);
    EXPECT_GT(f().sngPosA, kStored);
}

} // namespace
