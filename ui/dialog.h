#pragma once

#include "form/control.h"
#include "form/controls.h"
#include "ui/adapters.h"

#include <QDialog>
#include <QDialogButtonBox>
#include <QVBoxLayout>

namespace ui {

/// The window of a form. It closes when the form is unloaded; what the user closes, by
/// Esc or at the window's frame, raises the Cancel button's Click.
class Dialog : public QDialog {
  public:
    /// A window that is not modal stands beside its parent.
    Dialog(form::Form& form, Redraw& redraw, QWidget* parent, bool modal = true);
    ~Dialog() override;

    Adapters& adapters() { return adapters_; }
    /// The column in which a dialog of fixed size lays its parts out.
    QVBoxLayout* column();
    /// The buttons in the order of the platform; the first is the default one.
    QDialogButtonBox* addButtons(form::Button& accept, const Words& acceptWords, form::Button& cancel,
                                 const Words& cancelWords);
    QDialogButtonBox* addCloseButton(form::Button& close, const Words& words);

    void reject() override;

    /// Runs when Esc is pressed in this window. The dialog is not cancelled if it returns true.
    std::function<bool()> onEscape;

  protected:
    void keyPressEvent(QKeyEvent* event) override;
    void showEvent(QShowEvent* event) override;

  private:
    form::Form& form_;
    form::Button* cancel_ = nullptr;
    PushButton* default_ = nullptr;
    Adapters adapters_;
};

} // namespace ui
