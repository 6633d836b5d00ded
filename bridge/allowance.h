#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace bridge {

/// An allowance: an amount for a period. All of it may be used at once; it comes back gradually.
class Allowance {
  public:
    constexpr Allowance(std::int64_t most, std::int64_t milliseconds)
        : most_(most), time_(milliseconds), left_(most * milliseconds) {}

    /// Uses an amount; returns false and uses nothing if less is left.
    bool take(std::size_t amount = 1) {
        const auto cost = static_cast<std::int64_t>(amount) * time_;
        if (cost > left_) return false;
        left_ -= cost;
        return true;
    }
    void pass(int milliseconds) { left_ = std::min(most_ * time_, left_ + most_ * milliseconds); }

  private:
    std::int64_t most_;
    std::int64_t time_; // milliseconds
    std::int64_t left_; // in parts, of which each one of `most` has as many as the time has milliseconds
};

} // namespace bridge
