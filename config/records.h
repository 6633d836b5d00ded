#pragma once

#include "form/frequency_table.h"

/// Numbers of the records of "save.cfg". docs/save-cfg.md describes each record.
namespace config::record {

// Of a memory n, 1 to 10: add n.
constexpr int kMemoryPosA = 0;
constexpr int kMemoryLabel = 20;
constexpr int kMemoryPosB = 70;

constexpr int kStepsA = 11;
constexpr int kUnitsA = 12;
constexpr int kFastA = 13;
constexpr int kSlowA = 14;
constexpr int kFastB = 15;
constexpr int kSlowB = 16;
constexpr int kStepsB = 17;
constexpr int kUnitsB = 18;

constexpr int kFunction = 31;
constexpr int kThreshold2 = 32;
constexpr int kThreshold4 = 33;
constexpr int kThreshold6 = 34;
constexpr int kThreshold5 = 35;
constexpr int kSpareFirst = 36; // 36 to 38 are read and never written
constexpr int kThreshold3 = 39;
constexpr int kThreshold1 = 40;

constexpr int kAutoOffEnabled = 41;
constexpr int kAutoOffSeconds = 42;
constexpr int kMultiplierA = 43;
constexpr int kMultiplierB = 44;
constexpr int kTrackingPort = 45;
constexpr int kPositionA = 46;
constexpr int kPositionB = 47;
constexpr int kAzimuth = 48;
constexpr int kElevation = 49;
constexpr int kSavePositions = 50;
constexpr int kLoadPositions = 51;
constexpr int kDisplayColour = 52;
constexpr int kBackgroundColour = 53;
constexpr int kInUseA = 54;
constexpr int kInUseB = 55;
constexpr int kSlowDistance = 56;
constexpr int kKeyCcw1 = 57;
constexpr int kKeyCw1 = 58;
constexpr int kKeyCcw2 = 59;
constexpr int kKeyCw2 = 60;
constexpr int kBandMode = 61;
constexpr int kConfigName = 62;
constexpr int kAlarms = 63;
constexpr int kFrequencyProgram = 64;
constexpr int kN1mmPort = 65;
constexpr int kOffsetAzimuth = 66;
constexpr int kOffsetElevation = 67;
constexpr int kTrackingProgram = 81;

constexpr int kTableCount = 99;
constexpr int kTableFirst = 100;
constexpr int kTableColumns = 4;
using form::kTableEntriesMax;
constexpr int kLast = kTableFirst + kTableColumns * kTableEntriesMax - 1;

} // namespace config::record
