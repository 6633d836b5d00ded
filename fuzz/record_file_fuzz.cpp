// A "save.cfg" of any content: the program starts on it, an engine takes a step, and it saves at exit.

#include "tests/simulated_outside.h"

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
    SimulatedOutside outside;
    app::Controller controller(outside.ports(), folder());
    controller.start();
    form::Form1& form = controller.form();
    form.cmdAvMan.MouseDown.fire();
    form.cmdIndB.Click.fire();
    for (int n = 1; n <= form::Form1::kMemories; ++n)
        form.Option[n].userClick();
    form.mnuTunConn.Click.fire();
    form.mnuGenSet.Click.fire();
    outside.clock.advance(1100);
    controller.close();
    return 0;
}
