#pragma once

#include "form/assistant.h"
#include "form/dialogs.h"
#include "form/go_to.h"
#include "ui/dialog.h"

/// One layout for each dialog.
namespace ui {

void layOut(Dialog& window, form::FrmInsPosition& form);
void layOut(Dialog& window, form::FrmGenSet& form);
void layOut(Dialog& window, form::FrmTunerConn& form);
void layOut(Dialog& window, form::FrmSatConn& form);
void layOut(Dialog& window, form::FrmServer& form);
void layOut(Dialog& window, form::FrmHardware& form);
void layOut(Dialog& window, form::FrmRotator& form);
void layOut(Dialog& window, form::FrmGoTo& form);
void layOut(Dialog& window, form::FrmAssistant& form);
void layOut(Dialog& window, form::FrmAbout& form);

} // namespace ui
