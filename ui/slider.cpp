#include "ui/slider.h"

#include <QWheelEvent>

namespace ui {

void Slider::wheelEvent(QWheelEvent* event) {
    if (hasFocus()) {
        QSlider::wheelEvent(event);
    } else {
        event->ignore();
    }
}

} // namespace ui
