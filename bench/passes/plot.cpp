#include "bench/passes/plot.h"

#include <iomanip>
#include <sstream>

namespace passes {

namespace {

constexpr double kWidth = 760, kLeft = 60, kRight = 20;
constexpr std::size_t kEach = 2; // samples to a point
constexpr double kAzimuthHeight = 260, kElevationHeight = 110, kGap = 30, kTop = 40;

/// A field of the picture, degrees upwards.
struct Field {
    double top, height, low, high;
    int every; // degrees between two lines
};

class Picture {
  public:
    explicit Picture(double seconds) : seconds_(seconds) {
        text_ << std::fixed << std::setprecision(1)
              << "<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"0 0 " << kWidth << " "
              << kTop + kAzimuthHeight + kGap + kElevationHeight + kGap
              << "\" font-family=\"sans-serif\" font-size=\"12\">\n"
              << "<rect width=\"100%\" height=\"100%\" fill=\"white\"/>\n";
    }
    void frame(const Field& field, const char* name) {
        for (double degrees = field.low; degrees <= field.high; degrees += field.every) {
            text_ << "<path d=\"M" << kLeft << " " << y(field, degrees) << "H" << kWidth - kRight
                  << "\" stroke=\"#ddd\"/>"
                  << "<text x=\"" << kLeft - 8 << "\" y=\"" << y(field, degrees) + 4
                  << "\" text-anchor=\"end\" fill=\"#555\">" << static_cast<int>(degrees) << "°</text>\n";
        }
        text_ << "<text x=\"" << kLeft << "\" y=\"" << field.top - 8 << "\" fill=\"#555\">" << name
              << "</text>\n";
    }
    template <class Value>
    void line(const Result& result, const Field& field, const char* style, const Value& value) {
        text_ << "<polyline fill=\"none\" " << style << " points=\"";
        for (std::size_t n = 0; n < result.samples.size(); n += kEach) {
            const Sample& sample = result.samples[n];
            text_ << x(sample.seconds) << "," << y(field, value(sample)) << " ";
        }
        text_ << "\"/>\n";
    }
    void legend(double at, const char* style, const char* name) {
        text_ << "<path d=\"M" << at << " 14h24\" " << style << "/><text x=\"" << at + 30 << "\" y=\"18\">"
              << name << "</text>\n";
    }
    std::string end() {
        text_ << "</svg>\n";
        return text_.str();
    }

  private:
    double x(double seconds) const { return kLeft + (kWidth - kLeft - kRight) * seconds / seconds_; }
    static double y(const Field& field, double degrees) {
        return field.top + field.height * (field.high - degrees) / (field.high - field.low);
    }
    double seconds_;
    std::ostringstream text_;
};

constexpr const char* kTarget = "stroke=\"#999\" stroke-width=\"4\" stroke-opacity=\"0.5\"";
constexpr const char* kAntenna = "stroke=\"#0a60c0\" stroke-width=\"1.5\"";
constexpr const char* kPlain = "stroke=\"#c03010\" stroke-width=\"1.2\" stroke-dasharray=\"5 3\"";

} // namespace

std::string plot(const Result& result) {
    Picture picture(result.samples.back().seconds);
    const Field azimuth{kTop + 20, kAzimuthHeight - 20, -90, 360, 90};
    const Field elevation{kTop + kAzimuthHeight + kGap, kElevationHeight, 0, 90, 30};
    picture.legend(kLeft, kTarget, "target");
    picture.legend(kLeft + 110, kAntenna, "antenna");
    picture.legend(kLeft + 230, kPlain, "a follower that obeys each target at once");
    picture.frame(azimuth, "azimuth of the machine");
    picture.frame(elevation, "elevation");
    picture.line(result, azimuth, kTarget, [](const Sample& sample) { return sample.target.azimuth; });
    picture.line(result, azimuth, kPlain, [](const Sample& sample) { return sample.plain.azimuth; });
    picture.line(result, azimuth, kAntenna, [](const Sample& sample) { return sample.antenna.azimuth; });
    picture.line(result, elevation, kTarget, [](const Sample& sample) { return sample.target.elevation; });
    picture.line(result, elevation, kPlain, [](const Sample& sample) { return sample.plain.elevation; });
    picture.line(result, elevation, kAntenna, [](const Sample& sample) { return sample.antenna.elevation; });
    return picture.end();
}

} // namespace passes
