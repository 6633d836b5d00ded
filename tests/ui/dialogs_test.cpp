#include "platform/qt/dialogs.h"
#include "platform/qt/shell.h"
#include "runtime/errors.h"
#include "tests/ui/window_fixture.h"

#include <QClipboard>
#include <QColorDialog>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QElapsedTimer>
#include <QFileDialog>
#include <QInputDialog>
#include <QMenu>
#include <QMessageBox>
#include <QPushButton>
#include <QTextBrowser>
#include <gmock/gmock.h>

namespace {

class FormDialogs : public WindowFixture {};

TEST_F(FormDialogs, NewValueIsTypedAndConfirmedByKeyboardOverItsEngine) {
    withDialog(
        [&] {
            widget("Label8").setFocus();
            QTest::keyClick(&widget("Label8"), Qt::Key_Return);
        },
        [&](QWidget& dialog) {
            EXPECT_EQ(dialog.windowTitle(), "New Value");
            EXPECT_EQ(part<QLabel>(dialog, "Label1").text(), "Load Value");
            EXPECT_GT(dialog.geometry().center().x(), window().geometry().center().x());
            QTest::keyClicks(QApplication::focusWidget(), "1a01");
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
            QTest::keyClicks(QApplication::focusWidget(), "50");
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
        });
    EXPECT_FLOAT_EQ(f().sngPosB, 101.5F);
    settle();
    EXPECT_EQ(text("Label8"), "101.50");

    withDialog([&] { f().Label2.DblClick.fire(); },
               [&](QWidget& dialog) {
                   EXPECT_LT(dialog.geometry().center().x(), window().geometry().center().x());
                   QTest::keyClicks(QApplication::focusWidget(), "777");
                   QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
               });
    EXPECT_FLOAT_EQ(f().sngPosA, 0);
}

TEST_F(FormDialogs, SettingsAreSavedByEnterAndForgottenByEsc) {
    const auto type = [](QWidget& dialog, const char* box, const char* text) {
        part(dialog, box).setFocus();
        QTest::keyClicks(&part(dialog, box), text);
    };
    const auto open = [&] { window().findChild<QAction*>("mnuGenSet")->trigger(); };
    withDialog(open, [&](QWidget& dialog) {
        type(dialog, "txtCCW1", "bQ7a"); // each letter replaces the one before
        type(dialog, "txtCW1", "s");
        type(dialog, "txtCCW2", "k");
        type(dialog, "txtCW2", "l");
        QTest::mouseClick(&part(dialog, "chkAlarmOnOff"), Qt::LeftButton);
        QTest::keyClick(&part(dialog, "txtCW2"), Qt::Key_Return);
    });
    EXPECT_EQ(f().strCCW1, "a");
    EXPECT_TRUE(f().bolAllarmi);

    const auto colour = f().Label2.ForeColor.get();
    withDialog(open, [&](QWidget& dialog) {
        EXPECT_EQ(part<QLineEdit>(dialog, "txtCW2").text(), "l");
        type(dialog, "txtCW2", "z");
        dialogs.colourAnswers = {0x0000FFU};
        auto& chooser = part<QComboBox>(dialog, "cmbColor");
        chooser.setFocus();
        QTest::keyClick(&chooser, Qt::Key_Down);
        EXPECT_EQ(f().Label2.ForeColor.get(), 0x0000FFU);
        QTest::keyClick(&dialog, Qt::Key_Escape);
    });
    EXPECT_EQ(f().strCW2, "l");
    EXPECT_EQ(f().Label2.ForeColor.get(), colour);
}

TEST_F(FormDialogs, TheProgramIsChosenAndItsPortIsJudged) {
    withDialog([&] { f().mnuTunConn.Click.fire(); },
               [&](QWidget& dialog) {
                   part(dialog, "optN1MM").setFocus();
                   QTest::keyClick(&part(dialog, "optN1MM"), Qt::Key_Space);
                   settle();
                   EXPECT_TRUE(part(dialog, "lblListening").isVisible());
                   auto& typed = part<QLineEdit>(dialog, "txtN1mmPortNumb");
                   QTest::mouseClick(&typed, Qt::LeftButton);
                   typed.selectAll();
                   QTest::keyClicks(&typed, "99999");
                   settle();
                   EXPECT_EQ(typed.palette().color(QPalette::Base), QColor(255, 255, 0));
                   QTest::keyClick(&typed, Qt::Key_Return); // Save
                   settle();
                   EXPECT_FALSE(part<QLabel>(dialog, "lblPortError").text().isEmpty());
                   typed.selectAll();
                   QTest::keyClicks(&typed, "12061");
                   QTest::keyClick(&typed, Qt::Key_Return);
               });
    EXPECT_EQ(f().intConnProgrTuner, int{form::kN1mmLogger});
    EXPECT_EQ(f().intPortaN1MM, 12061);
}

TEST_F(FormDialogs, HamlibIsChosenAndTriedByKeyboard) {
    withDialog([&] { f().mnuTunConn.Click.fire(); },
               [&](QWidget& dialog) {
                   part(dialog, "optN1MM").setFocus();
                   QTest::keyClick(&part(dialog, "optN1MM"), Qt::Key_Down);
                   EXPECT_EQ(QApplication::focusWidget(), &part(dialog, "optHamlib"));
                   QTest::keyClick(&part(dialog, "optHamlib"), Qt::Key_Space);
                   settle();
                   auto& address = part<QLineEdit>(dialog, "txtRigctld");
                   address.setFocus();
                   address.selectAll();
                   QTest::keyClicks(&address, "shack:0");
                   QTest::keyClick(&address, Qt::Key_Return); // Save
                   settle();
                   EXPECT_EQ(part<QLabel>(dialog, "lblPortError").text(), "Insert HOST or HOST:PORT.");
                   address.selectAll();
                   QTest::keyClicks(&address, "shack");
                   part(dialog, "cmdOnHamlib").setFocus();
                   QTest::keyClick(&part(dialog, "cmdOnHamlib"), Qt::Key_Space);
                   EXPECT_EQ(tcp.lastAddress(), "shack:4532");
                   tcp.answer();
                   settle();
                   EXPECT_EQ(part(dialog, "lblConnHamlib").toolTip(), "no rigctld at shack:4532");
                   tcp.listen(4532);
                   clock.advance(2000);
                   tcp.answer();
                   for (const char* answer : {"0\n", "14025500\n", "0\nVFOA\n", "0\n"})
                       tcp.send(answer);
                   settle();
                   EXPECT_EQ(part<QLabel>(dialog, "lblHamlibData").text(), "14025.5 KHz");
                   EXPECT_TRUE(part(dialog, "lblHamlibData").isVisible());
                   address.setFocus();
                   QTest::keyClick(&address, Qt::Key_Return);
               });
    EXPECT_EQ(f().intConnProgrTuner, int{form::kHamlib});
    EXPECT_EQ(hardware.kept().rigctld, "shack");
    withDialog([&] { f().mnuTunConn.Click.fire(); },
               [&](QWidget& dialog) {
                   EXPECT_TRUE(part(dialog, "lblHamlibData").isVisible());
                   QTest::keyClick(&dialog, Qt::Key_Escape);
               });
}

TEST_F(FormDialogs, PastedTextPassesTheFilterOfTypedText) {
    const auto pasteByMenu = [](QWidget& box) {
        QContextMenuEvent asks(QContextMenuEvent::Keyboard, {1, 1}, box.mapToGlobal(QPoint(1, 1)));
        QApplication::sendEvent(&box, &asks);
        auto* menu = dynamic_cast<QMenu*>(QApplication::activePopupWidget());
        ASSERT_TRUE(menu);
        for (QAction* action : menu->actions()) {
            if (action->text().startsWith("&Paste")) action->trigger();
        }
        menu->close();
    };
    withDialog([&] { f().mnuGenSet.Click.fire(); },
               [&](QWidget& dialog) {
                   auto& key = part<QLineEdit>(dialog, "txtCW1");
                   QGuiApplication::clipboard()->setText("b7Qa\n");
                   key.setFocus();
                   QTest::keyClick(&key, Qt::Key_V, Qt::ControlModifier);
                   EXPECT_EQ(key.text(), "a"); // as when it is typed
                   QGuiApplication::clipboard()->setText("7Q");
                   QTest::keyClick(&key, Qt::Key_Insert, Qt::ShiftModifier);
                   pasteByMenu(key);
                   EXPECT_EQ(key.text(), "a");
                   QTest::keyClick(&dialog, Qt::Key_Escape);
               });
    withDialog([&] { f().mnuTunConn.Click.fire(); },
               [&](QWidget& dialog) {
                   auto& number = part<QLineEdit>(dialog, "txtN1mmPortNumb");
                   number.selectAll();
                   QGuiApplication::clipboard()->setText(" 12061\n");
                   pasteByMenu(number);
                   EXPECT_EQ(number.text(), "12061");
                   settle();
                   EXPECT_TRUE(number.font().italic()); // marked as edited
                   QTest::keyClick(&dialog, Qt::Key_Escape);
               });
}

TEST_F(FormDialogs, EveryControlIsNamedAndExplained) {
    for (form::Menu* menu : {&f().mnuGenSet, &f().mnuTunConn, &f().mnuSplash}) {
        withDialog([&] { menu->Click.fire(); },
                   [](QWidget& dialog) {
                       for (QWidget* widget : dialog.findChildren<QWidget*>()) {
                           const bool takesFocus =
                               (widget->focusPolicy() & Qt::TabFocus) && widget->isVisible();
                           if (!takesFocus || widget->objectName().isEmpty()) continue;
                           EXPECT_FALSE(widget->accessibleName().isEmpty())
                               << widget->objectName().toStdString();
                           EXPECT_FALSE(widget->toolTip().isEmpty()) << widget->objectName().toStdString();
                       }
                       QTest::keyClick(&dialog, Qt::Key_Escape);
                   });
    }
}

TEST(PlatformDialogs, MessagesAreAnsweredAndNeverMarkup) {
    qt_ports::Dialogs dialogs;
    bool answer = false;
    const auto ask = [&](platform::Buttons buttons) {
        return [&, buttons] {
            answer = dialogs.message("<b>7 & 8</b>", "Title", platform::Icon::Critical, buttons);
        };
    };
    withDialog(ask(platform::Buttons::OkCancel), [](QWidget& dialog) {
        auto& box = dynamic_cast<QMessageBox&>(dialog);
        EXPECT_EQ(box.text(), "<b>7 & 8</b>");
        EXPECT_EQ(box.textFormat(), Qt::PlainText);
        EXPECT_EQ(box.icon(), QMessageBox::Critical);
        QTest::keyClick(&box, Qt::Key_Return);
    });
    EXPECT_TRUE(answer);
    withDialog(ask(platform::Buttons::OkCancel), [](QWidget& box) { QTest::keyClick(&box, Qt::Key_Escape); });
    EXPECT_FALSE(answer);
}

TEST(PlatformDialogs, AnInputReplacesTheProposedText) {
    qt_ports::Dialogs dialogs;
    std::optional<std::string> answer;
    const auto ask = [&] { answer = dialogs.input("Insert a label", "Memory label", "7.050", 10); };
    withDialog(ask, [](QWidget& dialog) {
        EXPECT_EQ(dynamic_cast<QInputDialog&>(dialog).textValue(), "7.050");
        QTest::keyClicks(QApplication::focusWidget(), "40 m");
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    });
    EXPECT_EQ(answer, "40 m");
    withDialog(ask, [](QWidget& dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); });
    EXPECT_FALSE(answer);
}

