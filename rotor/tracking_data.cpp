#include "rotor/tracking_data.h"

#include "runtime/errors.h"
#include "runtime/number.h"
#include "runtime/text.h"

#include <algorithm>
#include <string_view>
#include <vector>

namespace rotor {

namespace {

constexpr double kOffsetsPerDegree = 100;

/// The first `count` tokens of a line, cut at every single blank: two in a row give an empty token.
std::vector<std::string> tokensOf(std::string_view text, std::size_t count) {
    std::vector<std::string> tokens;
    for (std::size_t begin = 0; tokens.size() < count && begin <= text.size();) {
        const std::size_t end = std::min(text.find(' ', begin), text.size());
        tokens.emplace_back(text.substr(begin, end - begin));
        begin = end + 1;
    }
    return tokens;
}

const std::string& token(const std::vector<std::string>& tokens, std::size_t number) {
    // No number is longer than this; drawing a much longer text would be slow.
    constexpr std::size_t kLongest = 64;
    if (number >= tokens.size() || tokens[number].size() > kLongest) throw runtime::SubscriptError();
    return tokens[number];
}

std::string withoutTag(const std::string& tagged) {
    constexpr std::size_t kTagLength = 2; // "AZ", "EL"
    return runtime::lastCharacters(tagged,
                                   std::max(runtime::characterCount(tagged), kTagLength) - kTagLength);
}

std::string withElevationOffset(const form::Form1& form, const std::string& degrees) {
    const double offset = form.HScOffsetB.Value.get() / kOffsetsPerDegree;
    return runtime::shortestText(runtime::toSingle(runtime::parseSingle(degrees) + offset));
}

/// Tokens 1 and 2 are azimuth and elevation. The raw labels show the two values crossed, and both values get
/// the elevation offset.
void readOrbitron(form::Form1& form, const std::string& text) {
    constexpr std::size_t kTokens = 3;
    const std::vector<std::string> tokens = tokensOf(text, kTokens);
    form.lblRealAz.Caption = withoutTag(token(tokens, 2));
    form.lblRealEl.Caption = withoutTag(token(tokens, 1));
    form.lblElRx.Caption = withElevationOffset(form, form.lblRealAz.Caption);
    form.lblAzRx.Caption = withElevationOffset(form, form.lblRealEl.Caption);
}

std::string withOffset(const std::string& degrees, const form::ScrollBar& bar) {
    const float offset = runtime::toSingle(bar.Value.get() / kOffsetsPerDegree);
    return runtime::formatStored(runtime::parseSingle(degrees) + offset);
}

void readSatPc32(form::Form1& form, const std::string& text) {
    constexpr std::size_t kTokens = 5;
    const std::vector<std::string> tokens = tokensOf(text, kTokens);
    const std::string& realEl = token(tokens, 1);
    const std::string& realAz = token(tokens, 2);
    showReceived(form, token(tokens, 3), token(tokens, 4));
    form.lblRealEl.Caption = realEl;
    form.lblRealAz.Caption = realAz;
}

/// The number after the tag, from the first token that has a tag and a number.
std::string taggedNumber(const std::vector<std::string>& tokens, std::string_view tag) {
    for (const std::string& candidate : tokens) {
        if (!candidate.starts_with(tag)) continue;
        try {
            runtime::parseSingle(withoutTag(candidate));
            return withoutTag(candidate);
        } catch (const runtime::RunTimeError&) { // a satellite name that begins like the tag: go on
        }
    }
    throw runtime::TypeMismatch();
}

} // namespace

void showReceived(form::Form1& form, const std::string& azimuth, const std::string& elevation) {
    const std::string az = withOffset(azimuth, form.HScOffsetA);
    const std::string el = withOffset(elevation, form.HScOffsetB);
    form.lblAzRx.Caption = az;
    form.lblElRx.Caption = el;
}

bool subSatData(form::Form1& form, const std::string& text) {
    try {
        if (form.intSatSource == kOrbitron) readOrbitron(form, text);
        if (form.intSatSource == kSatPc32) readSatPc32(form, text);
        return form.intSatSource == kOrbitron || form.intSatSource == kSatPc32;
    } catch (const runtime::RunTimeError&) {
        // An invalid line is ignored without a message: the next line comes within a second.
        return false;
    }
}

bool readSatPc32Item(form::Form1& form, const std::string& text) {
    try {
        // Azimuth and elevation follow the name of the satellite.
        constexpr std::size_t kTokens = 32;
        const std::vector<std::string> tokens = tokensOf(text, kTokens);
        const std::string azimuth = taggedNumber(tokens, "AZ");
        const std::string elevation = taggedNumber(tokens, "EL");
        showReceived(form, azimuth, elevation);
        form.lblRealAz.Caption = azimuth;
        form.lblRealEl.Caption = elevation;
        return true;
    } catch (const runtime::RunTimeError&) {
        return false; // ignored, as above
    }
}

} // namespace rotor
