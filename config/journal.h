#pragma once

#include "config/record.h"

/// Changes that belong together, and their format in the journal.
namespace config {

/// Changes that reach the disk together or not at all.
struct Unit {
    /// The new content of a whole file, named without its folder.
    struct Whole {
        std::string name;
        std::string bytes;
    };
    std::vector<Whole> files;
    std::vector<Record> records; // written after the files
};

/// A unit as a group of bytes: a mark, the length of what follows, its CRC-32, and the unit itself.
std::string encodeUnit(const Unit& unit);

/// The units of a journal, up to the first incomplete group; an interrupted program leaves an incomplete
/// group.
struct Journal {
    std::vector<Unit> units;
    std::size_t length = 0; // bytes of these units in the journal

    /// Whether they hold the whole of a file.
    bool holds(std::string_view name) const;
};
Journal decodeJournal(std::string_view bytes);

} // namespace config
