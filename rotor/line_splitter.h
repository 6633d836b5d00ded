#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace rotor {

/// Cuts a stream of text into lines. A server may send several lines at once, half of one, or a position
/// with no line end at all: what has no end yet is kept for the next bytes, until flush takes it as a line.
/// A line that grows beyond kLongest bytes is dropped up to its end, by a line end or by silence.
class LineSplitter {
  public:
    static constexpr std::size_t kLongest = 64U << 10; // bytes

    /// `take` gets each line without its end ("\n", "\r" or both); empty lines are left out.
    explicit LineSplitter(std::function<void(const std::string&)> take) : take_(std::move(take)) {}

    void add(std::string_view bytes);
    /// Nothing more has come for a while: what is there is a line.
    void flush();
    /// Forgets what is there: the connection it came from is gone.
    void clear();
    bool pending() const { return dropping_ || !line_.empty(); }

  private:
    void endLine();

    std::function<void(const std::string&)> take_;
    std::string line_;
    bool dropping_ = false;
};

} // namespace rotor
