#include "rotor/line_splitter.h"

#include <algorithm>
#include <utility>

namespace rotor {

void LineSplitter::add(std::string_view bytes) {
    while (!bytes.empty()) {
        const std::size_t end = std::min(bytes.find_first_of("\r\n"), bytes.size());
        if (!dropping_) line_.append(bytes.substr(0, end));
        if (line_.size() > kLongest) {
            line_.clear();
            dropping_ = true;
        }
        if (end == bytes.size()) return;
        endsLines_ = true;
        endLine();
        bytes.remove_prefix(end + 1);
    }
}

void LineSplitter::flush() {
    // Silence also ends a line that is being dropped.
    if (pending()) endLine();
}

void LineSplitter::endLine() {
    dropping_ = false;
    const std::string line = std::exchange(line_, {});
    if (!line.empty()) take_(line);
}

void LineSplitter::clear() {
    line_.clear();
    dropping_ = endsLines_ = false;
}

} // namespace rotor
