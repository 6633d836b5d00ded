#pragma once

#include <QPushButton>
#include <functional>
#include <optional>

namespace ui {

/// A flat button that tells when it is pressed and let go, also when the release gets lost: the focus moves
/// on, a box opens, the button is hidden or disabled, the window goes to the back.
class PushButton : public QPushButton {
  public:
    enum class Kind { Normal, Stop };

    explicit PushButton(Kind kind = Kind::Normal, QWidget* parent = nullptr);

    std::function<void()> onPress, onRelease;
    /// The release will not come any more: what the button holds is let go.
    void lose();

    /// A background of its own; none follows the palette.
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
    void focusOutEvent(QFocusEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void changeEvent(QEvent* event) override;

  private:
    void hold();
    void letGo();
    QColor face() const;

    Kind kind_;
    bool held_ = false;
    QString samples_;
    std::optional<QColor> background_;
};

} // namespace ui
