#include "platform/linux/storage.h"
#include "platform/linux/timers.h"
#include "platform/qt/dialogs.h"
#include "platform/qt/fd_watcher.h"
#include "platform/qt/tcp_clients.h"
#include "platform/trace/trace_file.h"
#include "platform/trace/traced_outputs.h"
#include "rotor/tracking_data.h"
#include "tests/ui/window_fixture.h"

#include <QEventLoop>
#include <QMenu>
#include <QMenuBar>
#include <QTimer>
#include <atomic>
#include <condition_variable>
#include <dlfcn.h>
#include <fcntl.h>
#include <mutex>
#include <netdb.h>
#include <thread>
#include <unistd.h>

// The engines go on stepping whatever else the window does. The real window steps simulated coils by kernel
// timers, and the trace tells when.

namespace {

using namespace std::chrono_literals;
using Clock = trace::TraceFile::Clock;

constexpr auto kInterval = 5ms;
constexpr int kStepsPerSecond = 200;
constexpr int kSteps = 40; // of each engine, in each situation
constexpr auto kBetweenLooks = 10ms;
constexpr auto kShortest = kInterval * 85 / 100;
/// What opening, laying out and drawing may cost at a stretch: the schedule makes up as much.
constexpr auto kLongest = kInterval * 10;

/// A name server that keeps silent: names that end in ".silent" are not answered before it is gone.
class SilentResolver {
  public:
    SilentResolver() {
        const std::lock_guard lock(mutex());
        silent() = true;
        asked() = false;
    }
    SilentResolver(const SilentResolver&) = delete;
    SilentResolver& operator=(const SilentResolver&) = delete;
    ~SilentResolver() {
        const std::lock_guard lock(mutex());
        silent() = false;
        changed().notify_all();
    }
    static bool wasAsked() {
        const std::lock_guard lock(mutex());
        return asked();
    }
    static int answer() {
        std::unique_lock lock(mutex());
        asked() = true;
        changed().wait(lock, [] { return !silent(); });
        return EAI_AGAIN;
    }

  private:
    static std::mutex& mutex() {
        static std::mutex instance;
        return instance;
    }
    static std::condition_variable& changed() {
        static std::condition_variable instance;
        return instance;
    }
    static bool& silent() {
        static bool instance = false;
        return instance;
    }
    static bool& asked() {
        static bool instance = false;
        return instance;
    }
};

/// Tells the machine's own stalls from those of the program: the longest by which a bare loop was late.
class Witness {
  public:
    Clock::duration longestStall() { return Clock::duration(longest_.exchange(0)); }

  private:
    std::atomic<Clock::rep> longest_{0};
    std::jthread thread_{[this](const std::stop_token& stop) {
        while (!stop.stop_requested()) {
            const auto due = Clock::now() + 1ms;
            std::this_thread::sleep_until(due);
            longest_ = std::max(longest_.load(), (Clock::now() - due).count());
        }
    }};
};

class Stepping : public WindowFixture {
  protected:
    void SetUp() override {
        namespace record = config::record;
        config::RecordFile(disk, file.path())
            .write({config::integerRecord(record::kStepsA, 200), config::integerRecord(record::kStepsB, 200),
                    config::singleRecord(record::kUnitsA, 1), config::singleRecord(record::kUnitsB, 1),
                    config::integerRecord(record::kFastA, kStepsPerSecond),
                    config::integerRecord(record::kFastB, kStepsPerSecond),
                    config::integerRecord(record::kSlowA, kStepsPerSecond),
                    config::integerRecord(record::kSlowB, kStepsPerSecond),
                    config::integerRecord(record::kTrackingProgram, rotor::kSatPc32),
                    config::integerRecord(record::kFunction, function)});
        hardware.use({.port = "simulated", .trackingServer = "tracking.silent"});
        app::Ports outside = ports();
        outside.printer = tracedPort;
        outside.timers = timers;
        outside.tcp = realTcp;
        outside.dialogs = realDialogs;
        outside.storage = disk;
        controller = std::make_unique<app::Controller>(outside, folder.path());
        controller->start();
        openWindow();
        begun = std::chrono::duration_cast<std::chrono::microseconds>(Clock::now() - started);
        f().cmdAv.Click.fire();
        f().cmdAvB.Click.fire();
    }

    void TearDown() override {
        f().cmdAlt.Click.fire();
        f().cmdAltB.Click.fire();
        traceFile.close();
        const auto a = stepsOf(1), b = stepsOf(5);
        EXPECT_EQ(std::ssize(a) + std::ssize(b), f().lngContaStep.value());
        for (const auto* steps : {&a, &b}) {
            for (std::size_t n = 1; n < steps->size(); ++n) {
                EXPECT_GE((*steps)[n] - (*steps)[n - 1], kShortest) << "step " << n;
            }
            for (const Span& span : spans)
                checkGaps(*steps, span);
        }
        closeWindow();
        controller.reset();
    }

    /// Call it while something goes on: both engines must make so many steps meanwhile.
    void stepsGoOn(
        const char* what, const std::function<void()>& meanwhile = [] {}) {
        witness.longestStall();
        Span span{.what = what, .begin = Clock::now() - started, .end = {}, .stall = {}};
        const int steps = f().lngContaStep.value();
        // A loop of its own: qWaitFor() sleeps between its looks, and no step comes meanwhile.
        QEventLoop loop;
        QTimer look;
        QObject::connect(&look, &QTimer::timeout, [&] {
            meanwhile();
            if (f().lngContaStep.value() >= steps + 2 * kSteps) loop.quit();
        });
        look.start(kBetweenLooks);
        QTimer::singleShot(20s, &loop, &QEventLoop::quit);
        loop.exec();
        EXPECT_GE(f().lngContaStep.value(), steps + 2 * kSteps) << what;
        span.end = Clock::now() - started;
        span.stall = witness.longestStall();
        spans.push_back(span);
    }

