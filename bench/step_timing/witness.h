#pragma once

#include "round.h"

#include <atomic>
#include <thread>
#include <vector>

namespace bench {

/// A bare loop on each processor beside whatever is measured: it tells the machine's own stalls, as virtual
/// machines have them, from those of the program.
class Witness {
  public:
    Witness();
    /// The longest by which one of the loops was late since the last call.
    Nanoseconds longestStall() { return longest_.exchange(0); }

  private:
    void watch(const std::stop_token& stop, std::size_t processor);

    std::atomic<Nanoseconds> longest_{0};
    std::vector<std::jthread> threads_; // last: they end before what they use
};

} // namespace bench
