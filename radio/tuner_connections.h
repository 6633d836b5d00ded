#pragma once

#include "config/record_file.h"
#include "form/boxes.h"
#include "form/dialogs.h"
#include "form/form1.h"
#include "platform/udp_sockets.h"
#include "radio/logger32.h"

#include <optional>
#include <vector>

namespace radio {

/// The dialog in which the user chooses the frequency program and tests each connection. The dialog uses its
/// own test connections, not the main window's connection.
class TunerConnections {
  public:
    TunerConnections(form::Form1& main, form::FrmTunerConn& dialog, config::RecordFile& file,
                     Logger32& logger32, platform::UdpSockets& sockets);
    ~TunerConnections();
    TunerConnections(const TunerConnections&) = delete;
    TunerConnections& operator=(const TunerConnections&) = delete;

    void Form_Load();
    void cmdOnLog32_Click();
    void cmdOffLog32_Click();
    void tmrLog32_Timer();
    void Command1_Click();
    void cmdSaveTConf_Click();

  private:
    struct Program {
        int number; // record 64
        form::OptionButton& option;
        form::Label& received; // shows the frequency received in the test
    };
    void attachLinkTest();
    void attachPortEntry();
    void choose(const Program& chosen);
    /// When the user chooses N1MM Logger, the default port replaces 0.
    void replaceZeroPort();
    void listen();
    void closeSocket();
    void showLogger32(bool connected);
    void showPort(const std::string& text, bool editing);
    /// The typed port. If it is invalid, shows a message beside the field and returns nothing.
    std::optional<form::Int16> typedPort();

    form::Form1& main_;
    form::FrmTunerConn& dialog_;
    config::RecordFile& file_;
    Logger32& logger32_;
    platform::UdpSockets& sockets_;
    std::unique_ptr<platform::UdpSocket> wskN1mm_;
    const std::vector<Program> programs_;
    form::Int16 program_;
    form::Int16 port_;
};

} // namespace radio
