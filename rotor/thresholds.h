#pragma once

#include "config/record_file.h"
#include "form/form1.h"

#include <array>

namespace rotor {

/// A threshold of Satellite Rotor: its scroll bar, the label with its value, and its record.
struct Threshold {
    form::ScrollBar& bar;
    form::Label& value;
    int record;
};

std::array<Threshold, 6> thresholds(form::Form1& form);

/// Thresholds are written when they change, offsets at exit.
class Thresholds {
  public:
    Thresholds(form::Form1& form, config::RecordFile& file);

    /// Shows the values of all bars in their labels.
    void show();

  private:
    void HScroll_Change(const Threshold& threshold);
    void showOffsets();

    form::Form1& form_;
    config::RecordFile& file_;
    const std::array<Threshold, 6> all_;
};

} // namespace rotor
