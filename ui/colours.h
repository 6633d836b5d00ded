#pragma once

#include "form/colours.h"

#include <QColor>
#include <QPalette>

/// Colours on the screen. All but the stored ones come from the user's palette.
namespace ui {

inline bool namesPaletteColour(form::Colour colour) {
    return (colour & form::kPaletteBit) != 0;
}

/// A stored colour; one that names a palette colour follows the palette.
QColor screenColour(form::Colour colour, const QPalette& palette);

/// Black or white, whichever can be read on this background.
QColor readableOn(const QColor& background);
/// Amber as a text on the window.
QColor amberText(const QPalette& palette);
/// `share` (0 to 1) of `other` in `base`.
QColor mixed(const QColor& base, const QColor& other, double share);

/// What groups of controls stand on, their edge, and the text that may be overlooked.
QColor cardColour(const QPalette& palette);
QColor hairline(const QPalette& palette);
QColor quietText(const QPalette& palette);

} // namespace ui
