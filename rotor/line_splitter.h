#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace rotor {

/// Cuts a stream of text into lines. A server may send several lines at once, half a line, or a position
/// without a line end. Text without a line end is kept for the next bytes, until flush takes it as a line. A
/// line longer than kLongest bytes is dropped up to its end; a line end or silence ends it.
class LineSplitter {
  public:
    static constexpr std::size_t kLongest = 64U << 10; // bytes

    /// Calls `take` with each line, without the line end ("\n", "\r" or both); empty lines are skipped.
    explicit LineSplitter(std::function<void(const std::string&)> take) : take_(std::move(take)) {}

    void add(std::string_view bytes);
    /// Call after silence: takes the kept text as a line.
    void flush();
    /// Call when the connection is lost: drops the kept text.
    void clear();
    bool pending() const { return dropping_ || !line_.empty(); }

  private:
    void endLine();

    std::function<void(const std::string&)> take_;
    std::string line_;
    bool dropping_ = false;
};

} // namespace rotor
