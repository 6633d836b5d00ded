#include "platform/trace/traced_outputs.h"

#include <string>

namespace trace {

void TracedPrinterPort::clearBit(int bit) {
    port_.clearBit(bit);
    record(bit, '0');
}

void TracedPrinterPort::setBit(int bit) {
    port_.setBit(bit);
    record(bit, '1');
}

void TracedPrinterPort::record(int bit, char state) {
    char text[] = "port 1 0";
    text[5] = static_cast<char>('1' + bit);
    text[7] = state;
    file_.add(text);
}

int TracedUsbBoard::openDevice(int address) {
    const int result = board_.openDevice(address);
    file_.add("usb open " + std::to_string(result));
    return result;
}

void TracedUsbBoard::writeAllDigital(int outputs) {
    board_.writeAllDigital(outputs);
    file_.add("usb " + std::to_string(outputs));
}

void TracedUsbBoard::closeDevice() {
    board_.closeDevice();
    file_.add("usb close");
}

} // namespace trace
