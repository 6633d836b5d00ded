#include "tests/ui/window_fixture.h"
#include "ui/caption_label.h"
#include "ui/digits.h"

#include <QAbstractButton>
#include <QMenuBar>
#include <QScrollArea>
#include <QShortcut>
#include <set>

namespace {

struct Look {
    double font;
    QSize size;
    int function;
};

void PrintTo(const Look& look, std::ostream* out) {
    *out << "font " << look.font << ", " << look.size.width() << 'x' << look.size.height() << ", function "
         << look.function;
}

std::string nameOf(const QWidget& widget) {
    return widget.metaObject()->className() + (' ' + widget.objectName().toStdString()) + " \"" +
           widget.accessibleName().toStdString() + '"';
}

void fillWithWideTexts(form::Form1& form) {
    for (form::Label* label :
         {&form.Label2, &form.Label8, &form.lblAzimut, &form.lblElev, &form.lblAzRx, &form.lblElRx}) {
        label->Caption = "-998.76";
    }
    for (int n = 1; n <= form::Form1::kMemories; ++n) {
        form.strMemPosA(n) = form.strMemPosB(n) = "-998.76";
        form.lblFr[n].Caption = "28.500";
        form.Option[n].Enabled = true;
        form.Option[n].ToolTip = "28.500 (-998.76--998.76)";
    }
    form.lblUsoA.Caption = form.lblUsoB.Caption = "Manual";
    form.lblLog32DataM.Caption = "144.200.000";
    form.lblLog32DataM.bringToFront();
    form.lblAutoMemConn.Caption = "Disconnected";
    form.lblAutoMemOnOff.Caption = "Manual";
    form.lblBandMode.Caption = "Frequency Mode";
    form.lblBandCh.Visible = true;
    form.chkHalfStep.Caption = form.chkHalfStepB.Caption = "Half Step";
    form.HScrMemSpeedCh.load(100);
    form.lblMemSpeedCh.Caption = "100";
    for (form::TextBox* box : {&form.txtAltaVelA, &form.txtBassaVelA, &form.txtSteps, &form.txtMMGiro}) {
        box->Text = "32767";
    }
}

class Layout : public WindowFixture, public testing::WithParamInterface<Look> {
  protected:
    Layout() : userFont_(QApplication::font()) {}

    void SetUp() override {
        QApplication::setFont(ui::scaledFont(userFont_, GetParam().font));
        WindowFixture::SetUp();
        window().resize(GetParam().size);
        chooseFunction(GetParam().function);
        f().notice.Caption = ""; // what ends in dots has its whole text in the tool tip
        fillWithWideTexts(f());
        settle();
    }
    void TearDown() override { QApplication::setFont(userFont_); }

    QList<QWidget*> visible() {
        QList<QWidget*> widgets;
        for (QWidget* widget : window().findChildren<QWidget*>()) {
            if (widget->isVisible()) widgets.push_back(widget);
        }
        return widgets;
    }

