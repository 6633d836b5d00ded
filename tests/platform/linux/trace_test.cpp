#include "platform/simulated/outputs.h"
#include "platform/trace/traced_outputs.h"
#include "runtime/errors.h"
#include "tests/desk.h"

#include <csignal>
#include <future>
#include <gmock/gmock.h>
#include <sys/resource.h>
#include <sys/stat.h>

using ::testing::HasSubstr;
using ::testing::ThrowsMessage;

namespace {

struct LinuxTrace : ::testing::Test {
    TemporaryFolder folder;
    std::filesystem::path path = folder.path() / "trace";
    trace::TraceFile::Failure neverFails = [](const std::string& why) { ADD_FAILURE() << why; };
};

} // namespace

TEST_F(LinuxTrace, OntoADeviceOrAPipeIsRefusedWithoutWaiting) {
    const std::filesystem::path pipe = path;
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    for (const std::filesystem::path& other : {pipe, std::filesystem::path("/dev/null")}) {
        EXPECT_THAT([&] { trace::TraceFile(other, trace::TraceFile::Clock::now(), neverFails); },
                    ThrowsMessage<runtime::FileError>(HasSubstr("is no plain file")));
    }
}

TEST_F(LinuxTrace, KnowsAFileOfTheFolderByAnyName) {
    const std::filesystem::path shack = path / "shack";
    std::filesystem::create_directories(shack);
    std::ofstream(shack / "save.cfg") << "x";
    std::filesystem::create_symlink("shack/save.cfg", path / "link");
    std::filesystem::create_symlink("shack/positions.dat", path / "dangling");
    std::filesystem::create_symlink("shack", path / "other");
    std::filesystem::create_hard_link(shack / "save.cfg", path / "hard");
    const std::array<std::string_view, 2> names = {"save.cfg", "positions.dat"};
    const auto own = [&](const std::filesystem::path& trace) {
        return trace::ownFile(trace, shack, names).value_or("");
    };
    for (const std::filesystem::path& name :
         {shack / "save.cfg", path / "shack/../shack/./save.cfg", path / "link", path / "hard",
          path / "other/save.cfg", std::filesystem::relative(shack / "save.cfg")}) {
        EXPECT_EQ(own(name), "save.cfg") << name;
    }
    EXPECT_EQ(own(shack / "save.cfg.bak"), "save.cfg.bak"); // not there yet
    EXPECT_EQ(own(path / "dangling"), "positions.dat");
    EXPECT_EQ(own(path / "loop.cfg"), "loop.cfg");
    EXPECT_EQ(own(path / "loop.HiResMem.txt"), "loop.HiResMem.txt");
    for (const std::filesystem::path& name : {shack / "trace", path / "save.dat", path / "trace"})
        EXPECT_EQ(own(name), "") << name;
}

TEST_F(LinuxTrace, OnAFullDiskIsReportedOnceAndLeavesTheDeviceAlone) {
    // A limit for files stands for the disk's end.
    rlimit before{};
    ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &before), 0);
    const auto signalBefore = ::signal(SIGXFSZ, SIG_IGN);
    simulated::PrinterPort port;
    std::vector<std::string> reports;
    std::promise<void> reported;
    {
        trace::TraceFile file(path, trace::TraceFile::Clock::now(), [&](const std::string& why) {
            reports.push_back(why);
            if (reports.size() == 1) reported.set_value();
        });
        const rlimit none{.rlim_cur = 0, .rlim_max = before.rlim_max};
        ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &none), 0);
        trace::TracedPrinterPort traced(port, file);
        traced.setBit(0);
        EXPECT_EQ(reported.get_future().wait_for(std::chrono::seconds(5)), std::future_status::ready);
        traced.setBit(1);
    }
    ::setrlimit(RLIMIT_FSIZE, &before);
    ::signal(SIGXFSZ, signalBefore);
    EXPECT_EQ(port.data(), 3);
    ASSERT_EQ(reports.size(), 1u);
    EXPECT_THAT(reports.front(), HasSubstr("File too large"));
}
