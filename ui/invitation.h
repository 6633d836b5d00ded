#pragma once

#include "form/form1.h"
#include "ui/card.h"

namespace ui {

/// What stands in the main window while nothing is set up: the three functions, and the set-up assistant.
class Invitation : public Card {
  public:
    explicit Invitation(form::Form1& form);
};

} // namespace ui
