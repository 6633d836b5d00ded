#pragma once

#include "form/controls.h"
#include "form/table_window.h"
#include "ui/adapter.h"
#include "ui/caption_label.h"
#include "ui/colours.h"
#include "ui/digits.h"
#include "ui/lamp.h"
#include "ui/line_edit.h"
#include "ui/push_button.h"
#include "ui/slider.h"
#include "ui/thin_bar.h"
#include "ui/toggles.h"

#include <QAction>
#include <QComboBox>
#include <memory>
#include <unordered_map>
#include <vector>

namespace ui {

class TableGridView;

/// Makes the widgets of a form's controls and keeps widgets and controls equal. The layout owns its widgets.
/// `reserve` lists the texts for which a control leaves room, separated by '|'.
class Adapters {
  public:
    explicit Adapters(Redraw& redraw) : redraw_(redraw) {}

    CaptionLabel* label(form::Label& control, const Words& words, const QString& reserve);
    /// A label that can be double-clicked.
    CaptionLabel* activeLabel(form::Label& control, const Words& words, const QString& reserve);
    /// A large number. If `opens` is true, it can be double-clicked.
    Digits* digits(form::Label& control, const Words& words, bool opens = true);
    PushButton* button(form::Button& control, const Words& words, const QString& reserve = {},
                       PushButton::Kind kind = PushButton::Kind::Normal);
    TickBox* checkBox(form::CheckBox& control, const Words& words, const QString& reserve = {});
    OptionDot* option(form::OptionButton& control, const Words& words);
    Slider* scrollBar(form::ScrollBar& control, const Words& words);
    LineEdit* textBox(form::TextBox& control, const Words& words, const QString& reserve);
    QComboBox* comboBox(form::ComboBox& control, const Words& words);
    Lamp* lamp(form::Shape& control, const Words& words);
    /// Without a widget of its own it is a thin bar.
    ThinBar* bar(form::Bar& control, const Words& words, ThinBar* widget = nullptr);
    TableGridView* tableGrid(form::TableGrid& control, const Words& words);
    void display(form::Shape& control, Display& widget, const Words& words);
    /// The control only shows and hides the group; the layout sets the look and the texts.
    void frame(form::Frame& control, QWidget& widget);
    void menu(form::Menu& control, QAction& action, const QString& tip);
    void statusBar(form::StatusBar& control, QWidget& widget, const std::vector<CaptionLabel*>& panels);

    /// The adapter of a control whose widget was made here.
    Adapter& of(const form::Control& control) const { return *byControl_.at(&control); }
    /// Redraws every control after a change of the palette.
    void redrawAll();

  private:
    template <class AdapterKind, class... Args>
    void add(form::Control& control, Args&&... args) {
        all_.push_back(std::make_unique<AdapterKind>(std::forward<Args>(args)..., redraw_));
        byControl_[&control] = all_.back().get();
    }

    Redraw& redraw_;
    std::vector<std::unique_ptr<Adapter>> all_;
    std::unordered_map<const form::Control*, Adapter*> byControl_;
};

/// The control's own colour; none if the control uses the palette's colour.
std::optional<QColor> ownColour(form::Colour colour);

} // namespace ui
