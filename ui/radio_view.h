#pragma once

#include "form/form1.h"
#include "ui/adapters.h"
#include "ui/card.h"

namespace ui {

/// The panel of the tuner functions: the radio's frequency, its connection, automatic recall.
class RadioView : public Card {
  public:
    RadioView(form::Form1& form, Adapters& adapters);

  private:
    void layOutFrequency(form::Form1& form, Adapters& adapters);
    void layOutFit(form::Form1& form, Adapters& adapters);
    void layOutRecall(form::Form1& form, Adapters& adapters);
};

/// Widgets on top of each other, of which the one brought to the front is seen.
QWidget* pile(std::initializer_list<QWidget*> widgets);

} // namespace ui