TEST(PlatformDialogs, ASavedFileGetsItsExtensionAndReplacesNoneUnasked) {
    const QTemporaryDir folder;
    QFile existing(folder.filePath("home.cfg"));
    ASSERT_TRUE(existing.open(QIODevice::WriteOnly));
    qt_ports::Dialogs dialogs;
    std::optional<std::string> answer;
    const auto save = [&] { answer = dialogs.saveFile("Config File (*.cfg)|*.cfg", ""); };
    const auto choose = [&](QWidget& dialog, const char* name) {
        auto& files = dynamic_cast<QFileDialog&>(dialog);
        EXPECT_EQ(files.nameFilters(), QStringList{"Config File (*.cfg)"});
        files.setDirectory(folder.path());
        auto* edit = files.findChild<QLineEdit*>("fileNameEdit");
        edit->setText(name);
        QTest::keyClick(edit, Qt::Key_Return);
    };
    withDialog(save, [&](QWidget& dialog) { choose(dialog, "field.day"); });
    EXPECT_EQ(answer, QDir::toNativeSeparators(folder.filePath("field.day.cfg")).toStdString());

    for (const bool replace : {false, true}) {
        withDialog(save, [&](QWidget& dialog) {
            QTimer::singleShot(0, [&] {
                auto* question = dynamic_cast<QMessageBox*>(QApplication::activeModalWidget());
                ASSERT_TRUE(question);
                if (!replace) {
                    // The file dialog comes back, to be left.
                    QTimer::singleShot(
                        0, [] { QTest::keyClick(QApplication::activeModalWidget(), Qt::Key_Escape); });
                }
                question->button(replace ? QMessageBox::Yes : QMessageBox::No)->click();
            });
            choose(dialog, "home");
        });
        EXPECT_EQ(answer.has_value(), replace);
    }
}

TEST(PlatformDialogs, ColoursAreBlueGreenRed) {
    qt_ports::Dialogs dialogs;
    std::optional<std::uint32_t> answer;
    withDialog([&] { answer = dialogs.chooseColour(0x0000FFU, "Display"); },
               [](QWidget& dialog) {
                   auto& colours = dynamic_cast<QColorDialog&>(dialog);
                   EXPECT_EQ(colours.currentColor(), QColor(Qt::red));
                   EXPECT_EQ(colours.windowTitle(), "Display");
                   colours.setCurrentColor(QColor(0x12, 0x34, 0x56));
                   QTest::keyClick(&colours, Qt::Key_Return);
               });
    EXPECT_EQ(answer, 0x563412U);
}

} // namespace
