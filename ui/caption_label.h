#pragma once

#include <QLabel>
#include <functional>
#include <optional>

namespace ui {

QFont scaledFont(const QFont& font, double factor, QFont::Weight weight = QFont::Normal);
/// The width of the widest of some texts, separated by '|'.
int widest(const QFontMetrics& metrics, const QString& samples);

/// A text of constant size: the size comes from samples, and a longer text ends in dots. Never markup. If the
/// label reacts to a double-click, the keyboard can do the same.
class CaptionLabel : public QLabel {
  public:
    enum class Tone { Normal, Quiet, Accent };

    explicit CaptionLabel(const QString& text = {}, QWidget* parent = nullptr);

    /// The texts to leave room for, separated by '|'; one line each.
    void reserve(const QString& samples);
    void setTone(Tone tone);
    /// The label's own colours; without a colour it follows the palette.
    void setColours(std::optional<QColor> text, std::optional<QColor> background);
    /// Called by a double-click, Enter, Space or F2.
    void setActivated(std::function<void()> activated);

    bool shortened() const;
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

  protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

  private:
    int sidePadding() const;
    QColor textColour() const;

    QString samples_;
    Tone tone_ = Tone::Normal;
    std::optional<QColor> text_, background_;
    std::function<void()> activated_;
};

} // namespace ui
