#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace rotor {

/// Cuts a stream of text into lines. A server may send several lines at once, half a line, or positions
/// without line ends. Text without a line end is kept for the next bytes. From a server that sends no line
/// ends at all, flush takes it as a line; from any other one it is half a line. A line longer than kLongest
/// bytes is dropped up to its end; a line end or silence ends it.
class LineSplitter {
  public:
    static constexpr std::size_t kLongest = 64U << 10; // bytes

    /// Calls `take` with each line, without the line end ("\n", "\r" or both); empty lines are skipped.
    explicit LineSplitter(std::function<void(const std::string&)> take) : take_(std::move(take)) {}

    void add(std::string_view bytes);
    /// Call after silence.
    void flush();
    /// Call for a new connection: drops the kept text.
    void clear();
    /// Whether flush has something to do.
    bool pending() const { return dropping_ || (!line_.empty() && !endsLines_); }

  private:
    void endLine();

    std::function<void(const std::string&)> take_;
    std::string line_;
    bool dropping_ = false;
    bool endsLines_ = false; // a line end has come
};

} // namespace rotor
