#include "picture.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <fstream>
#include <stdexcept>

namespace bench {

namespace {

// Pixels.
constexpr double kWidth = 820, kLeft = 16, kRight = 16, kTop = 48, kPanel = 96, kPlot = 62, kBottom = 34;
constexpr int kBins = 150;
constexpr Nanoseconds kBin = 20'000;
constexpr Nanoseconds kScale = kBins * kBin;
constexpr Nanoseconds kMark = 500'000;
constexpr double kShortestAllowed = 0.85; // of the interval
constexpr double kColumn = (kWidth - kLeft - kRight) / (kBins + 1);
/// The share that one in a million makes would be as low as nothing.
constexpr double kDecades = 6;

double x(Nanoseconds spacing) {
    return kLeft + static_cast<double>(spacing) / kBin * kColumn;
}

std::string withoutMarkup(std::string title) {
    std::erase_if(title, [](char c) { return c == '*' || c == '`'; });
    return title;
}

/// Shares of all spacings; the last column holds what is beyond the scale.
std::array<double, kBins + 1> shares(const std::vector<Nanoseconds>& spacings) {
    std::array<double, kBins + 1> columns{};
    for (const Nanoseconds spacing : spacings)
        columns.at(static_cast<std::size_t>(std::clamp<Nanoseconds>(spacing / kBin, 0, kBins))) += 1;
    for (double& column : columns)
        column /= static_cast<double>(spacings.size());
    return columns;
}

void drawPanel(std::ofstream& svg, const Histogram& histogram, double top) {
    const double base = top + kPanel - 12;
    svg << "<text x='" << kLeft << "' y='" << top + 12 << "' class='name'>" << withoutMarkup(histogram.title)
        << "</text>\n<path class='bars' d='";
    const auto columns = shares(histogram.figures->spacings());
    for (std::size_t n = 0; n < columns.size(); ++n) {
        if (columns[n] <= 0) continue;
        const double height = std::max(0.0, 1 + std::log10(columns[n]) / kDecades) * kPlot;
        svg << 'M' << kLeft + static_cast<double>(n) * kColumn << ' ' << base << 'v' << -height << 'h'
            << kColumn - 0.6 << 'v' << height << 'z';
    }
    svg << "'/>\n<path class='axis' d='M" << kLeft << ' ' << base << "H" << kWidth - kRight << "'/>\n";
}

} // namespace

void draw(const std::vector<Histogram>& histograms, const std::filesystem::path& path) {
    std::ofstream svg(path);
    svg.precision(5);
    const double height = kTop + kPanel * static_cast<double>(histograms.size()) + kBottom;
    const double floor = height - kBottom;
    svg << "<svg xmlns='http://www.w3.org/2000/svg' viewBox='0 0 " << kWidth << ' ' << height
        << "' font-family='sans-serif' font-size='12'>\n"
           "<style>.name{font-weight:bold}.bars{fill:#2a6fb0}.axis{stroke:#444;fill:none}"
           ".grid{stroke:#ddd;fill:none}.limit{stroke:#c62828;stroke-dasharray:4 3;fill:none}</style>\n"
           "<rect width='100%' height='100%' fill='#fff'/>\n"
           "<text x='"
        << kLeft
        << "' y='20'>Time from one tick to the next, set to 1 ms. A bar's height is a logarithm: "
           "full height is every tick, none is one in a million.</text>\n";
    for (Nanoseconds mark = 0; mark <= kScale; mark += kMark) {
        svg << "<path class='grid' d='M" << x(mark) << ' ' << kTop << 'V' << floor << "'/>\n<text x='"
            << x(mark) << "' y='" << floor + 14 << "' text-anchor='"
            << (mark == 0        ? "start"
                : mark == kScale ? "end"
                                 : "middle")
            << "'>" << static_cast<double>(mark) / 1e6 << (mark == kScale ? " ms and more" : " ms")
            << "</text>\n";
    }
    double top = kTop;
    for (const Histogram& histogram : histograms) {
        drawPanel(svg, histogram, top);
        top += kPanel;
    }
    const double limit = x(static_cast<Nanoseconds>(kShortestAllowed * kInterval));
    svg << "<path class='limit' d='M" << limit << ' ' << kTop - 8 << 'V' << floor << "'/>\n<text x='"
        << limit + 4 << "' y='" << kTop - 2
        << "' fill='#c62828'>a motor may lose steps below 0.85 ms</text>\n"
        << "</svg>\n";
    if (!svg.flush()) throw std::runtime_error("cannot write " + path.string());
}

} // namespace bench
