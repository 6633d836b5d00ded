#pragma once

#include "runtime/errors.h"

#include <compare>
#include <concepts>
#include <cstdint>
#include <limits>

namespace runtime {

/// An integer of fixed width whose construction and arithmetic throw OverflowError instead of wrapping.
template <std::integral T>
class Checked {
  public:
    constexpr Checked() = default;
    constexpr Checked(std::int64_t wide) : value_(static_cast<T>(wide)) {
        if (wide < std::numeric_limits<T>::min() || wide > std::numeric_limits<T>::max())
            throw OverflowError();
    }

    constexpr T value() const { return value_; }

    friend constexpr auto operator<=>(Checked, Checked) = default;
    friend constexpr Checked operator+(Checked a, Checked b) { return std::int64_t{a.value_} + b.value_; }
    friend constexpr Checked operator-(Checked a, Checked b) { return std::int64_t{a.value_} - b.value_; }
    friend constexpr Checked operator*(Checked a, Checked b) { return std::int64_t{a.value_} * b.value_; }
    constexpr Checked& operator+=(Checked b) { return *this = *this + b; }

  private:
    T value_ = 0;
};

using Byte = Checked<std::uint8_t>;
using Int16 = Checked<std::int16_t>;
using Int32 = Checked<std::int32_t>;

} // namespace runtime
