#include "form/assistant.h"
#include "tests/ui/window_fixture.h"
#include "ui/caption_label.h"
#include "ui/push_button.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QLineEdit>

namespace {

class AssistantWindow : public WindowFixture {
  protected:
    static QList<QWidget*> visible(QWidget& window) {
        QList<QWidget*> widgets;
        for (QWidget* widget : window.findChildren<QWidget*>()) {
            if (widget->isVisible()) widgets.push_back(widget);
        }
        return widgets;
    }
};

TEST_F(AssistantWindow, EveryPageFitsTheSmallestScreenAndNamesItsControls) {
    for (const int function : {form::kCoilTuner, form::kSatelliteRotor}) {
        chooseFunction(function);
        withDialog([this] { f().mnuAssistant.Click.fire(); },
                   [](QWidget& dialog) {
                       std::set<QString> titles;
                       for (int page = 1; page < form::FrmAssistant::kPages; ++page) {
                           settle();
                           EXPECT_LE(dialog.width(), 800) << page;
                           EXPECT_LE(dialog.height(), 480) << page;
                           titles.insert(part<QLabel>(dialog, "lblPage").text());
                           for (QWidget* widget : visible(dialog)) {
                               const std::string name =
                                   std::to_string(page) + " " + widget->objectName().toStdString();
                               if (widget->focusPolicy() & Qt::TabFocus) {
                                   EXPECT_FALSE(widget->accessibleName().isEmpty()) << name;
                                   EXPECT_TRUE(dialog.rect().contains(
                                       QRect(widget->mapTo(&dialog, QPoint()), widget->size())))
                                       << name;
                               }
                               if (const auto* label = dynamic_cast<ui::CaptionLabel*>(widget)) {
                                   EXPECT_FALSE(label->shortened())
                                       << name << ": " << label->text().toStdString();
                               }
                           }
                           QTest::mouseClick(&part(dialog, "cmdSkip"), Qt::LeftButton);
                       }
                       EXPECT_EQ(titles.size(), form::FrmAssistant::kPages - 1U);
                       settle();
                       QTest::keyClick(&dialog, Qt::Key_Escape);
                   });
    }
}

TEST_F(AssistantWindow, EscapeStopsFirstAndTheLossOfTheKeyboardDoesToo) {
    f().mnuCoilTuner.Click.fire();
    withDialog([this] { f().mnuAssistant.Click.fire(); },
               [this](QWidget& dialog) {
                   for (int page = form::FrmAssistant::kFunction; page < form::FrmAssistant::kMotor; ++page) {
                       QTest::mouseClick(&part(dialog, "cmdSkip"), Qt::LeftButton);
                       settle();
                   }
                   auto& once = part(dialog, "cmdOnceA");
                   const auto turn = [&] {
                       once.setFocus();
                       QTest::keyClick(&once, Qt::Key_Space);
                       EXPECT_FALSE(stands());
                   };
                   turn();
                   QTest::keyClick(&once, Qt::Key_Escape);
                   EXPECT_TRUE(stands());
                   EXPECT_TRUE(dialog.isVisible());
                   turn();
                   QEvent loss(QEvent::WindowDeactivate);
                   QApplication::sendEvent(&dialog, &loss);
                   EXPECT_TRUE(stands());
                   QTest::keyClick(&dialog, Qt::Key_Escape);
               });
}

class EmptyWindow : public Desk {};

TEST_F(EmptyWindow, InvitesUntilAFunctionIsChosen) {
    start();
    ui::MainWindow window(f(), controller->boxes());
    window.setWindowState(Qt::WindowNoState);
    window.resize(800, 480);
    window.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    settle();
    EXPECT_FALSE(part(window, "Label2").isVisible());
    auto& coil = part<ui::PushButton>(window, "inviteCoilTuner");
    EXPECT_TRUE(coil.hasFocus());
    for (const char* name : {"inviteCoilTuner", "inviteAmpli", "inviteSat", "inviteAssistant"}) {
        EXPECT_TRUE(part(window, name).isVisible()) << name;
        EXPECT_FALSE(part(window, name).accessibleName().isEmpty()) << name;
    }
    QTest::keyClick(&coil, Qt::Key_Space);
    settle();
    EXPECT_EQ(f().intFunzione, form::kCoilTuner);
    EXPECT_FALSE(coil.isVisible());
    EXPECT_TRUE(part(window, "Label2").isVisible());
    EXPECT_TRUE(part(window, "cmdAlt").hasFocus());
}

} // namespace
