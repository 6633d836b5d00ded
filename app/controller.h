#pragma once

#include "form/boxes.h"
#include "form/form1.h"
#include "platform/hardware.h"
#include "platform/position_file.h"
#include "platform/printer_port.h"
#include "platform/settings.h"
#include "platform/shell.h"
#include "platform/sound.h"
#include "platform/station_messages.h"
#include "platform/storage.h"
#include "platform/tcp_clients.h"
#include "platform/tcp_server.h"
#include "platform/udp_sockets.h"
#include "platform/usb_board.h"

#include <filesystem>
#include <functional>
#include <memory>

namespace app {

/// The interfaces to the outside of the program, one adapter for each. They outlive the controller.
struct Ports {
    template <class Port>
    using Ref = std::reference_wrapper<Port>; // so that a port can be replaced

    Ref<platform::PrinterPort> printer;
    Ref<platform::UsbBoard> usb;
    Ref<platform::Timers> timers;
    Ref<platform::DdeLinks> links;
    Ref<platform::StationMessages> station;
    Ref<platform::UdpSockets> udp;
    Ref<platform::TcpClients> tcp;
    Ref<platform::TcpServers> tcpServers;
    Ref<platform::Dialogs> dialogs;
    Ref<platform::Shell> shell;
    Ref<platform::Sound> sound;
    Ref<platform::Hardware> hardware;
    Ref<platform::Storage> storage;
    Ref<platform::PositionFile> positions;
    Ref<platform::Settings> settings;
};

/// The whole program behind its window: the form and all subsystems, wired together.
class Controller {
  public:
    /// `directory` holds "save.cfg".
    Controller(const Ports& ports, const std::filesystem::path& directory);
    ~Controller();
    Controller(const Controller&) = delete;
    Controller& operator=(const Controller&) = delete;

    form::Form1& form();
    form::Boxes& boxes();

    /// Loads "save.cfg" and starts polling. Call it once, when the window exists.
    void start();
    /// The user closes the main window: switches everything off, saves, and calls the form's onUnload. A
    /// second call does nothing.
    void close();

  private:
    struct Subsystems;
    std::unique_ptr<Subsystems> all_;
};

} // namespace app
