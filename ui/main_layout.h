#pragma once

#include "ui/engine_view.h"
#include "ui/memory_view.h"
#include "ui/zoom.h"

#include <QGridLayout>

namespace ui {

/// The cards of the main window. If there is room, all lie in one grid that grows with the window. In a
/// smaller window the positions, the jog buttons and both Stops stay at the top; everything else scrolls
/// below.
class MainLayout : public QWidget {
  public:
    struct Cards {
        EngineView* engineA;
        EngineView* engineB;
        MemoryView* memories;
        QWidget* sky;
        QWidget* left;  // memories or sky
        QWidget* right; // radio or satellite
        QWidget* outputs;
        QWidget* invitation;
    };

    /// Takes the cards. Below `usual`, texts keep the size of the user's font.
    MainLayout(const Cards& cards, const QSize& usual);

    /// The size that needs no scrolling.
    QSize sizeHint() const override { return area_->sizeHint(); }
    /// While nothing is set up, the invitation stands in place of engines and zones.
    void setInviting(bool inviting);

  protected:
    bool event(QEvent* event) override;

  private:
    void choose();
    void arrange();
    void arrangeWide();
    void arrangeCompact();

    Cards cards_;
    QWidget* top_; // the engines, in a small window
    QWidget* zones_ = new QWidget;
    QGridLayout* grid_;
    Card* settingsA_; // what stands below the engines' buttons in a large window
    Card* settingsB_;
    ZoomArea* area_;
    QSize need_; // of the large arrangement
    bool compact_ = false;
    bool beside_ = false; // memories and radio, in a small window
    bool inviting_ = false;
};

} // namespace ui
