#pragma once

#include <QWidget>

namespace ui {

/// A thin line that grows to the right.
class ThinBar : public QWidget {
  public:
    /// 0 to 1.
    void setShare(double share);
    double share() const { return share_; }

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    double share_ = 0;
};

} // namespace ui
