#pragma once

#include "form/boxes.h"
#include "form/form1.h"
#include "ui/adapters.h"
#include "ui/redraw.h"

#include <QMainWindow>
#include <functional>

namespace ui {

class EngineView;
class MemoryView;

/// The main window: a projection of its form, which it decides nothing about. It shows the form's dialogs
/// too.
class MainWindow : public QMainWindow {
  public:
    /// Both outlive the window.
    MainWindow(form::Form1& form, form::Boxes& boxes);
    ~MainWindow() override;

    /// The user closes the window. Without it, closing presses the exit menu.
    std::function<void()> onCloseRequested;

  protected:
    bool event(QEvent* event) override;
    void changeEvent(QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

  private:
    void layOutContent();
    QSize barsSize();
    void orderFocus();
    void nameEngines();
    void stopBoth();
    void showModal(form::Form& form);

    form::Form1& form_;
    form::Boxes& boxes_;
    Redraw redraw_;
    Adapters adapters_{redraw_};
    MemoryView* memories_ = nullptr;
};

} // namespace ui
