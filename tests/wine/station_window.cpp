#include "tests/wine/station_window.h"

#include <QAbstractButton>
#include <QLabel>
#include <QTcpServer>
#include <QTest>
#include <algorithm>
#include <random>

int freePort() {
    // Below those that the system gives to connections: one of these could take the place of a bridge that
    // is being restarted.
    static std::mt19937 random(std::random_device{}());
    std::uniform_int_distribution<quint16> ports(20'000, 32'000);
    QTcpServer server;
    while (!server.listen(QHostAddress::LocalHost, ports(random))) {
    }
    return server.serverPort();
}

Bridge::Bridge(int port, const QStringList& more)
    : WindowsProgram("twinstep-bridge.exe",
                     QStringList{"--console", "--port", QString::number(port)} + more) {
    lineWith("listens on");
}

DdeServer::DdeServer(Kind kind, const QString& text)
    : WindowsProgram(
          "dde_server.exe",
          QStringList{kind == HamRadioDeluxe ? QStringList{"HRD_RADIO_000", "HRD_CAT", "HRD_FREQUENCY"}
                      : kind == Orbitron     ? QStringList{"Orbitron", "Tracking", "TrackingData"}
                                             : QStringList{"SatPC32", "SatPcDdeConv", "SatPcDdeItem"}} +
              QStringList{text}) {
    line("ready");
}

LoggerWindow::LoggerWindow(const QString& title) : WindowsProgram("logger32_window.exe", {title}) {
    line("ready");
}

void StationWindow::start(int function, int frequencyProgram) {
    namespace record = config::record;
    config::RecordFile file(outside_.storage, folder_.path() / "save.cfg");
    file.write({config::integerRecord(record::kStepsA, 200), config::singleRecord(record::kUnitsA, 10),
                config::integerRecord(record::kFastA, 1000), config::integerRecord(record::kSlowA, 1000),
                config::integerRecord(record::kFastB, 1000), config::integerRecord(record::kSlowB, 1000),
                config::integerRecord(record::kStepsB, 200), config::singleRecord(record::kUnitsB, 10),
                config::integerRecord(record::kFunction, static_cast<short>(function)),
                config::integerRecord(record::kFrequencyProgram, static_cast<short>(frequencyProgram))});
    app::Ports ports = outside_.ports();
    ports.timers = timers_;
    ports.links = links_;
    ports.station = station_;
    ports.tcp = tcp_;
    controller_ = std::make_unique<app::Controller>(ports, folder_.path());
    window_ = std::make_unique<ui::MainWindow>(f(), controller_->boxes());
    window_->show();
    controller_->start();
    ASSERT_TRUE(QTest::qWaitForWindowActive(window_.get()));
}

void StationWindow::crashBridge(WindowsProgram& station) {
    station.tell("end twinstep-bridge.exe");
    ASSERT_TRUE(bridge->ends());
}

QWidget& StationWindow::widget(const char* name) {
    auto* found = window().findChild<QWidget*>(name);
    if (!found) throw std::runtime_error(std::string("no such widget: ") + name);
    return *found;
}

std::string StationWindow::text(const char* name) {
    if (const auto* label = dynamic_cast<const QLabel*>(&widget(name))) return label->text().toStdString();
    return dynamic_cast<const QAbstractButton&>(widget(name)).text().toStdString();
}

void StationWindow::click(const char* name) {
    QWidget& target = widget(name);
    ASSERT_TRUE(waitFor([&] { return target.isEnabled() && target.isVisible(); })) << name;
    QTest::mouseClick(&target, Qt::LeftButton);
}

::testing::AssertionResult StationWindow::shows(const char* name, const std::string& expected) {
    if (waitFor([&] { return text(name) == expected; })) return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure()
           << name << " shows \"" << text(name) << "\", not \"" << expected << "\"";
}

bool StationWindow::said(const std::string& expected) {
    return waitFor([&] {
        const auto messages = dialogs.takeMessages();
        return std::ranges::any_of(messages, [&](const auto& message) { return message.text == expected; });
    });
}
