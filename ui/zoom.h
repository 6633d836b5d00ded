#pragma once

#include <QFont>
#include <QScrollArea>
#include <vector>

namespace ui {

/// Shows a content whose texts grow with the window, so that a maximised window is read from further away.
/// Where even the smallest size does not fit, it scrolls and nothing is cut off.
class ZoomArea : public QScrollArea {
  public:
    /// Below `smallest` texts keep the size of the user's font. Takes the content, complete, as its own.
    ZoomArea(QWidget* content, const QSize& smallest);

    /// What the content needs without scrolling.
    QSize sizeHint() const override { return base_; }

  protected:
    void resizeEvent(QResizeEvent* event) override;

  private:
    struct Text {
        QWidget* widget;
        QFont font;
    };
    void zoom(int percent);

    QSize base_; // where the zoom begins
    std::vector<Text> texts_;
    int percent_ = 100;
};

} // namespace ui
