#pragma once

#include "form/form1.h"
#include "ui/adapters.h"

#include <QMainWindow>

namespace ui {

void layOutMenus(QMainWindow& window, form::Form1& form, Adapters& adapters);
void layOutStatusBar(QMainWindow& window, form::Form1& form, Adapters& adapters);

} // namespace ui
