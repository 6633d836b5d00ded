#include "platform/trace/traced_outputs.h"

#include "runtime/errors.h"

#include <string>
#include <utility>

namespace trace {

namespace {

const std::filesystem::path& notOwn(const std::filesystem::path& path, const std::filesystem::path& folder,
                                    std::span<const std::string_view> own) {
    if (const auto name = ownFile(path, folder, own)) {
        throw runtime::FileError("trace file \"" + path.string() + "\" would go over \"" + *name +
                                 "\", which the program keeps for itself");
    }
    return path;
}

} // namespace

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

TracedOutputs::TracedOutputs(const std::filesystem::path& path, const std::filesystem::path& folder,
                             std::span<const std::string_view> own, TraceFile::Clock::time_point start,
                             TraceFile::Failure failure, platform::PrinterPort& tracedPort,
                             platform::UsbBoard& tracedBoard)
    : file(notOwn(path, folder, own), start, std::move(failure)), printer(tracedPort, file),
      board(tracedBoard, file) {}

} // namespace trace
