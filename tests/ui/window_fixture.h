#pragma once

#include "tests/desk.h"
#include "ui/main_window.h"

#include <QApplication>
#include <QTest>
#include <QTimer>
#include <stdexcept>

/// Lets windows draw what has changed.
inline void settle() {
    constexpr int kMoreThanOneRound = 60;
    QTest::qWait(kMoreThanOneRound);
}

/// Calls `open`, and `act` with the dialog that this opens; the dialog must be closed by then.
inline void withDialog(const std::function<void()>& open, const std::function<void(QWidget&)>& act) {
    bool seen = false;
    QTimer::singleShot(0, [&] {
        QWidget* dialog = QApplication::activeModalWidget();
        ASSERT_TRUE(dialog);
        ASSERT_TRUE(QTest::qWaitFor([&] { return dialog->isAncestorOf(QApplication::focusWidget()); }));
        seen = true;
        act(*dialog);
        if (dialog == QApplication::activeModalWidget()) {
            ADD_FAILURE() << "the dialog is still open";
            QTest::keyClick(dialog, Qt::Key_Escape);
        }
    });
    open();
    EXPECT_TRUE(seen);
}

/// A part of a window, by the name of its control.
template <class Kind = QWidget>
Kind& part(QWidget& window, const char* name) {
    auto* found = dynamic_cast<Kind*>(window.findChild<QWidget*>(name));
    if (!found) throw std::runtime_error(std::string("no such widget: ") + name);
    return *found;
}

/// The program with its real window.
class WindowFixture : public Desk {
  protected:
    void SetUp() override {
        startTuner();
        openWindow();
    }

    void openWindow() {
        window_ = std::make_unique<ui::MainWindow>(f(), controller->boxes());
        window_->setWindowState(Qt::WindowNoState); // whatever the screen
        window_->resize(1280, 720);
        window_->show();
        ASSERT_TRUE(QTest::qWaitForWindowActive(window_.get()));
        settle();
    }

    void closeWindow() { window_.reset(); }

    ui::MainWindow& window() { return *window_; }
    template <class Kind = QWidget>
    Kind& widget(const char* name) {
        return part<Kind>(window(), name);
    }
    QString text(const char* name) { return widget<QLabel>(name).text(); }
    void click(const char* name) {
        QTest::mouseClick(&widget(name), Qt::LeftButton);
        settle();
    }
    void chooseFunction(int function) {
        if (function == form::kCoilTuner) f().mnuCoilTuner.Click.fire();
        if (function == form::kTuneAndLoad) f().mnuAmpli.Click.fire();
        if (function == form::kSatelliteRotor) f().mnuSat.Click.fire();
        settle();
    }
    bool stands() {
        return !f().Timer1.Enabled && !f().Timer2.Enabled && !f().Timer3.Enabled && !f().Timer4.Enabled;
    }

  private:
    std::unique_ptr<ui::MainWindow> window_;
};
