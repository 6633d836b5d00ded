// A "save.cfg" of any content: the program starts on it, an engine takes a step, and it saves at exit.

#include "app/controller.h"
#include "platform/simulated/clock.h"
#include "platform/simulated/desktop.h"
#include "platform/simulated/links.h"
#include "platform/simulated/outputs.h"
#include "platform/simulated/tcp_clients.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace {

const std::filesystem::path& folder() {
    static const std::filesystem::path path = [] {
        std::string name = (std::filesystem::temp_directory_path() / "twinstep-fuzz-XXXXXX").string();
        static std::filesystem::path made = mkdtemp(name.data());
        std::atexit([] { std::filesystem::remove_all(made); });
        return made;
    }();
    return path;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::ofstream(folder() / "save.cfg", std::ios::binary)
        .write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
    simulated::Clock clock;
    simulated::PrinterPort port;
    simulated::UsbBoard board(0);
    simulated::DdeLinks links;
    simulated::StationMessages station;
    simulated::UdpSockets udp;
    simulated::TcpClients tcp;
    simulated::Dialogs dialogs;
    simulated::Shell shell;
    simulated::Sound sound;
    app::Controller controller(
        {port, board, clock, links, station, udp, tcp, dialogs, shell, sound, "simulated", "127.0.0.1"},
        folder());
    controller.start();
    form::Form1& form = controller.form();
    form.cmdAvMan.MouseDown.fire();
    form.cmdIndB.Click.fire();
    for (int n = 1; n <= form::Form1::kMemories; ++n)
        form.Option[n].userClick();
    form.mnuTunConn.Click.fire();
    form.mnuGenSet.Click.fire();
    clock.advance(1100);
    controller.close();
    return 0;
}