  private:
    struct Span {
        const char* what;
        Clock::duration begin, end, stall;
    };

    /// Each step writes the four outputs of its engine.
    std::vector<std::chrono::microseconds> stepsOf(int firstOutput) const {
        std::ifstream lines(folder.path() / "trace");
        std::vector<std::chrono::microseconds> steps;
        std::int64_t time = 0;
        std::string kind;
        int output = 0, state = 0;
        for (int writes = 0; lines >> time >> kind >> output >> state;) {
            const bool isStep = time >= begun.count();
            if (!isStep || output < firstOutput || output >= firstOutput + 4) continue;
            if (writes++ % 4 == 0) steps.emplace_back(time);
        }
        return steps;
    }

    static void checkGaps(const std::vector<std::chrono::microseconds>& steps, const Span& span) {
        int inside = 0;
        for (std::size_t n = 1; n < steps.size(); ++n) {
            if (steps[n - 1] < span.begin || steps[n] > span.end) continue;
            ++inside;
            EXPECT_LE(steps[n] - steps[n - 1], kLongest + 3 * span.stall) << span.what;
        }
        EXPECT_GE(inside, kSteps / 2) << span.what;
    }

  protected:
    int function = form::kCoilTuner;
    const Clock::time_point started = Clock::now();
    trace::TraceFile traceFile{folder.path() / "trace", started,
                               [](const std::string& why) { FAIL() << why; }};
    trace::TracedPrinterPort tracedPort{port, traceFile};
    qt_ports::FdWatcher watcher;
    linux_ports::Timers timers{watcher};
    qt_ports::TcpClients realTcp;
    qt_ports::Dialogs realDialogs;
    linux_ports::Storage disk;
    Witness witness;

  private:
    std::vector<Span> spans;
    std::chrono::microseconds begun{}; // the engines have
};

struct SteppingAntenna : Stepping {
    SteppingAntenna() { function = form::kSatelliteRotor; }
    SilentResolver resolver;
};

} // namespace

// The toolkit's calls arrive here too.
extern "C" int getaddrinfo(const char* node, const char* service, const addrinfo* hints, addrinfo** result) {
    if (node && std::string(node).ends_with(".silent")) return SilentResolver::answer();
    static const auto real = reinterpret_cast<decltype(&getaddrinfo)>(::dlsym(RTLD_NEXT, "getaddrinfo"));
    return real(node, service, hints, result);
}

TEST_F(Stepping, GoesOnWhileFilesAreWrittenAndFlushed) {
    // The disk is kept as busy as one thread can: whoever writes to these files may have to wait for it.
    const std::jthread flusher([this](const std::stop_token& stop) {
        std::vector<int> files;
        for (const char* name : {"save.cfg", "trace"})
            files.push_back(::open((folder.path() / name).c_str(), O_WRONLY | O_CLOEXEC));
        while (!stop.stop_requested()) {
            for (const int fd : files)
                ::fsync(fd);
        }
        for (const int fd : files)
            ::close(fd);
    });
    int seconds = 0;
    stepsGoOn("saving", [&] { f().hScrCmdOff.userScroll(1 + ++seconds % 10); });
    EXPECT_GT(seconds, 1);
}

TEST_F(Stepping, GoesOnWhileBoxesAndDialogsAreOpen) {
    const auto whileOpen = [this](const char* what, const std::function<void()>& open) {
        withDialog(open, [&](QWidget& dialog) {
            stepsGoOn(what);
            QTest::keyClick(&dialog, Qt::Key_Escape);
        });
    };
    whileOpen("message box", [this] { controller->boxes().critical("Something is wrong", "Error!"); });
    whileOpen("file dialog", [this] { f().mnuLoadConfig.Click.fire(); });
    whileOpen("settings", [this] { f().mnuGenSet.Click.fire(); });
}

TEST_F(Stepping, GoesOnWhileAMenuIsDown) {
    QMenuBar& bar = *window().menuBar();
    QAction* first = bar.actions().constFirst();
    QTest::mouseClick(&bar, Qt::LeftButton, {}, bar.actionGeometry(first).center());
    ASSERT_TRUE(QTest::qWaitFor([&] { return first->menu()->isVisible(); }));
    stepsGoOn("menu");
    EXPECT_TRUE(first->menu()->isVisible());
    QTest::keyClick(first->menu(), Qt::Key_Escape);
}

TEST_F(Stepping, GoesOnWhileTheWindowIsDraggedAndResized) {
    const QSize size = window().size();
    const QPoint place = window().pos();
    int turn = 0;
    stepsGoOn("dragged", [&] { window().move(place + QPoint(++turn % 20, 0)); });
    stepsGoOn("resized", [&] { window().resize(size + QSize(++turn % 20, 0)); });
}

TEST_F(SteppingAntenna, GoesOnWhileANameIsBeingResolved) {
    ASSERT_TRUE(QTest::qWaitFor([&] { return text("lblOpenCom") == "Solving Name"; }));
    EXPECT_TRUE(SilentResolver::wasAsked());
    stepsGoOn("resolving");
    EXPECT_EQ(text("lblOpenCom"), "Solving Name");
}
