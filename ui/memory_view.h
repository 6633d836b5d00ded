#pragma once

#include "form/form1.h"
#include "ui/adapters.h"
#include "ui/card.h"

namespace ui {

/// The ten memories as one list.
class MemoryView : public Card {
  public:
    MemoryView(form::Form1& form, Adapters& adapters);

    /// The names of the engines, above their columns.
    void nameEngines(const QString& a, const QString& b);

  private:
    class Row;

    CaptionLabel* engineA_ = nullptr;
    CaptionLabel* engineB_ = nullptr;
};

} // namespace ui
