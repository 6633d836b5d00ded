#pragma once

#include <cstdint>

namespace form {

/// A colour as stored in files: blue-green-red (255 is pure red). If the top bit is set, it is the number of
/// a colour in the user's palette.
using Colour = std::uint32_t;

constexpr Colour kBlack = 0;
constexpr Colour kRed = 255;
constexpr Colour kGreen = 0xC000;       // off, safe, disconnected
constexpr Colour kBrightGreen = 0xFF00; // a test connection that works
constexpr Colour kYellow = 0xFFFF;      // an entry being edited
constexpr Colour kAmber = 0x00BFFF;     // warning

constexpr Colour kPaletteBit = 0x80000000;
constexpr Colour kWindowBackground = 0x80000005;
constexpr Colour kWindowText = 0x80000008;
constexpr Colour kButtonFace = 0x8000000F;

/// The display until the user chooses colours: mint digits on near black, readable across the room.
constexpr Colour kDefaultDisplay = 0xC8F58C;
constexpr Colour kDefaultDisplayBackground = 0x1E1812;

} // namespace form
