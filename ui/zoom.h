#pragma once

#include <QFont>
#include <QScrollArea>
#include <vector>

namespace ui {

/// Scales the texts of its content with the window, so that a maximised window can be read from further away.
/// If even the smallest size does not fit, the content scrolls.
class ZoomArea : public QScrollArea {
  public:
    /// In a window smaller than `smallest` texts keep the size of the user's font. Takes ownership of the
    /// complete content.
    ZoomArea(QWidget* content, const QSize& smallest);

    /// The size that the content needs without scrolling.
    QSize sizeHint() const override { return base_; }

  protected:
    void resizeEvent(QResizeEvent* event) override;

  private:
    struct Text {
        QWidget* widget;
        QFont font;
    };
    void zoom(int percent);

    QSize base_; // the window size at which zooming begins
    std::vector<Text> texts_;
    int percent_ = 100;
};

} // namespace ui
