#include "config/record_file.h"
#include "config/records.h"
#include "engine/approach.h"
#include "memory/table_recall.h"
#include "platform/linux/storage.h"
#include "tests/simulated_outside.h"

#include <algorithm>
#include <array>
#include <benchmark/benchmark.h>
#include <cmath>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <unistd.h>

// Names before the colon pair a measurement with its reference: bench/run.sh divides "x: ours" by "x: bare".

namespace {

namespace record = config::record;

/// The whole core with simulated ports, in a folder of its own.
struct Machine : SimulatedOutside {
    Machine() {
        std::filesystem::remove_all(folder);
        std::filesystem::create_directories(folder);
    }
    Machine(const Machine&) = delete;
    Machine& operator=(const Machine&) = delete;
    ~Machine() { std::filesystem::remove_all(folder); }

    std::unique_ptr<app::Controller> build() {
        app::Ports outside = ports();
        outside.storage = disk;
        return std::make_unique<app::Controller>(outside, folder);
    }

    std::filesystem::path folder = std::filesystem::temp_directory_path() / "twinstep-core-bench";
    linux_ports::Storage disk;
    config::RecordFile file{disk, folder / "save.cfg"};
};

/// A file in which every record holds something.
void writeFullFile(config::RecordFile& file) {
    std::vector<config::Record> records;
    for (int n = 1; n <= form::Form1::kMemories; ++n) {
        records.push_back(config::textRecord(record::kMemoryPosA + n, "012.35"));
        records.push_back(config::textRecord(record::kMemoryLabel + n, "14.025"));
        records.push_back(config::textRecord(record::kMemoryPosB + n, "101.00"));
    }
    for (const int number :
         {record::kStepsA, record::kStepsB, record::kFastA, record::kFastB, record::kSlowA, record::kSlowB}) {
        records.push_back(config::integerRecord(number, 200));
    }
    for (const int number : {record::kUnitsA, record::kUnitsB, record::kPositionA, record::kPositionB}) {
        records.push_back(config::singleRecord(number, 10));
    }
    records.push_back(config::integerRecord(record::kFunction, form::kCoilTuner));
    records.push_back(config::integerRecord(record::kTableCount, record::kTableEntriesMax));
    for (int number = record::kTableFirst; number <= record::kLast; ++number) {
        records.push_back(config::textRecord(number, " 14.25"));
    }
    file.write(records);
    file.finish();
}

/// One tick of a step timer, engine A and engine B in turn, forward.
void stepTick(benchmark::State& state, bool halfStep, bool keepPositions = true) {
    Machine machine;
    writeFullFile(machine.file);
    if (!keepPositions) machine.positions.refuseWith("no file");
    const auto controller = machine.build();
    controller->start();
    form::Form1& form = controller->form();
    form.chkHalfStep.Value = halfStep ? 1 : 0;
    form.chkHalfStepB.Value = halfStep ? 1 : 0;
    form.intDirA = form.intDirB = form::kForward;
    form.Timer1.Tick.fire(); // the first half step of a session is silent
    form.Timer4.Tick.fire();
    form.Timer1.Enabled = form.Timer4.Enabled = true; // as while an engine runs
    machine.port.takeAccesses();
    while (state.KeepRunningBatch(2)) {
        form.Timer1.Tick.fire();
        form.Timer4.Tick.fire();
        if (form.sngPosA > 900) form.sngPosA = form.sngPosB = 0; // far from the end of run
    }
    if (machine.port.takeAccesses().empty()) state.SkipWithError("the engines stood still");
}

/// The same four accesses a tick and nothing else.
void bareTick(benchmark::State& state, bool halfStep) {
    simulated::PrinterPort port;
    platform::PrinterPort* behind = &port;
    benchmark::DoNotOptimize(behind);
    constexpr std::array<unsigned, 8> kHalfSteps = {0b1110, 0b1100, 0b1101, 0b1001,
                                                    0b1011, 0b0011, 0b0111, 0b0110};
    const unsigned stride = halfStep ? 1 : 2;
    unsigned phase = 1;
    while (state.KeepRunningBatch(2)) {
        for (int bit = 0; bit < 8; ++bit) {
            if ((kHalfSteps[phase % 8] >> (bit % 4) & 1U) != 0) {
                behind->setBit(bit);
            } else {
                behind->clearBit(bit);
            }
        }
        phase += stride;
    }
}

BENCHMARK_CAPTURE(stepTick, full, false)->Name("one tick, full step: ours");
BENCHMARK_CAPTURE(bareTick, full, false)->Name("one tick, full step: bare");
BENCHMARK_CAPTURE(stepTick, half, true)->Name("one tick, half step: ours");
BENCHMARK_CAPTURE(bareTick, half, true)->Name("one tick, half step: bare");

// What a step costs with its position kept for a crash, beside one without.
BENCHMARK_CAPTURE(stepTick, kept, false)->Name("one tick, position kept: ours");
BENCHMARK_CAPTURE(stepTick, lost, false, false)->Name("one tick, position kept: bare");

form::FrequencyTable fullTable() {
    form::FrequencyTable table;
    for (int i = 0; i < form::kTableEntriesMax; ++i)
        table.push_back({7 + i / 1000.0, 50 + i / 10.0, 400.0 - i});
    return table;
}

/// A recall from a full table with the smooth curve: where to, and both engines are on their way.
void recallFromTable(benchmark::State& state) {
    SimulatedOutside outside;
    form::Form1 form(outside.clock, outside.links);
    form::Boxes boxes(outside.dialogs);
    engine::Motion motion(form, boxes);
    engine::Approach approach(form, motion);
    memory::TableRecall recall(form, boxes, approach);
    form.hiResMem = fullTable();
    form.tuner.curve = form::TableCurve::kMonotoneCubic;
    const engine::Sides sides(form);
    for (const engine::Side* side : {&sides.a, &sides.b}) {
        side->intSteps = 200;
        side->bytMolt = 1;
        side->sngMMGiro = 1;
        side->intTickBassa = side->intTickAlta = 5;
        side->sngPos = 1;
    }
    std::int64_t hertz = 0;
    for (auto _ : state) {
        hertz = (hertz + 77'701) % 199'000;
        form.frequencyNow = 7'000'000 + hertz;
        recall.subHiResMem();
    }
    if (!sides.a.running() || !sides.b.running()) state.SkipWithError("no recall");
}
BENCHMARK(recallFromTable)->Name("recall from 200 entries decided: ours");

/// Both positions by a search and a straight line.
void interpolate(benchmark::State& state) {
    const form::FrequencyTable table = fullTable();
    double megahertz = 0;
    for (auto _ : state) {
        megahertz = std::fmod(megahertz + 0.0777, 0.199);
        const auto upper = std::ranges::upper_bound(table, 7 + megahertz, {}, &form::TableEntry::megahertz);
        const auto lower = std::prev(upper);
        const double share = (7 + megahertz - lower->megahertz) / (upper->megahertz - lower->megahertz);
        benchmark::DoNotOptimize(std::lerp(lower->posA, upper->posA, share));
        benchmark::DoNotOptimize(std::lerp(lower->posB, upper->posB, share));
    }
}
BENCHMARK(interpolate)->Name("recall from 200 entries decided: bare");

void loadFullFile(benchmark::State& state) {
    Machine machine;
    writeFullFile(machine.file);
    const auto controller = machine.build();
    for (auto _ : state)
        controller->start();
    if (std::ssize(controller->form().hiResMem) != record::kTableEntriesMax ||
        !machine.dialogs.takeMessages().empty()) {
        state.SkipWithError("the file was not loaded whole");
    }
}
BENCHMARK(loadFullFile)->Name("full save.cfg loaded: ours")->Unit(benchmark::kMicrosecond);

void readBytes(benchmark::State& state) {
    Machine machine;
    writeFullFile(machine.file);
    std::vector<char> bytes(record::kLast * config::kRecordLength);
    for (auto _ : state) {
        std::ifstream file(machine.file.path(), std::ios::binary);
        file.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
        benchmark::DoNotOptimize(bytes.data());
    }
}
BENCHMARK(readBytes)->Name("full save.cfg loaded: bare")->Unit(benchmark::kMicrosecond);

void writeSetting(benchmark::State& state) {
    Machine machine;
    writeFullFile(machine.file);
    for (auto _ : state)
        machine.file.write({config::integerRecord(record::kSlowA, 150)});
}
BENCHMARK(writeSetting)->Name("one setting written: ours")->Unit(benchmark::kMicrosecond);

void writeBytes(benchmark::State& state) {
    Machine machine;
    writeFullFile(machine.file);
    const std::array<char, config::kRecordLength> bytes{};
    for (auto _ : state) {
        const int fd = ::open(machine.file.path().c_str(), O_WRONLY | O_CLOEXEC);
        if (::pwrite(fd, bytes.data(), bytes.size(), (record::kSlowA - 1) * 12) != 12) {
            state.SkipWithError("not written");
        }
        ::close(fd);
    }
}
BENCHMARK(writeBytes)->Name("one setting written: bare")->Unit(benchmark::kMicrosecond);

} // namespace
