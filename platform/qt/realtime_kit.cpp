#include "platform/qt/realtime_kit.h"

#include "runtime/errors.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>

namespace qt_ports {

namespace {

constexpr const char* kService = "org.freedesktop.RealtimeKit1";
constexpr const char* kPath = "/org/freedesktop/RealtimeKit1";
constexpr const char* kConnection = "twinstep-realtime";
/// The system may have to start the service first. Longer waiting would delay the window too much.
constexpr int kPatience = 2000; // milliseconds

/// A connection for a few calls; it leaves nothing in the event loop.
class Bus {
  public:
    Bus() : connection_(QDBusConnection::connectToBus(QDBusConnection::SystemBus, kConnection)) {
        if (!connection_.isConnected()) throw runtime::ObjectError("no system bus to ask RealtimeKit");
    }
    Bus(const Bus&) = delete;
    Bus& operator=(const Bus&) = delete;
    ~Bus() { QDBusConnection::disconnectFromBus(kConnection); }

    QVariant call(const char* interface, const char* method, const QVariantList& arguments) {
        QDBusMessage message = QDBusMessage::createMethodCall(kService, kPath, interface, method);
        message.setArguments(arguments);
        const QDBusMessage reply = connection_.call(message, QDBus::Block, kPatience);
        if (reply.type() == QDBusMessage::ErrorMessage) {
            throw runtime::ObjectError("RealtimeKit: " + reply.errorMessage().toStdString());
        }
        return reply.arguments().value(0);
    }
    QVariant property(const char* name) {
        const QVariant value = call("org.freedesktop.DBus.Properties", "Get", {kService, name});
        return value.value<QDBusVariant>().variant();
    }

  private:
    QDBusConnection connection_;
};

} // namespace

RealtimeKit::Limits RealtimeKit::limits() {
    Bus bus;
    const Limits limits{.priority = bus.property("MaxRealtimePriority").toInt(),
                        .withoutRest = std::chrono::microseconds(bus.property("RTTimeUSecMax").toLongLong())};
    if (limits.priority < 1 || limits.withoutRest.count() < 1) {
        throw runtime::ObjectError("RealtimeKit allows no priority");
    }
    return limits;
}

void RealtimeKit::raise(pid_t thread, int priority) {
    Bus().call(kService, "MakeThreadRealtime",
               {QVariant::fromValue(static_cast<quint64>(thread)),
                QVariant::fromValue(static_cast<quint32>(priority))});
}

} // namespace qt_ports
