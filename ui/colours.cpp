#include "ui/colours.h"

#include <cmath>

namespace ui {

namespace {

/// Relative luminance as the Web Content Accessibility Guidelines 2.1 define it, 0 to 1.
double luminance(const QColor& colour) {
    const auto linear = [](double channel) {
        return channel <= 0.03928 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) +
           0.0722 * linear(colour.blueF());
}

} // namespace

QColor screenColour(form::Colour colour, const QPalette& palette) {
    if (colour == form::kWindowBackground) return palette.color(QPalette::Active, QPalette::Base);
    if (colour == form::kButtonFace) return palette.color(QPalette::Button);
    if (namesPaletteColour(colour)) return palette.color(QPalette::Active, QPalette::WindowText);
    return QColor(static_cast<int>(colour & 0xFFU), static_cast<int>((colour >> 8U) & 0xFFU),
                  static_cast<int>((colour >> 16U) & 0xFFU));
}

QColor readableOn(const QColor& background) {
    // The luminance at which black and white have the same contrast ratio.
    constexpr double kEven = 0.179;
    return luminance(background) > kEven ? Qt::black : Qt::white;
}

QColor amberText(const QPalette& palette) {
    const bool dark = readableOn(palette.color(QPalette::Active, QPalette::Window)) == QColor(Qt::white);
    return dark ? screenColour(form::kAmber, palette) : QColor(0x9A, 0x5B, 0x00);
}

QColor mixed(const QColor& base, const QColor& other, double share) {
    const auto mix = [share](float a, float b) {
        return static_cast<float>(static_cast<double>(a) * (1 - share) + static_cast<double>(b) * share);
    };
    return QColor::fromRgbF(mix(base.redF(), other.redF()), mix(base.greenF(), other.greenF()),
                            mix(base.blueF(), other.blueF()));
}

QColor cardColour(const QPalette& palette) {
    const QColor window = palette.color(QPalette::Active, QPalette::Window);
    const bool dark = readableOn(window) == QColor(Qt::white);
    // A dark palette's base lies below its window; a card should lie above it.
    return dark ? mixed(window, palette.color(QPalette::Active, QPalette::WindowText), 0.05)
                : palette.color(QPalette::Active, QPalette::Base);
}

QColor hairline(const QPalette& palette) {
    return mixed(palette.color(QPalette::Active, QPalette::Window),
                 palette.color(QPalette::Active, QPalette::WindowText), 0.16);
}

QColor quietText(const QPalette& palette) {
    return mixed(palette.color(QPalette::Active, QPalette::WindowText),
                 palette.color(QPalette::Active, QPalette::Window), 0.36);
}

} // namespace ui
