#include "memory/fit.h"
#include "tests/desk.h"

namespace {

using memory::Fit;
using memory::FitText;
using memory::Place;

struct Case {
    const char* text;
    std::function<void(Fit&)> change; // from: Auto, a frequency, its memory in place
    bool fits = false, goesOn = false;
};

TEST(FitText, SaysOneThingForEachState) {
    const auto silent = [](Fit& fit, const char* state) {
        fit.source = Fit::Source::kSilent;
        fit.state = state;
        fit.wanted.reset();
        fit.last.reset();
    };
    const auto away = [](Fit& fit, Fit::Hold hold) {
        fit.wanted->reached = false;
        fit.hold = hold;
    };
    const Case cases[] = {
        {"Memory 2, 14.020, in place", [](Fit&) {}, true},
        {"Memory 2, 14.020, fitted 40 s ago", [](Fit& fit) { fit.age = "40 s"; }},
        {"moving to 14.020: 12.40 mm, 4 s",
         [](Fit& fit) {
             fit.motion = Fit::Motion::kRecalls;
             fit.way = "12.40 mm, 4 s";
         }},
        {"moving: 12.40 mm, 4 s",
         [](Fit& fit) {
             fit.motion = Fit::Motion::kRecalls;
             fit.way = "12.40 mm, 4 s";
             fit.last.reset();
         }},
        {"moved by hand", [](Fit& fit) { fit.motion = Fit::Motion::kByHand; }},
        {"stopped before 14.020",
         [&](Fit& fit) {
             away(fit, Fit::Hold::kNone);
             fit.stopped = true;
         },
         false, true},
        {"stopped before 14.020",
         [](Fit& fit) {
             fit.source = Fit::Source::kOff;
             fit.stopped = true;
         },
         false, true},
        {"next: 14.020",
         [&](Fit& fit) { // the radio has gone on to another memory
             away(fit, Fit::Hold::kNext);
             fit.stopped = true;
             fit.last = Place{"Memory 1, 7.050", "7.050"};
         }},
        {"no memory for 14.02 MHz", [](Fit& fit) { fit.wanted.reset(); }},
        {"no table entry for 14.02 MHz",
         [](Fit& fit) {
             fit.wanted.reset();
             fit.table = true;
         }},
        {"no longer at 14.020", [&](Fit& fit) { away(fit, Fit::Hold::kNone); }},
        {"waits until the frequency rests", [&](Fit& fit) { away(fit, Fit::Hold::kChanging); }},
        {"waits: transmitting", [&](Fit& fit) { away(fit, Fit::Hold::kTransmitting); }},
        {"tuned by hand, not at 14.020", [&](Fit& fit) { away(fit, Fit::Hold::kByHand); }},
        {"waits: a box is open", [&](Fit& fit) { away(fit, Fit::Hold::kBox); }},
        {"Memory 2, 14.020, fits, not recalled",
         [&](Fit& fit) {
             away(fit, Fit::Hold::kNext);
             fit.automatic = false;
         }},
        {"listening, nothing heard yet", [&](Fit& fit) { silent(fit, "Listening"); }},
        {"connected to N1MM Logger, nothing heard yet", [&](Fit& fit) { silent(fit, "Connected"); }},
        {"connecting to N1MM Logger", [&](Fit& fit) { silent(fit, "Connecting"); }},
        {"N1MM Logger does not answer", [&](Fit& fit) { silent(fit, "Error"); }},
        {"not connected to N1MM Logger: F10",
         [](Fit& fit) {
             fit.source = Fit::Source::kOff;
             fit.last.reset();
         }},
        {"Memory 2, 14.020, in place", [](Fit& fit) { fit.source = Fit::Source::kOff; }, true},
        {"no program for the frequency: Tuner Connections, Ctrl+T",
         [](Fit& fit) {
             fit.source = Fit::Source::kNone;
             fit.last.reset();
         }},
    };
    for (const Case& c : cases) {
        const Place place{"Memory 2, 14.020", "14.020", true};
        Fit fit{.source = Fit::Source::kHeard,
                .program = "N1MM Logger",
                .state = "Listening",
                .megahertz = "14.02",
                .wanted = place,
                .last = place,
                .automatic = true};
        c.change(fit);
        const FitText line = fitText(fit);
        EXPECT_EQ(line.text, c.text);
        EXPECT_EQ(line.fits, c.fits) << c.text;
        EXPECT_EQ(line.goesOn, c.goesOn) << c.text;
    }
}

/// A tuner with memories 1 (7.050) and 2 (14.020), and N1MM Logger.
class FitLineTest : public Desk {
  protected:
    void SetUp() override {
        startTuner();
        storeMemory(1, 5, 6, "7.050");
        storeMemory(2, 20, 30, "14.020");
        f().sngPosA = f().sngPosB = 0;
        f().Label2.Caption = f().Label8.Caption = "0.00";
    }
    const std::string& line() { return f().lblFit.Caption; }
    /// Memory 2 is being recalled, and the engines are on their way.
    void recallHalfway() {
        f().Option[2].userClick();
        clock.advance(500);
    }
};

TEST_F(FitLineTest, FollowsTheRadioFromSilenceToItsPlace) {
    poll();
    EXPECT_EQ(line(), "not connected to N1MM Logger: F10");
    EXPECT_EQ(f().lblFit.ForeColor, form::kAmber);
    connectN1mm();
    EXPECT_EQ(line(), "listening, nothing heard yet");
    tune(1402000);
    EXPECT_EQ(line(), "Memory 2, 14.020, fits, not recalled");
    EXPECT_EQ(f().lblFreqNote.Caption, "kHz, 20 m");
    EXPECT_TRUE(f().lblFreqN1MM.Enabled);
    f().chkAutoMemOnOff.userClick();
    clock.advance(1000);
    // 30 mm at 200 steps/s, of which about one second is behind
    EXPECT_TRUE(line().starts_with("moving to 14.020: 2")) << line();
    EXPECT_TRUE(line().ends_with(" mm, 3 s")) << line();
    clock.advance(5000);
    EXPECT_EQ(line(), "Memory 2, 14.020, in place");
    EXPECT_EQ(f().lblFit.ForeColor, form::kWindowText);
    tune(350000);
    EXPECT_EQ(line(), "no memory for 3.5 MHz");
    tune(1402000);
    clock.advance(20'000);
    EXPECT_EQ(line(), "Memory 2, 14.020, fitted 20 s ago");
    EXPECT_EQ(f().lblFreqNote.Caption, "kHz, 20 m, 20 s ago");
    EXPECT_FALSE(f().lblFreqN1MM.Enabled);
    f().cmdAutoMemConn.Click.fire();
    EXPECT_EQ(f().lblFreqNote.Caption, "kHz, not current");
    EXPECT_FALSE(f().lblFreqN1MM.Enabled);
}

TEST_F(FitLineTest, TellsEveryEndOfARecall) {
    struct End {
        const char* name;
        std::function<void()> act;
        const char* text;
    };
    const auto stopped = "stopped before 14.020";
    const auto away = "not connected to N1MM Logger: F10";
    const End ends[] = {
        {"arrived", [this] { clock.advance(10'000); }, "Memory 2, 14.020, in place"},
        {"Esc",
         [this] {
             f().cmdAlt.Click.fire();
             f().cmdAltB.Click.fire();
         },
         stopped},
        {"Stop of one engine",
         [this] {
             f().cmdAlt.Click.fire();
             clock.advance(10'000);
         },
         stopped},
        {"an error",
         [this] {
             port.breakDown("gone");
             clock.advance(20);
             port.breakDown("");
         },
         stopped},
        {"end of range",
         [this] {
             f().sngPosA = f().sngPosB = 999;
             clock.advance(100);
         },
         stopped},
        {"a jog afterwards",
         [this] {
             f().cmdAlt.Click.fire();
             f().cmdAltB.Click.fire();
             f().cmdAvMan.MouseDown.fire();
             EXPECT_EQ(line(), "moved by hand");
             clock.advance(200);
             f().cmdAvMan.MouseUp.fire();
         },
         away},
        {"New Value",
         [this] {
             f().cmdAlt.Click.fire();
             f().cmdAltB.Click.fire();
             inDialog<form::FrmInsPosition>([](form::FrmInsPosition& dialog) {
                 dialog.txtInt.Text.load("100");
                 dialog.txtInt.KeyDown.fire(form::TextBox::kEnter);
             });
             f().Label2.DblClick.fire();
         },
         away},
        {"another function", [this] { f().mnuAmpli.Click.fire(); }, away},
    };
    for (const End& end : ends) {
        SetUp();
        recallHalfway();
        EXPECT_TRUE(line().starts_with("moving to 14.020: ")) << end.name << ": " << line();
        end.act();
        EXPECT_EQ(line(), end.text) << end.name;
        EXPECT_EQ(f().cmdGoOn.Visible, end.text == stopped) << end.name;
        dialogs.takeMessages();
    }
}

TEST_F(FitLineTest, GoesOnWithAStoppedRecall) {
    recallHalfway();
    f().cmdAlt.Click.fire();
    f().cmdAltB.Click.fire();
    EXPECT_EQ(f().lblUsoA.Caption, "14.020");
    f().cmdGoOn.Click.fire();
    clock.advance(10'000);
    EXPECT_EQ(line(), "Memory 2, 14.020, in place");
    EXPECT_NEAR(f().sngPosB, 30, 0.06);
}

} // namespace
