#include "platform/simulated/outputs.h"
#include "platform/trace/traced_outputs.h"
#include "runtime/errors.h"

#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <sstream>
#include <vector>

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::ThrowsMessage;

namespace {

struct Trace : ::testing::Test {
    Trace() {
        const auto* test = ::testing::UnitTest::GetInstance()->current_test_info();
        path = std::filesystem::path(::testing::TempDir()) / (std::string("trace_") + test->name());
        std::filesystem::remove_all(path);
    }
    ~Trace() override { std::filesystem::remove_all(path); }

    std::vector<std::string> lines() const {
        std::ifstream file(path);
        std::vector<std::string> all;
        for (std::string line; std::getline(file, line);)
            all.push_back(line);
        return all;
    }

    std::filesystem::path path;
    trace::TraceFile::Failure neverFails = [](const std::string& why) { ADD_FAILURE() << why; };
};

} // namespace

TEST_F(Trace, HasOneTimedLineForEachAccessThatTheDeviceTook) {
    simulated::PrinterPort port;
    simulated::UsbBoard board(2);
    const auto start = trace::TraceFile::Clock::now();
    {
        trace::TraceFile file(path, start, neverFails);
        trace::TracedPrinterPort tracedPort(port, file);
        trace::TracedUsbBoard tracedBoard(board, file);
        tracedPort.setBit(7);
        tracedPort.clearBit(0);
        port.breakDown("unplugged");
        EXPECT_THROW(tracedPort.setBit(3), runtime::ObjectError);
        EXPECT_EQ(tracedBoard.openDevice(0), 2);
        tracedBoard.writeAllDigital(200);
        EXPECT_EQ(board.outputs(), 200);
        board.answerWith(-1);
        EXPECT_EQ(tracedBoard.openDevice(0), -1);
        tracedBoard.closeDevice();
    }
    const auto microseconds =
        std::chrono::duration_cast<std::chrono::microseconds>(trace::TraceFile::Clock::now() - start).count();
    EXPECT_EQ(port.data(), 0x80);
    EXPECT_EQ(board.outputs(), 0);

    long long before = 0;
    std::vector<std::string> texts;
    for (const std::string& line : lines()) {
        std::istringstream fields(line);
        long long time = -1;
        fields >> time;
        EXPECT_GE(time, before);
        EXPECT_LE(time, microseconds);
        before = time;
        texts.push_back(line.substr(line.find(' ')));
    }
    EXPECT_THAT(texts, ElementsAre(" port 8 1", " port 1 0", " usb open 2", " usb 200", " usb open -1",
                                   " usb close"));
}

TEST_F(Trace, LeavesWhatTheBoardAnswersAsItIs) {
    trace::TraceFile file(path, trace::TraceFile::Clock::now(), neverFails);
    simulated::UsbBoard board(2);
    trace::TracedUsbBoard traced(board, file);
    const simulated::Clock clock;
    board.makeSlow(clock, 10);
    traced.writeAllDigital(8);
    EXPECT_FALSE(traced.taken(15));
    EXPECT_EQ(traced.refusal(), "");
    board.refuseWith("no permission");
    EXPECT_EQ(traced.openDevice(0), -1);
    EXPECT_EQ(traced.refusal(), "no permission");
}

TEST_F(Trace, IsWrittenOutWhileTheProgramRuns) {
    trace::TraceFile file(path, trace::TraceFile::Clock::now(), neverFails);
    file.add("port 1 0");
    const auto patience = trace::TraceFile::Clock::now() + std::chrono::seconds(5);
    while (lines().empty() && trace::TraceFile::Clock::now() < patience)
        std::this_thread::yield();
    EXPECT_EQ(lines().size(), 1u);
}

TEST_F(Trace, AFileThatCannotBeOpenedIsRefusedByName) {
    std::filesystem::create_directory(path);
    try {
        const trace::TraceFile file(path, trace::TraceFile::Clock::now(), neverFails);
        FAIL() << "a folder was opened";
    } catch (const runtime::FileError& error) {
        EXPECT_THAT(error.what(), HasSubstr(path.string()));
    }
}

TEST_F(Trace, OntoWhatIsNoTraceIsRefused) {
    std::ofstream(path).close();
    std::filesystem::resize_file(path, 1'000'000'000);
    EXPECT_THAT([&] { trace::TraceFile(path, trace::TraceFile::Clock::now(), neverFails); },
                ThrowsMessage<runtime::FileError>(HasSubstr("is longer than 900 MB")));
    EXPECT_EQ(std::filesystem::file_size(path), 1'000'000'000U);
}
