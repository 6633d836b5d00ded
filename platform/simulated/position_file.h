#pragma once

#include "platform/position_file.h"
#include "runtime/errors.h"

#include <vector>

namespace simulated {

/// Outlives the program that a test abandons, as the real file outlives a kill.
class PositionFile : public platform::PositionFile {
  public:
    std::optional<std::string> leftOver() override { return content(); }
    std::span<std::byte> create(std::span<const std::byte> bytes) override {
        if (!refusal_.empty()) throw runtime::FileError(refusal_);
        exists_ = true;
        memory_.assign(bytes.begin(), bytes.end());
        return memory_;
    }
    void changed() override {}
    void remove() override { exists_ = false; }

    /// Nothing when there is no file.
    std::optional<std::string> content() const {
        if (!exists_) return std::nullopt;
        return std::string(reinterpret_cast<const char*>(memory_.data()), memory_.size());
    }
    void put(const std::string& bytes) {
        const auto* first = reinterpret_cast<const std::byte*>(bytes.data());
        exists_ = true;
        memory_.assign(first, first + bytes.size());
    }
    void refuseWith(std::string reason) { refusal_ = std::move(reason); }

  private:
    bool exists_ = false;
    std::vector<std::byte> memory_;
    std::string refusal_;
};

} // namespace simulated
