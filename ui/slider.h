#pragma once

#include <QSlider>

namespace ui {

/// A slider that the mouse wheel moves only while the slider has the focus: scrolling the window must not
/// change a setting.
class Slider : public QSlider {
  public:
    explicit Slider(QWidget* parent = nullptr) : QSlider(Qt::Horizontal, parent) {
        setFocusPolicy(Qt::StrongFocus);
    }

  protected:
    void wheelEvent(QWheelEvent* event) override;
};

} // namespace ui
