#include "ui/window_place.h"

#include "runtime/errors.h"

#include <QWidget>

namespace ui {

namespace {
constexpr const char* kSection = "window";
constexpr const char* kPlace = "place"; // as the toolkit writes it, in hexadecimal digits
} // namespace

WindowPlace::WindowPlace(QWidget& window, platform::Settings& settings)
    : window_(window), settings_(settings) {
    try {
        const auto texts = settings_.read(kSection);
        const auto place = texts.find(kPlace);
        if (place != texts.end())
            window_.restoreGeometry(QByteArray::fromHex(QByteArray::fromStdString(place->second)));
    } catch (const runtime::FileError&) {
        // Devices and links come from the same file: that it cannot be read has been told.
    }
    before_ = window_.geometry();
    stateBefore_ = window_.windowState();
}

WindowPlace::~WindowPlace() {
    if (window_.geometry() == before_ && window_.windowState() == stateBefore_) return;
    try {
        settings_.write({{kSection, {{kPlace, window_.saveGeometry().toHex().toStdString()}}}});
    } catch (const runtime::FileError&) {
        // A place that is lost is no loss; the file has its own messages.
    }
}

} // namespace ui
