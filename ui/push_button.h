#pragma once

#include <QPushButton>
#include <functional>
#include <optional>

namespace ui {

/// A flat button that reports press and release. It also reports a release when the real release is lost: the
/// focus moves, a box opens, the button is hidden or disabled, or the window loses the focus.
class PushButton : public QPushButton {
  public:
    enum class Kind { Normal, Stop };

    explicit PushButton(Kind kind = Kind::Normal, QWidget* parent = nullptr);

    std::function<void()> onPress, onRelease;
    /// The real release will not come: report a release now.
    void lose();

    /// Space does nothing after code has given the button the focus, until the user tabs to it or clicks it.
    void guardSpace() { guardsSpace_ = true; }
    /// The button's own background; without a colour it follows the palette.
    void setBackground(std::optional<QColor> background);
    void reserve(const QString& samples) { samples_ = samples; }
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void changeEvent(QEvent* event) override;

  private:
    void hold();
    void letGo();
    QColor face() const;

    Kind kind_;
    bool held_ = false;
    bool guardsSpace_ = false, focusedByCode_ = false;
    QString samples_;
    std::optional<QColor> background_;
};

} // namespace ui