    QFont userFont_;
};

TEST_P(Layout, CutsNoTextOff) {
    int texts = 0;
    for (QWidget* widget : visible()) {
        const auto* label = dynamic_cast<ui::CaptionLabel*>(widget);
        if (label && !dynamic_cast<ui::Digits*>(widget)) {
            ++texts;
            EXPECT_FALSE(label->shortened()) << nameOf(*widget) << ": " << label->text().toStdString();
            EXPECT_GE(label->height(), label->fontMetrics().height()) << nameOf(*widget);
        }
        if (const auto* button = dynamic_cast<QAbstractButton*>(widget)) {
            ++texts;
            EXPECT_GE(button->width(), button->minimumSizeHint().width()) << nameOf(*widget);
            EXPECT_GE(button->width(), button->fontMetrics().horizontalAdvance(button->text().remove('&')))
                << nameOf(*widget);
            EXPECT_GE(button->height(), button->fontMetrics().height()) << nameOf(*widget);
        }
        if (const auto* box = dynamic_cast<QLineEdit*>(widget)) {
            ++texts;
            EXPECT_GT(box->width(), box->fontMetrics().horizontalAdvance(box->text()) + 4) << nameOf(*widget);
        }
    }
    EXPECT_GT(texts, 60);
}

TEST_P(Layout, KeepsBothStopsInReachAndScrollsDownwardsAlone) {
    for (const char* name : {"cmdAlt", "cmdAltB"}) {
        QWidget& stop = widget(name);
        const QRect place(stop.mapTo(&window(), QPoint()), stop.size());
        EXPECT_TRUE(window().rect().contains(place)) << name;
        EXPECT_EQ(stop.visibleRegion().boundingRect(), stop.rect()) << name;
    }
    const auto& area = *window().findChild<QScrollArea*>();
    if (GetParam().font == 1) {
        EXPECT_LE(area.widget()->width(), area.viewport()->width());
    }
}

TEST_P(Layout, LetsNoTwoWidgetsOverlapOrLeaveTheirParent) {
    for (QWidget* widget : visible()) {
        QWidget* parent = widget->parentWidget();
        const bool scrolls = parent->objectName() == "qt_scrollarea_viewport";
        EXPECT_TRUE(scrolls || parent->rect().contains(widget->geometry())) << nameOf(*widget);
        for (QWidget* other : visible()) {
            if (other == widget || other->parentWidget() != parent) continue;
            EXPECT_FALSE(widget->geometry().intersects(other->geometry()))
                << nameOf(*widget) << " and " << nameOf(*other);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(
    Looks, Layout,
    testing::Values(Look{1, {1280, 720}, 0}, Look{1, {1280, 720}, 1}, Look{1, {1280, 720}, 2},
                    Look{1, {1280, 720}, 3}, Look{1.5, {1280, 720}, 1}, Look{2, {1280, 720}, 3},
                    Look{1, {1920, 1080}, 1}, Look{1, {2560, 1440}, 3}, Look{1.5, {1920, 1080}, 3},
                    Look{2, {2560, 1440}, 1}, Look{1, {800, 480}, 1}, Look{1, {800, 480}, 3},
                    Look{1, {1024, 600}, 2}, Look{1, {1366, 700}, 1}, Look{1, {1366, 700}, 3}));

class WindowSize : public WindowFixture {};

TEST_F(WindowSize, ComesBackFromASmallWindowAsItWas) {
    const auto places = [this] {
        QMap<QString, QRect> all;
        for (const QWidget* child : window().findChildren<QWidget*>()) {
            if (!child->objectName().isEmpty() && child->isVisible())
                all[child->objectName()] = QRect(child->mapTo(&window(), QPoint()), child->size());
        }
        return all;
    };
    const auto before = places();
    widget("cmdAltB").setFocus();
    window().resize(800, 480);
    settle();
    EXPECT_EQ(QApplication::focusWidget(), &widget("cmdAltB"));
    EXPECT_NE(places(), before);
    window().resize(1280, 720);
    settle();
    EXPECT_EQ(QApplication::focusWidget(), &widget("cmdAltB"));
    EXPECT_EQ(places(), before);
}

TEST_F(WindowSize, OneScreenfulNeedsNoScrolling) {
    for (int function : {form::kCoilTuner, form::kTuneAndLoad, form::kSatelliteRotor}) {
        chooseFunction(function);
        fillWithWideTexts(f());
        settle();
        auto& area = *window().findChild<QScrollArea*>();
        EXPECT_EQ(window().size(), QSize(1280, 720));
        EXPECT_LE(area.widget()->height(), area.viewport()->height());
        EXPECT_LE(area.widget()->width(), area.viewport()->width());
    }
}

TEST_F(WindowSize, LongTextsEndInDotsAndMoveNothing) {
    f().mnuCoilTuner.Click.fire();
    settle();
    const QSize before = window().centralWidget()->minimumSizeHint();
    const std::string longText = "<html>&" + std::string(300, 'W');
    for (form::Label* label : {&f().lblFr[3], &f().lblUsoA, &f().lblAutoMemConn, &f().lblUsb, &f().Label2}) {
        label->Caption = longText;
    }
    for (int panel = 1; panel <= form::StatusBar::kPanels; ++panel) {
        f().StatusBar1.Panels(panel) = longText;
    }
    settle();
    EXPECT_EQ(window().size(), QSize(1280, 720));
    EXPECT_EQ(window().centralWidget()->minimumSizeHint(), before);
    EXPECT_LE(widget("lblFr3").width(), 640);
    EXPECT_EQ(text("lblFr3").toStdString(), longText);
}

TEST_F(WindowSize, NoticesHaveRoomAndMoveNothing) {
    const auto places = [this] {
        QMap<QString, QRect> all;
        for (const QWidget* child : window().findChildren<QWidget*>()) {
            if (!child->objectName().isEmpty()) all[child->objectName()] = child->geometry();
        }
        return all;
    };
    // A place in a pile is given when it is shown.
    for (const char* caption : {"shown once", ""}) {
        f().notice.Caption = f().entryNoticeA.Caption = f().entryNoticeB.Caption = caption;
        settle();
    }
    const auto before = places();
    f().notice.Caption = "Elevation does not start: enter its slow or fast speed";
    f().entryNoticeA.Caption = f().entryNoticeB.Caption = "steps/r: enter at most 32767";
    settle();
    EXPECT_EQ(places(), before);
    for (const char* name : {"notice", "entryNoticeA", "entryNoticeB"}) {
        EXPECT_TRUE(widget(name).isVisible()) << name;
        EXPECT_FALSE(widget<ui::CaptionLabel>(name).shortened()) << name;
    }
}

class Reach : public WindowFixture {
  protected:
    /// Every visible widget that stands for a control.
    std::vector<QWidget*> controlWidgets() {
        std::vector<QWidget*> widgets;
        for (const form::Control* control : f().controls()) {
            auto* found = window().findChild<QWidget*>(QString::fromStdString(control->name()));
            if (found && found->isVisible()) widgets.push_back(found);
        }
        return widgets;
    }
};

TEST_F(Reach, EveryControlIsNamedAndExplained) {
    for (int function : {form::kCoilTuner, form::kSatelliteRotor}) {
        chooseFunction(function);
        settle();
        EXPECT_GT(controlWidgets().size(), 80U);
        for (QWidget* widget : controlWidgets()) {
            EXPECT_FALSE(widget->accessibleName().isEmpty()) << nameOf(*widget);
            const bool bar = widget->objectName() == "StatusBar1"; // its panels have words of their own
            EXPECT_FALSE(!bar && widget->toolTip().isEmpty()) << nameOf(*widget);
            EXPECT_FALSE((widget->toolTip() + widget->accessibleName()).contains("%1")) << nameOf(*widget);
        }
    }
}

TEST_F(Reach, WhateverTakesTheFocusIsNamed) {
    for (const QSize& size : {QSize(1280, 720), QSize(800, 480)}) {
        window().resize(size);
        for (int function : {form::kCoilTuner, form::kSatelliteRotor}) {
            chooseFunction(function);
            for (const QWidget* widget : window().findChildren<QWidget*>()) {
                const bool reached = widget->isVisible() && widget->focusPolicy() != Qt::NoFocus;
                EXPECT_FALSE(reached && widget->accessibleName().isEmpty()) << nameOf(*widget);
            }
        }
    }
}

TEST_F(Reach, TabVisitsEveryControlThatTakesTheFocus) {
    for (int function : {form::kCoilTuner, form::kSatelliteRotor}) {
        chooseFunction(function);
        fillWithWideTexts(f());
        f().chkAutoMemOnOff.Enabled = f().chkFastMemory.Enabled = true;
        settle();
        std::set<QWidget*> wanted;
        for (QWidget* widget : controlWidgets()) {
            if (widget->isEnabled() && (widget->focusPolicy() & Qt::TabFocus)) wanted.insert(widget);
        }
        EXPECT_GT(wanted.size(), 30U);
        widget("cmdAlt").setFocus();
        std::set<QWidget*> visited;
        do {
            visited.insert(QApplication::focusWidget());
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        } while (QApplication::focusWidget() && !visited.contains(QApplication::focusWidget()));
        for (QWidget* widget : wanted) {
            EXPECT_TRUE(visited.contains(widget)) << nameOf(*widget);
        }
    }
}

TEST_F(Reach, NoKeyHasTwoMeanings) {
    f().mnuCoilTuner.Click.fire();
    settle();
    std::multiset<QString> keys;
    for (QAction* menu : window().menuBar()->actions()) {
        keys.insert(QKeySequence::mnemonic(menu->text()).toString());
        std::multiset<QString> entries;
        for (QAction* action : menu->menu()->actions()) {
            const QString mnemonic = QKeySequence::mnemonic(action->text()).toString();
            if (!mnemonic.isEmpty()) entries.insert(mnemonic);
            if (!action->shortcut().isEmpty()) keys.insert(action->shortcut().toString());
        }
        for (const QString& key : entries) {
            EXPECT_EQ(entries.count(key), 1U) << key.toStdString();
        }
    }
    for (QAbstractButton* button : window().findChildren<QAbstractButton*>()) {
        const QString mnemonic = QKeySequence::mnemonic(button->text()).toString();
        if (!mnemonic.isEmpty()) keys.insert(mnemonic);
    }
    for (QShortcut* shortcut : window().findChildren<QShortcut*>()) {
        keys.insert(shortcut->key().toString());
    }
    EXPECT_GT(keys.size(), 25U);
    for (const QString& key : keys) {
        EXPECT_EQ(keys.count(key), 1U) << key.toStdString();
    }
}

} // namespace
