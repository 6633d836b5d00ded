#pragma once

#include "form/form1.h"

namespace app {

/// Says in the tool tips of controls that are grey, or do nothing now, why that is and what would help.
/// `noBoard`: no USB board is chosen.
void showReasons(form::Form1& form, bool noBoard);

} // namespace app
