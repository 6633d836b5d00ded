#include "engine/output_ports.h"

#include "engine/coil_sequence.h"
#include "engine/side.h"

namespace engine {

namespace {

constexpr int kCardAddress = 0;
constexpr int kCardAddressMax = 3;
constexpr int kNoCard = -1;

std::string cardText(int address, const char* state) {
    return "USB Card " + std::to_string(address) + " " + state;
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
    if (stato == 1) {
        objPorta_.setBit(dataBit.value());
    } else {
        objPorta_.clearBit(dataBit.value());
    }
}

void OutputPorts::subUsbOnOff(form::Int16 peso, form::Int16 mot) {
    if (!form_.chkUsbOn.ticked()) return;
    if (mot == 1) form_.intPesoA = peso;
    if (mot == 2) form_.intPesoB = peso;
    const form::Int16 sum = form_.intPesoB + form_.intPesoA;
    if (!form_.bolUsbBlocco) board_.writeAllDigital(sum.value());
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
        showUsbOff();
    }
}

void OutputPorts::openUsb() {
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
}

void OutputPorts::cmdOff_Click() {
    darkenLamps();
    writePortOff();
    subUsbOnOff(0, 1);
    subUsbOnOff(0, 2);
}

void OutputPorts::writePortOff() {
    for (const int firstOutput : {1, 5}) {
        for (const int output : kOffOrder)
            subBitPorta(1, firstOutput - 1 + output);
    }
}

void OutputPorts::darkenLamps() {
    const Sides sides(form_);
    for (const Side& side : {sides.a, sides.b}) {
        for (form::Shape* lamp : side.lamps)
            lamp->FillColor = form::kBlack;
    }
}

bool OutputPorts::offWithoutFail() noexcept {
    bool allOff = true;
    const auto attempt = [&allOff](const auto& action) {
        try {
            action();
        } catch (const std::exception&) {
            allOff = false;
        }
    };
    attempt([this] { darkenLamps(); });
    attempt([this] { writePortOff(); });
    attempt([this] { subUsbOnOff(0, 1); });
    attempt([this] { subUsbOnOff(0, 2); });
    return allOff;
}

} // namespace engine
