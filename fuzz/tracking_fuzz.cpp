// Bytes of a tracking server, in either format, and the text of SatPC32's item.

#include "form/form1.h"
#include "platform/simulated/clock.h"
#include "platform/simulated/links.h"
#include "rotor/line_splitter.h"
#include "rotor/tracking_data.h"
#include "runtime/number.h"
#include "runtime/text.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static simulated::Clock clock;
    static simulated::DdeLinks links;
    static form::Form1 form(clock, links);
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    for (const int source : {rotor::kOrbitron, rotor::kSatPc32}) {
        form.intSatSource = source;
        rotor::LineSplitter lines(
            [](const std::string& line) { rotor::subSatData(form, runtime::fromAnsi(line)); });
        lines.add(std::string_view(bytes).substr(0, size / 2));
        lines.add(std::string_view(bytes).substr(size / 2));
        lines.flush();
    }
    rotor::readSatPc32Item(form, runtime::fromAnsi(bytes));
    // Whatever came in, what the rotor follows is a number or was never set.
    for (const form::Label* label : {&form.lblAzRx, &form.lblElRx}) {
        if (!label->Caption.get().empty()) runtime::parseNumber(label->Caption.get());
    }
    return 0;
}
