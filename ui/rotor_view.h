#pragma once

#include "form/form1.h"
#include "ui/adapters.h"
#include "ui/card.h"

namespace ui {

/// The panel of Satellite Rotor: links, offsets and thresholds.
class RotorView : public Card {
  public:
    RotorView(form::Form1& form, Adapters& adapters);

  private:
    void layOutFollowing(form::Form1& form, Adapters& adapters);
    static void layOutLinks(QBoxLayout& line, form::Form1& form, Adapters& adapters);
};

} // namespace ui
