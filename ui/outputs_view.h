#pragma once

#include "form/form1.h"
#include "ui/adapters.h"
#include "ui/card.h"

namespace ui {

/// The outputs in one row: off, automatic off, the USB board.
class OutputsView : public Card {
  public:
    OutputsView(form::Form1& form, Adapters& adapters);

  private:
    void layOutRamp(form::Form1& form, Adapters& adapters);
};

} // namespace ui
