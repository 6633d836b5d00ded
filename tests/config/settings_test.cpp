#include "tests/desk.h"

namespace {

class SettingsTest : public Desk {
  protected:
    void SetUp() override { startTuner(); }

    void open(const std::function<void(form::FrmGenSet&)>& script) {
        inDialog<form::FrmGenSet>([this, script](form::FrmGenSet& dialog) {
            dialog.onUnload = [this] { ++unloads; };
            script(dialog);
        });
        f().mnuGenSet.Click.fire();
    }
    static void keys(form::FrmGenSet& dialog, const char* cw1, const char* ccw1, const char* cw2,
                     const char* ccw2) {
        dialog.txtCW1.Text.load(cw1);
        dialog.txtCCW1.Text.load(ccw1);
        dialog.txtCW2.Text.load(cw2);
        dialog.txtCCW2.Text.load(ccw2);
    }
    int unloads = 0;
};

TEST_F(SettingsTest, SavesEverythingAndShowsItAgain) {
    open([](form::FrmGenSet& dialog) {
        keys(dialog, "a", "b", "c", "d");
        dialog.chkSalvaM.userClick();
        dialog.chkCaricaInAvvio.userClick();
        dialog.chkAlarmOnOff.userClick();
        dialog.cmdSalvaGenSet.Click.fire();
    });
    EXPECT_EQ(unloads, 1);
    auto records = file.read();
    EXPECT_TRUE(records.boolean(50) && records.boolean(51) && records.boolean(63));
    EXPECT_EQ(records.text(57) + records.text(58) + records.text(59) + records.text(60), "badc");
    EXPECT_EQ(records.text(52), "&HC8F58C");
    EXPECT_EQ(f().strCCW1 + f().strCW1 + f().strCCW2 + f().strCW2, "badc");
    EXPECT_TRUE(f().bolAllarmi);
    open([](form::FrmGenSet& dialog) {
        EXPECT_EQ(dialog.txtCW2.Text, "c");
        EXPECT_TRUE(dialog.chkSalvaM.ticked() && dialog.chkCaricaInAvvio.ticked() &&
                    dialog.chkAlarmOnOff.ticked());
    });
}

TEST_F(SettingsTest, ComparesAllKeysButClockwiseOne) {
    const std::tuple<const char*, const char*, const char*, const char*, bool> cases[] = {
        {"a", "b", "c", "d", true},  {"b", "b", "c", "d", true},  {"d", "b", "c", "d", true},
        {"a", "b", "b", "d", false}, {"a", "b", "c", "b", false}, {"a", "b", "c", "c", false},
        {"", "", "", "", false},     {"", "", "c", "d", true}};
    for (const auto& [cw1, ccw1, cw2, ccw2, saved] : cases) {
        const std::string before = bytesOf(file.path());
        unloads = 0;
        open([&](form::FrmGenSet& dialog) {
            keys(dialog, cw1, ccw1, cw2, ccw2);
            dialog.cmdSalvaGenSet.Click.fire();
        });
        EXPECT_EQ(unloads, saved ? 1 : 0) << cw1 << ccw1 << cw2 << ccw2;
        if (saved) continue;
        EXPECT_EQ(dialogs.takeMessages(),
                  (std::vector<simulated::Dialogs::Message>{
                      {"Please, choose another letter", "Found similar keys!", true}}));
        EXPECT_EQ(bytesOf(file.path()), before);
    }
}

TEST_F(SettingsTest, KeyBoxesTakeSmallLettersAlone) {
    open([](form::FrmGenSet& dialog) {
        for (form::TextBox* box : {&dialog.txtCW1, &dialog.txtCCW1, &dialog.txtCW2, &dialog.txtCCW2}) {
            int selections = 0;
            box->onSelectAll = [&] { ++selections; };
            for (const int key : {65, 49, 8, 32, 123, 96})
                EXPECT_EQ(box->press(key), 0) << key;
            EXPECT_EQ(box->press('a'), 'a');
            EXPECT_EQ(box->press('z'), 'z');
            EXPECT_EQ(selections, 8);
        }
    });
}

TEST_F(SettingsTest, ColoursShowAtOnceAndCancelTakesThemBack) {
    const form::Colour before = f().Label2.ForeColor;
    const auto choose = [](form::FrmGenSet& dialog, int entry) {
        dialog.cmbColor.ListIndex = entry;
        dialog.cmbColor.Click.fire();
    };
    dialogs.colourAnswers = {0x1234U, 0x5678U, std::nullopt};
    open([&](form::FrmGenSet& dialog) {
        choose(dialog, 1);
        choose(dialog, 2);
        choose(dialog, 1); // cancelled in the colour dialog
        EXPECT_EQ(f().Label2.ForeColor, 0x1234U);
        EXPECT_EQ(f().lblUnitB.ForeColor, 0x1234U);
        EXPECT_EQ(f().shpDisplayB.FillColor, 0x5678U);
        dialog.cmdExitGen.Click.fire();
    });
    EXPECT_EQ(f().Label2.ForeColor, before);
    EXPECT_EQ(f().shpDisplayA.FillColor, form::kDefaultDisplayBackground);
    dialogs.colourAnswers = {0x1234U};
    open([&](form::FrmGenSet& dialog) {
        choose(dialog, 1);
        keys(dialog, "a", "b", "c", "d");
        dialog.cmdSalvaGenSet.Click.fire();
    });
    EXPECT_EQ(file.read().text(52), "&H1234");
    start();
    EXPECT_EQ(f().lblElev.ForeColor, 0x1234U);
}

class ConfigurationsTest : public SettingsTest {};

TEST_F(ConfigurationsTest, SavesANamedCopyAndLoadsItBack) {
    const std::string home = (folder.path() / "home.cfg").string();
    storeMemory(1, 3, 3, "7.050");
    dialogs.textAnswers = {"Home station"};
    dialogs.fileAnswers = {home};
    f().mnuSaveConfig.Click.fire();
    EXPECT_EQ(dialogs.lastInput.text, "Insert a Text (8 characters)");
    EXPECT_EQ(dialogs.lastInput.title, "Configuration Name");
    EXPECT_EQ(dialogs.lastProposed, "test");
    EXPECT_EQ(f().StatusBar1.Panels(5), "Home sta");
    EXPECT_EQ(bytesOf(home), bytesOf(file.path()));

    enter(f().lblMemSteps, f().txtSteps, "48");
    f().chkHalfStep.userClick();
    dialogs.takeMessages();
    connectN1mm();
    f().cmdAv.Click.fire();
    dialogs.fileAnswers = {std::nullopt};
    f().mnuLoadConfig.Click.fire(); // cancelled
    EXPECT_TRUE(f().Timer1.Enabled);
    dialogs.fileAnswers = {home};
    f().mnuLoadConfig.Click.fire();
    EXPECT_FALSE(f().Timer1.Enabled);
    EXPECT_EQ(f().cmdAutoMemConn.Caption, "0");
    EXPECT_EQ(f().intStepsA, 200);
    EXPECT_EQ(f().txtSteps.Text, "200");
    EXPECT_FALSE(f().chkHalfStep.ticked());
    EXPECT_EQ(f().bytMoltA, 1);
    EXPECT_EQ(f().StatusBar1.Panels(5), "Home sta"); // the name that is stored in it
    EXPECT_TRUE(dialogs.takeMessages().empty());
    EXPECT_EQ(bytesOf(home), bytesOf(file.path()));
}

TEST_F(ConfigurationsTest, CancellingWritesNothingOrOnlyTheName) {
    const std::string before = bytesOf(file.path());
    f().mnuSaveConfig.Click.fire();
    EXPECT_EQ(bytesOf(file.path()), before);
    dialogs.textAnswers = {"Field"};
    f().mnuSaveConfig.Click.fire();
    EXPECT_EQ(file.read().taggedText(62), "Field");
    dialogs.textAnswers = {"Other"};
    storage.failAt(0, simulated::Storage::Fault::Error);
    f().mnuSaveConfig.Click.fire();
    EXPECT_EQ(f().StatusBar1.Panels(5), "Field") << "a name is shown once it is on disk";
    EXPECT_EQ(dialogs.takeMessages().size(), 1U);
}

TEST_F(ConfigurationsTest, WhatIsNoConfigurationIsRefusedAndTheFormerOneKept) {
    const std::string before = bytesOf(file.path());
    storage.put("notes.cfg", "Dear diary, this is no configuration");
    storage.put("field.cfg", std::string(12, '\0'));
    f().cmdAv.Click.fire();
    dialogs.fileAnswers = {"notes.cfg"};
    f().mnuLoadConfig.Click.fire();
    EXPECT_EQ(bytesOf(file.path()), before);
    EXPECT_FALSE(storage.exists(file.path().string() + ".bak"));
    EXPECT_NE(dialogs.takeMessages().at(0).text.find("\"notes.cfg\" is no configuration"), std::string::npos);
    dialogs.fileAnswers = {"field.cfg"};
    f().mnuLoadConfig.Click.fire();
    EXPECT_EQ(bytesOf(file.path()), std::string(12, '\0'));
    EXPECT_EQ(bytesOf(file.path().string() + ".bak"), before);
    EXPECT_EQ(f().intStepsA, 0);
}

TEST_F(ConfigurationsTest, AFileThatCannotBeLoadedChangesNothing) {
    dialogs.fileAnswers = {(folder.path() / "missing.cfg").string()};
    const std::string before = bytesOf(file.path());
    f().mnuLoadConfig.Click.fire();
    EXPECT_EQ(dialogs.takeMessages().size(), 1U);
    EXPECT_EQ(bytesOf(file.path()), before);
    EXPECT_EQ(f().StatusBar1.Panels(5), "");
    EXPECT_EQ(f().intStepsA, 200);
}

} // namespace
