// A "save.cfg", a journal, or a configuration of any content: the program starts on it, an engine takes a
// step, and it saves at exit.

#include "tests/simulated_outside.h"

#include <cstddef>
#include <cstdint>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    SimulatedOutside outside;
    // The first byte says in which file the others stand: the record file, its journal, or one to be loaded.
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    static constexpr const char* kFiles[] = {"save.cfg", "save.cfg.journal", "other.cfg"};
    if (!bytes.empty())
        outside.storage.put(kFiles[static_cast<unsigned char>(bytes[0]) % 3], bytes.substr(1));
    app::Controller controller(outside.ports(), "");
    controller.start();
    form::Form1& form = controller.form();
    form.cmdAvMan.MouseDown.fire();
    form.cmdIndB.Click.fire();
    for (int n = 1; n <= form::Form1::kMemories; ++n)
        form.Option[n].userClick();
    form.mnuTunConn.Click.fire();
    form.mnuGenSet.Click.fire();
    outside.clock.advance(1100);
    outside.dialogs.fileAnswers.emplace_back("other.cfg");
    form.mnuLoadConfig.Click.fire();
    controller.close();
    return 0;
}
