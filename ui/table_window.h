#pragma once

#include "form/boxes.h"
#include "form/form1.h"
#include "form/table_window.h"
#include "ui/dialog.h"

namespace ui {

/// The window of the frequency table, beside the main window.
void layOut(Dialog& window, form::FrmHiResMem& form, const form::Form1& main, form::Boxes& boxes);

} // namespace ui
