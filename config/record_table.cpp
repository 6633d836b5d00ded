#include "config/record_table.h"

#include "config/record.h"

namespace config {

namespace {

enum class Kind { Text, Tagged, Integer, Byte, Other }; // Other: not checked

struct Row {
    int first;
    const char* name;
    Kind kind = Kind::Other;
    int min = 0, max = 0; // the range of an Integer or a Byte
    int last = first;     // the last of a row of equal records
};

constexpr int kMemories = 10;
constexpr int kTrue = -1;

// The records' names, in the words of the window, its dialogs and their tips.
constexpr Row kRows[] = {
    {record::kMemoryPosA + 1, "position of engine 1", Kind::Text, 0, 0, record::kMemoryPosA + kMemories},
    {record::kMemoryLabel + 1, "label", Kind::Text, 0, 0, record::kMemoryLabel + kMemories},
    {record::kMemoryPosB + 1, "position of engine 2", Kind::Text, 0, 0, record::kMemoryPosB + kMemories},
    {record::kStepsA, "steps per turn of engine 1"},
    {record::kUnitsA, "units per turn of engine 1"},
    {record::kFastA, "fast speed of engine 1"},
    {record::kSlowA, "slow speed of engine 1"},
    {record::kFastB, "fast speed of engine 2"},
    {record::kSlowB, "slow speed of engine 2"},
    {record::kStepsB, "steps per turn of engine 2"},
    {record::kUnitsB, "units per turn of engine 2"},
    {record::kFunction, "function", Kind::Integer, 0, 3},
    {record::kThreshold2, "High speed on, azimuth"},
    {record::kThreshold4, "High speed on, elevation"},
    {record::kThreshold6, "Restart, azimuth"},
    {record::kThreshold5, "Restart, elevation"},
    {record::kThreshold3, "Anti-ripple, elevation"},
    {record::kThreshold1, "Acceleration curve"},
    {record::kAutoOffEnabled, "Enable Auto Out Off", Kind::Integer, kTrue, 0},
    {record::kAutoOffSeconds, "delay of Auto Out Off", Kind::Integer, 0, 32},
    {record::kMultiplierA, "step mode of engine 1", Kind::Byte, 0, 2},
    {record::kMultiplierB, "step mode of engine 2", Kind::Byte, 0, 2},
    {record::kTrackingPort, "port of the tracking server"},
    {record::kPositionA, "position of engine 1"},
    {record::kPositionB, "position of engine 2"},
    {record::kAzimuth, "azimuth"},
    {record::kElevation, "elevation"},
    {record::kSavePositions, "Save Stepper Positions on Program Exit", Kind::Integer, kTrue, 0},
    {record::kLoadPositions, "Load Stepper Positions on Program Start", Kind::Integer, kTrue, 0},
    {record::kDisplayColour, "display colour", Kind::Text},
    {record::kBackgroundColour, "display background", Kind::Text},
    {record::kInUseA, "memory in use, engine 1", Kind::Text},
    {record::kInUseB, "memory in use, engine 2", Kind::Text},
    {record::kSlowDistance, "Slow within"},
    {record::kKeyCcw1, "key of stepper 1, counter-clockwise", Kind::Text},
    {record::kKeyCw1, "key of stepper 1, clockwise", Kind::Text},
    {record::kKeyCcw2, "key of stepper 2, counter-clockwise", Kind::Text},
    {record::kKeyCw2, "key of stepper 2, clockwise", Kind::Text},
    {record::kBandMode, "Band Mode", Kind::Integer, kTrue, 0},
    {record::kConfigName, "configuration name", Kind::Tagged},
    {record::kAlarms, "Audio Alarm Enabling"},
    {record::kFrequencyProgram, "frequency program", Kind::Integer, 0, 4},
    {record::kN1mmPort, "port for N1MM Logger"},
    {record::kOffsetAzimuth, "AZ Offset"},
    {record::kOffsetElevation, "EL Offset"},
    {record::kTrackingProgram, "satellite program", Kind::Integer, 0, 2},
    {record::kTableCount, "high-resolution table", Kind::Integer, 0, record::kTableEntriesMax},
    {record::kTableFirst, "high-resolution table", Kind::Text, 0, 0, record::kLast},
};

/// Whether the record's value fits its kind and range.
bool allowed(RecordImage& image, const Row& row, int number) {
    const auto within = [&row](int value) { return value >= row.min && value <= row.max; };
    const std::size_t damaged = image.damaged().size();
    switch (row.kind) {
    case Kind::Text:
        image.text(number);
        break;
    case Kind::Tagged:
        image.taggedText(number);
        break;
    case Kind::Integer:
        return within(image.integer(number).value());
    case Kind::Byte:
        return within(image.byte(number).value());
    case Kind::Other:
        break;
    }
    return image.damaged().size() == damaged;
}

} // namespace

std::string recordName(int number) {
    for (const Row& row : kRows) {
        if (number < row.first || number > row.last) continue;
        if (row.last != row.first + kMemories - 1) return row.name;
        return "memory " + std::to_string(number - row.first + 1) + ", " + row.name;
    }
    return "record " + std::to_string(number);
}

std::optional<std::string> configurationFault(const std::string& bytes) {
    constexpr int kFaultsMax = 2;
    if (bytes.empty()) return "it is empty";
    if (bytes.size() > record::kLast * kRecordLength) return "it is too long";
    RecordImage image(bytes);
    int faults = 0;
    for (const Row& row : kRows) {
        for (int number = row.first; number <= row.last; ++number)
            faults += allowed(image, row, number) ? 0 : 1;
    }
    if (faults <= kFaultsMax) return std::nullopt;
    return std::to_string(faults) + " of its settings are out of range";
}

} // namespace config
