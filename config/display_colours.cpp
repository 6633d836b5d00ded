#include "config/display_colours.h"

#include "runtime/number.h"

#include <limits>

namespace config {

form::Colour displayColour(const form::Form1& form) {
    return form.Label2.ForeColor;
}

form::Colour displayBackground(const form::Form1& form) {
    return form.shpDisplayA.FillColor;
}

void applyDisplayColour(form::Form1& form, form::Colour colour) {
    for (form::Label* label :
         {&form.Label2, &form.Label8, &form.lblAzimut, &form.lblElev, &form.lblUnitA, &form.lblUnitB,
          &form.lblAzRx, &form.lblElRx, &form.lblTargetA, &form.lblTargetB, &form.lblToGoA, &form.lblToGoB}) {
        label->ForeColor = colour;
    }
}

void applyDisplayBackground(form::Form1& form, form::Colour colour) {
    form.shpDisplayA.FillColor = colour;
    form.shpDisplayB.FillColor = colour;
}

form::Colour colourFromText(const std::string& text, form::Colour fallback) {
    const std::size_t start = text.starts_with("&H") ? 2 : 0;
    const char* digits = start == 0 ? "0123456789" : "0123456789ABCDEFabcdef";
    if (text.size() == start || text.find_first_not_of(digits, start) != std::string::npos) return fallback;
    const double value = runtime::leadingNumber(text);
    if (value > std::numeric_limits<form::Colour>::max()) return fallback;
    return static_cast<form::Colour>(value);
}

} // namespace config
