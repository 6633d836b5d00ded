#pragma once

#include "form/controls.h"
#include "ui/adapter.h"
#include "ui/caption_label.h"
#include "ui/colours.h"
#include "ui/digits.h"
#include "ui/lamp.h"
#include "ui/line_edit.h"
#include "ui/push_button.h"
#include "ui/slider.h"
#include "ui/toggles.h"

#include <QAction>
#include <QComboBox>
#include <memory>
#include <unordered_map>
#include <vector>

namespace ui {

/// Makes the widgets of a form's controls and keeps both in step. The widgets belong to the layout they are
/// put into. `reserve` names the texts that a control leaves room for, separated by '|'.
class Adapters {
  public:
    explicit Adapters(Redraw& redraw) : redraw_(redraw) {}

    CaptionLabel* label(form::Label& control, const Words& words, const QString& reserve);
    /// A label that can be double-clicked.
    CaptionLabel* activeLabel(form::Label& control, const Words& words, const QString& reserve);
    /// A large number. One that `opens` can be double-clicked.
    Digits* digits(form::Label& control, const Words& words, bool opens = true);
    PushButton* button(form::Button& control, const Words& words, const QString& reserve = {},
                       PushButton::Kind kind = PushButton::Kind::Normal);
    TickBox* checkBox(form::CheckBox& control, const Words& words, const QString& reserve = {});
    OptionDot* option(form::OptionButton& control, const Words& words);
    Slider* scrollBar(form::ScrollBar& control, const Words& words);
    LineEdit* textBox(form::TextBox& control, const Words& words, const QString& reserve);
    QComboBox* comboBox(form::ComboBox& control, const Words& words);
    Lamp* lamp(form::Shape& control, const Words& words);
    void display(form::Shape& control, Display& widget, const Words& words);
    /// The control shows and hides the group; its look and its words are the layout's.
    void frame(form::Frame& control, QWidget& widget);
    void menu(form::Menu& control, QAction& action, const QString& tip);
    void statusBar(form::StatusBar& control, QWidget& widget, const std::vector<CaptionLabel*>& panels);

    /// The adapter of a control that got its widget here.
    Adapter& of(const form::Control& control) const { return *byControl_.at(&control); }
    /// Draws every control anew: the palette has changed.
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

/// The colour that a control states, or none where it leaves it to the palette.
std::optional<QColor> ownColour(form::Colour colour);

} // namespace ui
