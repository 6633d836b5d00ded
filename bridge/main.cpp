#include "bridge/options.h"
#include "bridge/server.h"
#include "platform/windows/console.h"
#include "platform/windows/dde_links.h"
#include "platform/windows/log_writer.h"
#include "platform/windows/program.h"
#include "platform/windows/station_messages.h"
#include "platform/windows/tcp_servers.h"
#include "platform/windows/timers.h"
#include "platform/windows/tray_icon.h"
#include "runtime/errors.h"

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <optional>
#include <windows.h>

namespace {

constexpr const char* kName = "Twinstep bridge";
constexpr int kIcon = 1; // in the program's resources

std::string timeOfDay() {
    SYSTEMTIME now;
    GetLocalTime(&now);
    const auto two = [](int number) { return (number < 10 ? "0" : "") + std::to_string(number); };
    return two(now.wHour) + ":" + two(now.wMinute) + ":" + two(now.wSecond);
}

void tell(const std::string& text, bool console) {
    if (console || windows_ports::hasOutput()) {
        windows_ports::writeOutput(text);
    } else {
        windows_ports::showMessage(kName, text, false);
    }
}

int fail(const std::string& text, bool console) {
    if (console) {
        windows_ports::writeError("twinstep-bridge: " + text + "\n");
    } else {
        windows_ports::showMessage(kName, text, true);
    }
    return EXIT_FAILURE;
}

void carry(const bridge::Options& options) {
    windows_ports::Program program;
    windows_ports::Timers timers;
    windows_ports::DdeLinks links(timers);
    windows_ports::StationMessages station;
    windows_ports::TcpServers tcp;

    std::optional<windows_ports::LogWriter> writer;
    if (options.console) writer.emplace();
    const auto log = [&writer](const std::string& line) {
        if (writer) writer->write(timeOfDay() + " " + line);
    };
    std::unique_ptr<windows_ports::TrayIcon> icon;
    const auto changed = [&](const bridge::State& state) {
        log(bridge::toText(state));
        if (icon) icon->show(bridge::toText(state));
    };
    auto server = std::make_unique<bridge::Server>(
        bridge::Server::Ports{links, station, timers, tcp},
        bridge::Server::Settings{options.listen, options.port, options.allowed, TWINSTEP_VERSION},
        bridge::Server::Events{log, changed});
    // After the server, which may find its port taken.
    icon = std::make_unique<windows_ports::TrayIcon>(kIcon, kName, bridge::toText({}),
                                                     [&program] { program.quit(); });
    program.atSessionEnd([&] {
        server.reset();
        links.waitForServers();
    });
    program.run();
    program.atSessionEnd(nullptr);
    log("ends");
}

} // namespace

int WINAPI WinMain(HINSTANCE /*instance*/, HINSTANCE /*previous*/, char* /*commandLine*/, int /*show*/) {
    const auto words = windows_ports::arguments();
    // Before the words are read: what is wrong with them goes there too.
    const bool console = std::ranges::find(words, "--console") != words.end();
    if (console) windows_ports::openConsole();
    try {
        const bridge::Options options = bridge::parseOptions(words);
        if (options.help) {
            tell(bridge::helpText(), console);
        } else if (options.version) {
            tell("twinstep-bridge " TWINSTEP_VERSION "\n", console);
        } else {
            carry(options);
        }
        return EXIT_SUCCESS;
    } catch (const bridge::OptionError& error) {
        return fail(error.what(), console);
    } catch (const runtime::ObjectError& error) {
        return fail(std::string(error.what()) + ".", console);
    }
}
