#include "engine/output_ports.h"

#include "engine/coil_sequence.h"
#include "engine/side.h"

namespace engine {

namespace {

/// Stands for the card that the user chose. The label names a closed card by this 0, whatever its own
/// address: first "USB Card 2 connected", later "USB Card 0 disconnected".
constexpr int kCardAddress = 0;
constexpr int kCardAddressMax = 3;
constexpr int kNoCard = -1;
constexpr int kCoils = 15; // engine A's outputs in the byte
constexpr int kAllOutputs = 255;

std::string cardText(int address, const char* state) {
    return "USB Card " + std::to_string(address) + " " + state;
}

/// Runs `action`; returns false if it throws.
template <class Action>
bool attempt(const Action& action) {
    try {
        action();
        return true;
    } catch (const std::exception&) {
        return false;
    }
}

} // namespace

OutputPorts::OutputPorts(form::Form1& form, form::Boxes& boxes, platform::PrinterPort& port,
                         platform::UsbBoard& board)
    : form_(form), boxes_(boxes), objPorta_(port), board_(board) {
    form_.chkUsbOn.BackColor = form::kGreen;
    form_.chkUsbOn.Click.attach([this] { chkUsbOn_Click(); });
    form_.cmdOff.Click.attach([this] { cmdOff_Click(); });
}

void OutputPorts::subBitPorta(form::Int16 stato, form::Int16 bit) {
    const form::Byte dataBit = (bit - 1).value();
    const int mask = 1 << dataBit.value();
    if (stato == 1) {
        objPorta_.setBit(dataBit.value());
        portOn_ &= ~mask;
    } else {
        portOn_ |= mask; // also if the port fails: nobody knows what it holds
        objPorta_.clearBit(dataBit.value());
    }
    showCoils();
}

void OutputPorts::showCoils() {
    form_.shpCoils.FillColor = portOn_ != 0 || usbOn_ != 0 ? form::kRed : form::kBlack;
}

void OutputPorts::subUsbOnOff(form::Int16 peso, form::Int16 mot) {
    if (!form_.chkUsbOn.ticked()) return;
    if (mot == 1) form_.intPesoA = peso;
    if (mot == 2) form_.intPesoB = peso;
    const form::Int16 sum = form_.intPesoB + form_.intPesoA;
    if (form_.bolUsbBlocco) return;
    onBoard([&] { board_.writeAllDigital(sum.value()); });
    usbOn_ = sum.value();
    showCoils();
}

bool OutputPorts::ready(const Side& side) {
    const int half = kCoils * side.usbFactor;
    if (!objPorta_.taken(half)) {
        slowDevice_ = "Arduino"; // every other printer port is as fast as the program
        return false;
    }
    if (!form_.chkUsbOn.ticked() || onBoard([&] { return board_.taken(half); })) return true;
    slowDevice_ = "USB board";
    return false;
}

void OutputPorts::checkUsb() {
    if (form_.chkUsbOn.ticked()) onBoard([this] { board_.taken(kAllOutputs); });
}

template <class Call>
auto OutputPorts::onBoard(const Call& call) -> decltype(call()) {
    try {
        return call();
    } catch (const std::exception&) {
        letBoardGo();
        throw;
    }
}

void OutputPorts::letBoardGo() {
    // Without the event, which would try to close the board and show a box of its own.
    form_.chkUsbOn.Value.load(0);
    showUsbOff();
    form_.lblUsb.Caption = cardText(kCardAddress, "disconnected");
    attempt([this] { board_.writeAllDigital(0); }); // if the board recovers, it gets "off"
    lost_ = !attempt([this] { board_.closeDevice(); });
}

void OutputPorts::chkUsbOn_Click() {
    try {
        if (form_.chkUsbOn.ticked()) {
            openUsb();
        } else {
            closeUsb();
        }
    } catch (const std::exception&) {
        boxes_.critical("Cannot find USB driver!", "Error!");
        // Without the event, which would try to close the board and fail once more.
        form_.chkUsbOn.Value.load(0);
        if (form_.bolUsbOn) form_.lblUsb.Caption = cardText(kCardAddress, "disconnected");
        showUsbOff();
        attempt([this] { board_.closeDevice(); });
    }
}

void OutputPorts::openUsb() {
    lost_ = false;
    const int result = board_.openDevice(kCardAddress);
    if (result == kNoCard) {
        form_.lblUsb.Caption = cardText(result, "not found");
        form_.bolUsbOn = false;
    } else if (result >= 0 && result <= kCardAddressMax) {
        form_.lblUsb.Caption = cardText(result, "connected");
        form_.bolUsbOn = true;
    }
    form_.chkUsbOn.Caption = "USB On";
    form_.chkUsbOn.BackColor = form::kRed;
    const std::string refusal = result == kNoCard ? board_.refusal() : std::string();
    if (!refusal.empty()) boxes_.critical(refusal, "Error!");
}

void OutputPorts::closeUsb() {
    if (!form_.bolUsbBlocco) board_.writeAllDigital(0);
    board_.closeDevice();
    form_.lblUsb.Caption = cardText(kCardAddress, "disconnected");
    showUsbOff();
}

void OutputPorts::showUsbOff() {
    form_.chkUsbOn.Caption = "USB Off";
    form_.chkUsbOn.BackColor = form::kGreen;
    form_.bolUsbOn = false;
    usbOn_ = 0;
    showCoils();
    form_.rateNotice.Caption = "";
}

void OutputPorts::cmdOff_Click() {
    darkenLamps();
    writePortOff();
    subUsbOnOff(0, 1);
    subUsbOnOff(0, 2);
}

void OutputPorts::rest(const Side& side) {
    for (form::Shape* lamp : side.lamps)
        lamp->FillColor = form::kBlack;
    writeOff(side.firstOutput);
    endPattern();
    subUsbOnOff(0, side.motor);
}

void OutputPorts::writePortOff() {
    for (const int firstOutput : {1, 5})
        writeOff(firstOutput);
    endPattern();
}

void OutputPorts::writeOff(int firstOutput) {
    for (const int output : kOffOrder)
        subBitPorta(1, firstOutput - 1 + output);
}

void OutputPorts::darkenLamps() {
    const Sides sides(form_);
    for (const Side& side : {sides.a, sides.b}) {
        for (form::Shape* lamp : side.lamps)
            lamp->FillColor = form::kBlack;
    }
}

bool OutputPorts::offWithoutFail() noexcept {
    bool allOff = attempt([this] { darkenLamps(); });
    allOff &= attempt([this] { writePortOff(); });
    allOff &= attempt([this] { subUsbOnOff(0, 1); });
    allOff &= attempt([this] { subUsbOnOff(0, 2); });
    return !std::exchange(lost_, false) && allOff;
}

} // namespace engine
