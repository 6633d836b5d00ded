#pragma once

#include "form/form1.h"
#include "ui/card.h"

namespace ui {

/// The sky above the antenna, in Satellite Rotor: where the antenna points and where the target stands.
class SkyView : public Card {
  public:
    explicit SkyView(form::Form1& form);
};

} // namespace ui
