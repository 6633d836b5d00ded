#include "platform/qt/tcp_clients.h"

#include "platform/silent_end.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTcpSocket>
#include <QTimer>
#include <utility>

namespace qt_ports {

namespace {

/// The most bytes read in each span of time: about eighty short lines, which take a fraction of one step in
/// four. More bytes wait, so that a flood does not delay the step timers.
constexpr qint64 kMostAtOnce = 1 << 10;
constexpr std::chrono::milliseconds kSpan{4};

/// The socket and its events. It lives until the last callback has returned, even if the client is destroyed
/// meanwhile.
struct Connection {
    platform::TcpClients::Events events;
    QTcpSocket* socket = nullptr;
    QElapsedTimer span;
    qint64 taken = 0;       // bytes, in this span
    bool abandoned = false; // the client is gone: no more events
    bool ended = false;
    bool failed = false;
};

using Shared = std::shared_ptr<Connection>;

/// The events are called from the event loop, not inside the socket's signals: these signals do not repeat
/// while a callback has a box open.
template <class Event>
void tell(const Shared& connection, Event event) {
    const auto call = [connection, event = std::move(event)] {
        if (!connection->abandoned) event(*connection);
    };
    QMetaObject::invokeMethod(connection->socket, call, Qt::QueuedConnection);
}

void handOver(Connection& connection, qint64 most) {
    const std::string bytes = connection.socket->read(most).toStdString();
    if (!bytes.empty()) connection.events.received(bytes);
}

void hand(const Shared& connection) {
    if (connection->abandoned || connection->ended) return;
    if (!connection->span.isValid() || connection->span.hasExpired(kSpan.count())) {
        connection->span.start();
        connection->taken = 0;
    }
    const qint64 most = kMostAtOnce - connection->taken;
    if (most <= 0) return;
    const qint64 taking = std::min(connection->socket->bytesAvailable(), most);
    connection->taken += taking;
    if (taking == most) {
        QTimer::singleShot(kSpan, Qt::PreciseTimer, connection->socket, [connection] {
            connection->span.invalidate();
            hand(connection);
        });
    }
    handOver(*connection, most);
}

void end(const Shared& connection, bool failed) {
    if (std::exchange(connection->ended, true)) return;
    connection->failed = failed && connection->socket->error() != QAbstractSocket::RemoteHostClosedError;
    tell(connection, [](Connection& over) {
        while (!over.abandoned && over.socket->bytesAvailable() > 0)
            handOver(over, kMostAtOnce);
        if (!over.abandoned) over.events.ended();
    });
}

class Client : public platform::TcpClient {
  public:
    Client(const std::string& host, int port, platform::TcpClients::Events events)
        : connection_(std::make_shared<Connection>()),
          socket_(*new QTcpSocket(QCoreApplication::instance())) {
        connection_->events = std::move(events);
        connection_->socket = &socket_;
        // Limits the read buffer: unread bytes wait at the peer and do not fill this program's memory.
        socket_.setReadBufferSize(kMostAtOnce);
        const Shared connection = connection_;
        QObject::connect(&socket_, &QTcpSocket::connected, [connection] {
            platform::noticeSilentEnd(connection->socket->socketDescriptor());
            // Send each line at once.
            connection->socket->setSocketOption(QAbstractSocket::LowDelayOption, 1);
            tell(connection, [](Connection& made) { made.events.connected(); });
        });
        QObject::connect(&socket_, &QTcpSocket::readyRead,
                         [connection] { tell(connection, [connection](Connection&) { hand(connection); }); });
        QObject::connect(&socket_, &QTcpSocket::errorOccurred, [connection] { end(connection, true); });
        QObject::connect(&socket_, &QTcpSocket::disconnected, [connection] { end(connection, false); });
        socket_.connectToHost(QString::fromStdString(host), static_cast<quint16>(port));
    }
    Client(const Client&) = delete;
    Client& operator=(const Client&) = delete;
    // The socket goes later, because this may run inside a callback.
    ~Client() override {
        connection_->abandoned = true;
        socket_.disconnect();
        socket_.flush();
        socket_.abort();
        socket_.deleteLater();
    }

    platform::TcpState state() const override {
        using platform::TcpState;
        switch (socket_.state()) {
        case QAbstractSocket::UnconnectedState:
            return connection_->failed ? TcpState::Error : TcpState::Closed;
        case QAbstractSocket::HostLookupState:
            return TcpState::ResolvingName;
        case QAbstractSocket::ConnectingState:
            return TcpState::Connecting;
        case QAbstractSocket::ConnectedState:
            return TcpState::Connected;
        case QAbstractSocket::BoundState:
            return TcpState::Open;
        case QAbstractSocket::ListeningState:
            return TcpState::Listening;
        case QAbstractSocket::ClosingState:
            return TcpState::PeerClosing;
        }
        return TcpState::Error;
    }

    bool send(std::string_view bytes) override {
        if (socket_.state() != QAbstractSocket::ConnectedState) return false;
        if (static_cast<std::size_t>(socket_.bytesToWrite()) + bytes.size() > kMostUnsent) return false;
        return socket_.write(bytes.data(), static_cast<qint64>(bytes.size())) >= 0;
    }

  private:
    Shared connection_;
    QTcpSocket& socket_;
};

} // namespace

std::unique_ptr<platform::TcpClient> TcpClients::connect(const std::string& host, int port, Events events) {
    return std::make_unique<Client>(host, port, std::move(events));
}

} // namespace qt_ports
