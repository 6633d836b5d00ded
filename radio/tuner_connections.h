#pragma once

#include "config/record_file.h"
#include "form/boxes.h"
#include "form/dialogs.h"
#include "form/form1.h"
#include "platform/hardware.h"
#include "platform/udp_sockets.h"
#include "radio/logger32.h"
#include "radio/rigctld.h"

#include <functional>
#include <optional>
#include <vector>

namespace radio {

/// The dialog in which the user chooses the frequency program and tests each connection. The dialog uses its
/// own test connections, not the main window's connection.
class TunerConnections {
  public:
    /// Makes a client of the daemon at `place`, "HOST[:PORT]".
    using ConnectRig = std::function<std::unique_ptr<Rigctld>(const std::string& place,
                                                              std::function<void(const RigReading&)> told)>;

    TunerConnections(form::Form1& main, form::FrmTunerConn& dialog, config::RecordFile& file,
                     Logger32& logger32, platform::UdpSockets& sockets, platform::Hardware& hardware,
                     ConnectRig connectRig);
    ~TunerConnections();
    TunerConnections(const TunerConnections&) = delete;
    TunerConnections& operator=(const TunerConnections&) = delete;

    void Form_Load();
    void cmdOnLog32_Click();
    void cmdOffLog32_Click();
    void tmrLog32_Timer();
    void Command1_Click();
    void cmdOnHamlib_Click();
    void cmdSaveTConf_Click();

  private:
    struct Program {
        int number; // record 64
        form::OptionButton& option;
        form::Label& received; // shows the frequency received in the test
    };
    void attachLinkTest();
    void attachPortEntry();
    void attachHamlib();
    void choose(const Program& chosen);
    /// When the user chooses N1MM Logger, the default port replaces 0.
    void replaceZeroPort();
    void listen();
    void closeSocket();
    void showLogger32(bool connected);
    void showPort(const std::string& text, bool editing);
    /// The typed port. If it is invalid, shows a message beside the field and returns nothing.
    std::optional<form::Int16> typedPort();
    void endHamlibTest();
    void showRig(const RigReading& reading);
    /// Whether the address typed in can be one; if not, a message stands beside the field.
    bool rigctldIsGood();
    /// Throws runtime::FileError.
    void keepRigctld();

    form::Form1& main_;
    form::FrmTunerConn& dialog_;
    config::RecordFile& file_;
    Logger32& logger32_;
    platform::UdpSockets& sockets_;
    platform::Hardware& hardware_;
    const ConnectRig connectRig_;
    std::unique_ptr<platform::UdpSocket> wskN1mm_;
    std::unique_ptr<Rigctld> rigctld_;
    const std::vector<Program> programs_;
    form::Int16 program_;
    form::Int16 port_;
};

} // namespace radio
