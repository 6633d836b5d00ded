#include "ui/dialog.h"

#include "ui/card.h"

#include <QApplication>
#include <QKeyEvent>

namespace ui {

Dialog::Dialog(form::Form& form, Redraw& redraw, QWidget* parent, bool modal)
    : QDialog(parent), form_(form), adapters_(redraw) {
    setObjectName(shown(form.name()));
    setWindowTitle(shown(form.Caption));
    setModal(modal);
    form_.onUnload = [this] { done(QDialog::Accepted); };
    form_.onBeep = [] { QApplication::beep(); };
}

Dialog::~Dialog() {
    form_.onUnload = nullptr;
    form_.onBeep = nullptr;
}

QVBoxLayout* Dialog::column() {
    auto* all = new QVBoxLayout(this);
    all->setContentsMargins(2 * kGrid, 2 * kGrid, 2 * kGrid, 2 * kGrid);
    all->setSpacing(kGrid + kGrid / 2);
    all->setSizeConstraint(QLayout::SetFixedSize);
    return all;
}

QDialogButtonBox* Dialog::addButtons(form::Button& accept, const Words& acceptWords, form::Button& cancel,
                                     const Words& cancelWords) {
    auto* buttons = new QDialogButtonBox;
    PushButton* acceptButton = adapters_.button(accept, acceptWords);
    buttons->addButton(acceptButton, QDialogButtonBox::AcceptRole);
    buttons->addButton(adapters_.button(cancel, cancelWords), QDialogButtonBox::RejectRole);
    default_ = acceptButton;
    cancel_ = &cancel;
    return buttons;
}

QDialogButtonBox* Dialog::addCloseButton(form::Button& close, const Words& words) {
    auto* buttons = new QDialogButtonBox;
    PushButton* button = adapters_.button(close, words);
    buttons->addButton(button, QDialogButtonBox::AcceptRole);
    default_ = button;
    cancel_ = &close;
    return buttons;
}

void Dialog::showEvent(QShowEvent* event) {
    // Only a button that is in its dialog can become the default one.
    if (default_) default_->setDefault(true);
    QDialog::showEvent(event);
}

void Dialog::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape && onEscape && onEscape()) return;
    QDialog::keyPressEvent(event);
}

void Dialog::reject() {
    // Esc in a text box may have unloaded the form already.
    if (!isVisible()) return;
    if (cancel_) {
        cancel_->Click.fire();
    } else {
        form_.unload();
    }
}

} // namespace ui
