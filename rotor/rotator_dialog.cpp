#include "rotor/rotator_dialog.h"

#include "runtime/errors.h"

namespace rotor {

RotatorDialog::RotatorDialog(form::FrmRotator& dialog, Rotor& rotor, platform::Settings& file)
    : dialog_(dialog), rotor_(rotor), file_(file) {
    dialog_.cmdSaveRotator.Click.attach([this] { cmdSaveRotator_Click(); });
    dialog_.cmdExitRotator.Click.attach([this] { dialog_.unload(); });
}

void RotatorDialog::Form_Load() {
    for (const RotorField& field : kRotorFields) {
        const std::string text = field.text(rotor_.settings());
        if (field.box) (dialog_.*field.box).Text = text;
        if (field.check) (dialog_.*field.check).Value = text == config::kYes ? 1 : 0;
    }
}

void RotatorDialog::cmdSaveRotator_Click() {
    RotorSettings settings;
    for (const RotorField& field : kRotorFields) {
        const std::string text = field.box ? (dialog_.*field.box).Text.get()
                                           : ((dialog_.*field.check).ticked() ? config::kYes : config::kNo);
        if (field.take(settings, text)) continue;
        dialog_.lblRotatorError.Caption = "\"" + text + "\" is not " + field.shape;
        (dialog_.*field.box).setFocus();
        return;
    }
    if (const auto fault = faultOf(settings)) {
        dialog_.lblRotatorError.Caption = *fault;
        dialog_.txtPark.setFocus();
        return;
    }
    try {
        writeRotorSettings(file_, settings);
    } catch (const runtime::FileError& error) {
        dialog_.lblRotatorError.Caption = error.what();
        return;
    }
    rotor_.use(settings);
    dialog_.unload();
}

} // namespace rotor
