#pragma once

#include "form/assistant.h"
#include "ui/thin_bar.h"

/// The small pictures on the pages of the set-up assistant.
namespace ui {

/// A shaft seen from its end: a whole bar is a turn, clockwise from the top.
class ShaftPicture : public ThinBar {
  public:
    ShaftPicture() { setFixedSize(ShaftPicture::sizeHint()); }
    QSize sizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;
};

/// The four wires from an engine's outputs to its coils. Those to exchange cross.
class WiresPicture : public QWidget {
  public:
    /// `first`: the number of the first output.
    WiresPicture(const form::AssistantEngine& engine, int first);
    QSize sizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    const form::AssistantEngine& engine_;
    int first_;
};

} // namespace ui
