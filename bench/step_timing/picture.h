#pragma once

#include "statistics.h"

#include <filesystem>
#include <string>
#include <vector>

namespace bench {

struct Histogram {
    std::string title;
    const Figures* figures;
};

/// The spacings of each, one below the other on the same scale, as an SVG file. Throws std::runtime_error
/// when it cannot be written.
void draw(const std::vector<Histogram>& histograms, const std::filesystem::path& path);

} // namespace bench
