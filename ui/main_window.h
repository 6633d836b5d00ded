#pragma once

#include "form/boxes.h"
#include "form/form1.h"
#include "ui/adapters.h"
#include "ui/redraw.h"

#include <QMainWindow>
#include <functional>

namespace ui {

class Dialog;
class EngineView;
class MemoryView;

/// The main window: it shows its form and the form's dialogs, and decides nothing itself.
class MainWindow : public QMainWindow {
  public:
    /// Both arguments outlive the window.
    MainWindow(form::Form1& form, form::Boxes& boxes);
    ~MainWindow() override;

    /// Called when the user closes the window. If it is not set, closing presses the exit menu.
    std::function<void()> onCloseRequested;

  protected:
    bool event(QEvent* event) override;
    void changeEvent(QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;

  private:
    void layOutContent();
    void addPositionMenus();
    QSize barsSize();
    void orderFocus();
    void nameEngines();
    void stopBoth();
    void showModal(form::Form& form);
    void showBeside(form::Form& form);
    /// A letter that may jog an engine; others are left alone.
    void loseKeyboard();
    bool jogs(const QKeyEvent& event) const;

    form::Form1& form_;
    form::Boxes& boxes_;
    Redraw redraw_;
    Adapters adapters_{redraw_};
    MemoryView* memories_ = nullptr;
    std::unique_ptr<Dialog> table_;
};

} // namespace ui
