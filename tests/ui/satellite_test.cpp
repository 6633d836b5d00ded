#include "tests/ui/window_fixture.h"
#include "ui/line_edit.h"
#include "ui/sky_plot.h"

#include <QLabel>

namespace {

TEST(SkyPlot, PutsNorthUpAndTheZenithInTheMiddle) {
    struct Case {
        double azimuth, elevation, x, y;
    };
    const Case cases[] = {
        {0, 0, 0, -1},   {90, 0, 1, 0},    {180, 30, 0, 2.0 / 3}, {270, 60, -1.0 / 3, 0},
        {123, 90, 0, 0}, {0, 135, 0, 0.5}, {0, -20, 0, -1}, // below the horizon: at its edge
        {360, 0, 0, -1}, {0, 200, 0, 1}};
    for (const form::Direction& direction : {form::Direction{30, 0}, {250, 45}, {359, 80}}) {
        const form::Direction back = ui::SkyPlot::directionAt(ui::SkyPlot::place(direction));
        EXPECT_NEAR(back.azimuth, direction.azimuth, 1e-9);
        EXPECT_NEAR(back.elevation, direction.elevation, 1e-9);
    }
    for (const Case& c : cases) {
        const QPointF point = ui::SkyPlot::place({c.azimuth, c.elevation});
        EXPECT_NEAR(point.x(), c.x, 1e-9) << c.azimuth << ' ' << c.elevation;
        EXPECT_NEAR(point.y(), c.y, 1e-9) << c.azimuth << ' ' << c.elevation;
    }
}

TEST(SkyTrack, KeepsTenMinutesAtOneSampleASecond) {
    ui::SkyTrack track;
    for (qint64 now = 0; now <= 1'200'000; now += 100)
        track.add(now, {});
    EXPECT_EQ(track.samples().size(), 601U);
    EXPECT_EQ(track.samples().front().at, 600'000);
}

class SatelliteWindow : public WindowFixture {};

TEST_F(SatelliteWindow, ShowsWhatArrivesBesideTheAntenna) {
    tcp.listen(6969);
    f().intSatSource = 2;
    EXPECT_FALSE(widget("skyPlot").isVisible());
    chooseFunction(form::kSatelliteRotor);
    tcp.answer();
    EXPECT_TRUE(widget("skyPlot").isVisible());
    EXPECT_FALSE(widget("Option1").isVisible());
    f().HScOffsetA.userScroll(150);
    tcp.send("AO-7 45.6 123.4 123.4 45.6\r\n");
    clock.advance(500);
    settle();
    EXPECT_EQ(text("lblAzRx"), "124.90");
    EXPECT_EQ(text("lblElRx"), "045.60");
    EXPECT_EQ(text("lblOpenCom"), "Connected");
    const QPoint antenna = widget("lblAzimut").mapTo(&window(), QPoint());
    const QPoint target = widget("lblAzRx").mapTo(&window(), QPoint());
    EXPECT_GE(target.x(), antenna.x() + widget("lblAzimut").width());
    chooseFunction(form::kCoilTuner);
    EXPECT_FALSE(widget("lblAzRx").isVisible());
    EXPECT_TRUE(widget("Option1").isVisible());
}

TEST_F(SatelliteWindow, TheDialogRefusesAPortAndStaysOpen) {
    chooseFunction(form::kSatelliteRotor);
    withDialog([this] { f().mnuSatConn.Click.fire(); },
               [](QWidget& dialog) {
                   auto& entry = part<ui::LineEdit>(dialog, "txtServerPort");
                   entry.setFocus();
                   entry.selectAll();
                   QTest::keyClicks(&entry, "9x99 99");
                   EXPECT_EQ(entry.text(), "99999"); // digits only
                   QTest::keyClick(&entry, Qt::Key_Return);
                   settle();
                   EXPECT_TRUE(dialog.isVisible());
                   EXPECT_EQ(part<QLabel>(dialog, "lblPortError").text(), "Insert a port from 0 to 32767");
                   entry.selectAll();
                   QTest::keyClicks(&entry, "7000");
                   QTest::keyClick(&entry, Qt::Key_Return);
               });
    EXPECT_EQ(f().intPortaSat, 7000);
    withDialog([this] { f().mnuTvnServer.Click.fire(); },
               [](QWidget& dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); });
}

TEST_F(SatelliteWindow, AClickIntoTheSkyTurnsTheAntennaThere) {
    chooseFunction(form::kSatelliteRotor);
    QWidget& sky = widget("skyPlot");
    const QPoint east(sky.width() / 2 + 30, sky.height() / 2);
    QTest::mouseClick(&sky, Qt::LeftButton, {}, east);
    EXPECT_EQ(f().txtPointAz.Text, "90.00");
    clock.advance(30'000);
    EXPECT_NEAR(f().sngPosAz, 90, 0.3);
    f().chkRotOnOff.Value = 1;
    f().txtPointAz.Text = "12";
    QTest::mouseClick(&sky, Qt::LeftButton, {}, QPoint(sky.width() / 2, sky.height() / 2 + 30));
    clock.advance(1000);
    EXPECT_NEAR(f().sngPosAz, 90, 0.3); // it follows: a click is refused
    EXPECT_EQ(f().txtPointAz.Text, "12");
}

TEST_F(SatelliteWindow, TheRotatorDialogKeepsWhatFitsTheMachine) {
    withDialog([this] { f().mnuRotator.Click.fire(); },
               [](QWidget& dialog) {
                   auto& entry = part<ui::LineEdit>(dialog, "txtAzimuth");
                   EXPECT_TRUE(entry.hasFocus());
                   entry.selectAll();
                   QTest::keyClicks(&entry, "-90..400");
                   QTest::keyClick(&entry, Qt::Key_Return);
                   settle();
                   EXPECT_TRUE(dialog.isVisible());
                   EXPECT_NE(part<QLabel>(dialog, "lblRotatorError").text(), "");
                   entry.selectAll();
                   QTest::keyClicks(&entry, "-90..360");
                   QTest::keyClick(&entry, Qt::Key_Return);
               });
    EXPECT_EQ(settings.sections["rotor"]["azimuth"], "-90..360");
}

} // namespace
