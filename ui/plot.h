#pragma once

#include <QTimer>
#include <QWidget>

namespace ui {

/// A picture of the form's state. While visible, it looks at the state ten times a second; while hidden, it
/// does nothing.
class Plot : public QWidget {
  protected:
    Plot();
    /// Takes over the state, and repaints only after a change.
    virtual void look() = 0;

    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

  private:
    QTimer looking_;
};

} // namespace ui
