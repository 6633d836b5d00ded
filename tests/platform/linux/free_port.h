#pragma once

#include <QTcpServer>

/// A TCP port of this computer that was free a moment ago.
inline int freePort() {
    QTcpServer server;
    server.listen(QHostAddress::LocalHost);
    return server.serverPort();
}
