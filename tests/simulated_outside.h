#pragma once

#include "app/controller.h"
#include "platform/simulated/clock.h"
#include "platform/simulated/desktop.h"
#include "platform/simulated/hardware.h"
#include "platform/simulated/links.h"
#include "platform/simulated/outputs.h"
#include "platform/simulated/position_file.h"
#include "platform/simulated/settings.h"
#include "platform/simulated/storage.h"
#include "platform/simulated/tcp_clients.h"
#include "platform/simulated/tcp_servers.h"

/// Everything outside the program, simulated: what tests, benchmarks and fuzz targets run the controller on.
struct SimulatedOutside {
    simulated::Clock clock;
    simulated::PrinterPort port;
    simulated::UsbBoard board{0};
    simulated::DdeLinks links;
    simulated::StationMessages station;
    simulated::UdpSockets udp;
    simulated::TcpClients tcp;
    simulated::TcpServers tcpServers;
    simulated::Dialogs dialogs;
    simulated::Shell shell;
    simulated::Sound sound;
    simulated::Hardware hardware;
    simulated::Storage storage;
    simulated::PositionFile positions;
    simulated::Settings settings;

    /// The one place that fills them: who wants another adapter for a port assigns it to its member.
    app::Ports ports() {
        return {.printer = port,
                .usb = board,
                .timers = clock,
                .links = links,
                .station = station,
                .udp = udp,
                .tcp = tcp,
                .tcpServers = tcpServers,
                .dialogs = dialogs,
                .shell = shell,
                .sound = sound,
                .hardware = hardware,
                .storage = storage,
                .positions = positions,
                .settings = settings};
    }
};
