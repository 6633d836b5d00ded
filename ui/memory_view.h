#pragma once

#include "form/form1.h"
#include "ui/adapters.h"
#include "ui/card.h"

#include <vector>

namespace ui {

/// The ten memories as one list.
class MemoryView : public Card {
  public:
    MemoryView(form::Form1& form, Adapters& adapters);

    /// In a small window, which scrolls and is mostly touched, every row has room for a finger.
    void setCompact(bool compact);
    /// The names of the engines, above their columns.
    void nameEngines(const QString& a, const QString& b);

  private:
    class Row;

    std::vector<Row*> rows_;
    CaptionLabel* engineA_ = nullptr;
    CaptionLabel* engineB_ = nullptr;
};

} // namespace ui
