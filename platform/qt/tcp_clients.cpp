#include "platform/qt/tcp_clients.h"

#include <QTcpSocket>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <utility>

namespace qt_ports {

namespace {

constexpr qint64 kMostAtOnce = 64 << 10; // bytes read between two looks at the event loop

class Client : public platform::TcpClient {
  public:
    Client(const std::string& host, int port, platform::TcpClients::Events events)
        : events_(std::move(events)) {
        socket_.setReadBufferSize(kMostAtOnce);
        QObject::connect(&socket_, &QTcpSocket::connected, [this] {
            noticeSilentEnd();
            events_.connected();
        });
        QObject::connect(&socket_, &QTcpSocket::readyRead,
                         [this] { events_.received(socket_.read(kMostAtOnce).toStdString()); });
        QObject::connect(&socket_, &QTcpSocket::errorOccurred, [this] { end(true); });
        QObject::connect(&socket_, &QTcpSocket::disconnected, [this] { end(false); });
        socket_.connectToHost(QString::fromStdString(host), static_cast<quint16>(port));
    }
    Client(const Client&) = delete;
    Client& operator=(const Client&) = delete;
    ~Client() override { socket_.disconnect(); }

    platform::TcpState state() const override {
        using platform::TcpState;
        switch (socket_.state()) {
        case QAbstractSocket::UnconnectedState:
            return failed_ ? TcpState::Error : TcpState::Closed;
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

  private:
    /// A server that vanishes without a word is noticed within half a minute.
    void noticeSilentEnd() {
        socket_.setSocketOption(QAbstractSocket::KeepAliveOption, 1);
        const auto set = [this](int option, int value) {
            ::setsockopt(static_cast<int>(socket_.socketDescriptor()), IPPROTO_TCP, option, &value,
                         sizeof value);
        };
        set(TCP_KEEPIDLE, 10); // seconds of silence before the first probe
        set(TCP_KEEPINTVL, 5); // seconds between probes
        set(TCP_KEEPCNT, 3);   // probes without an answer that end the connection
    }

    void end(bool failed) {
        if (std::exchange(ended_, true)) return;
        failed_ = failed && socket_.error() != QAbstractSocket::RemoteHostClosedError;
        events_.ended();
    }

    platform::TcpClients::Events events_;
    bool ended_ = false;
    bool failed_ = false;
    QTcpSocket socket_;
};

} // namespace

std::unique_ptr<platform::TcpClient> TcpClients::connect(const std::string& host, int port, Events events) {
    return std::make_unique<Client>(host, port, std::move(events));
}

} // namespace qt_ports
