#pragma once

#include <QBoxLayout>
#include <QWidget>

namespace ui {

class CaptionLabel;

/// The spaces between things, in logical pixels.
constexpr int kGrid = 8;

/// The ground of a group of controls: rounded, a shade above the window.
class Card : public QWidget {
  public:
    explicit Card(const QString& title, const QString& tip, QWidget* parent = nullptr);

    QVBoxLayout& body() { return *body_; }

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    QVBoxLayout* body_;
};

/// A text of the layout, which no control changes.
CaptionLabel* fixedText(const QString& text, const QString& tip = {});
CaptionLabel* groupTitle(const QString& text, const QString& tip);
/// A thin upright line between neighbours.
QWidget* divider();
/// A line of two halves, which stand under each other in a small window.
QBoxLayout* foldingRow(bool mirrored = false);
/// Folds or unfolds all folding rows in a widget.
void fold(QWidget& widget, bool folded);
/// A row without margins; a mirrored one runs from the right.
QHBoxLayout* row(bool mirrored = false);

} // namespace ui
