#include "ui/adapters.h"

#include <QSignalBlocker>

namespace ui {

namespace {

class ButtonAdapter : public WidgetAdapter {
  public:
    ButtonAdapter(form::Button& button, PushButton& widget, const Words& words, Redraw& redraw)
        : WidgetAdapter(button, widget, words, redraw), button_(button), widget_(widget) {
        QObject::connect(&widget, &QPushButton::clicked, &widget, [&button] { button.Click.fire(); });
        widget.onPress = [&button] { button.MouseDown.fire(); };
        widget.onRelease = [&button] { button.MouseUp.fire(); };
    }

  private:
    void drawOwn() override {
        widget_.setText(shown(button_.Caption));
        widget_.setBackground(ownColour(button_.BackColor));
    }
    form::Button& button_;
    PushButton& widget_;
};

class CheckBoxAdapter : public WidgetAdapter {
  public:
    CheckBoxAdapter(form::CheckBox& box, TickBox& widget, const Words& words, Redraw& redraw)
        : WidgetAdapter(box, widget, words, redraw), box_(box), widget_(widget) {
        QObject::connect(&widget, &QCheckBox::clicked, &widget, [&box] { box.userClick(); });
    }

  private:
    void drawOwn() override {
        const QSignalBlocker quiet(widget_);
        widget_.setText(shown(box_.Caption));
        widget_.setChecked(box_.ticked());
        widget_.setPlate(ownColour(box_.BackColor));
    }
    form::CheckBox& box_;
    TickBox& widget_;
};

class OptionAdapter : public WidgetAdapter {
  public:
    OptionAdapter(form::OptionButton& option, OptionDot& widget, const Words& words, Redraw& redraw)
        : WidgetAdapter(option, widget, words, redraw), option_(option), widget_(widget) {
        QObject::connect(&widget, &QRadioButton::clicked, &widget, [&option] { option.userClick(); });
    }

  private:
    void drawOwn() override {
        const QSignalBlocker quiet(widget_);
        widget_.setText(shown(option_.Caption));
        widget_.setChecked(option_.Value);
    }
    form::OptionButton& option_;
    OptionDot& widget_;
};

class ScrollBarAdapter : public WidgetAdapter {
  public:
    ScrollBarAdapter(form::ScrollBar& bar, Slider& widget, const Words& words, Redraw& redraw)
        : WidgetAdapter(bar, widget, words, redraw), bar_(bar), widget_(widget) {
        widget.setRange(bar.Limits.min, bar.Limits.max);
        widget.setSingleStep(bar.Limits.smallChange);
        widget.setPageStep(bar.Limits.largeChange);
        QObject::connect(&widget, &QSlider::valueChanged, &widget, [this](int value) {
            bar_.userScroll(value);
            redrawSoon();
        });
    }

  private:
    void drawOwn() override {
        const QSignalBlocker quiet(widget_);
        widget_.setValue(bar_.Value);
        widget_.update();
    }
    form::ScrollBar& bar_;
    Slider& widget_;
};

class ComboBoxAdapter : public WidgetAdapter {
  public:
    ComboBoxAdapter(form::ComboBox& box, QComboBox& widget, const Words& words, Redraw& redraw)
        : WidgetAdapter(box, widget, words, redraw), box_(box), widget_(widget) {
        for (const std::string& entry : box.List) {
            widget.addItem(shown(entry));
        }
        QObject::connect(&widget, &QComboBox::activated, &widget, [this](int index) {
            box_.ListIndex = index;
            box_.Click.fire();
            redrawSoon();
        });
    }

  private:
    void drawOwn() override {
        const QSignalBlocker quiet(widget_);
        widget_.setCurrentIndex(box_.ListIndex);
    }
    form::ComboBox& box_;
    QComboBox& widget_;
};

class MenuAdapter : public Adapter {
  public:
    MenuAdapter(form::Menu& menu, QAction& action, Redraw& redraw)
        : Adapter(menu, redraw), menu_(menu), action_(action) {
        action.setObjectName(shown(menu.name()));
        QObject::connect(&action, &QAction::triggered, &action, [this] {
            redrawSoon(); // the toolkit has ticked it already
            menu_.Click.fire();
        });
    }

  private:
    void drawNow() override {
        action_.setText(shown(menu_.Caption));
        if (action_.isCheckable()) action_.setChecked(menu_.Checked);
        action_.setVisible(menu_.Visible);
        action_.setEnabled(menu_.Enabled);
    }
    form::Menu& menu_;
    QAction& action_;
};

} // namespace

PushButton* Adapters::button(form::Button& control, const Words& words, const QString& reserve,
                             PushButton::Kind kind) {
    auto* widget = new PushButton(kind);
    widget->reserve(reserve.isEmpty() ? shown(control.Caption) : reserve);
    add<ButtonAdapter>(control, control, *widget, words);
    return widget;
}

TickBox* Adapters::checkBox(form::CheckBox& control, const Words& words, const QString& reserve) {
    auto* widget = new TickBox;
    widget->reserve(reserve.isEmpty() ? shown(control.Caption) : reserve);
    add<CheckBoxAdapter>(control, control, *widget, words);
    return widget;
}

OptionDot* Adapters::option(form::OptionButton& control, const Words& words) {
    auto* widget = new OptionDot;
    add<OptionAdapter>(control, control, *widget, words);
    return widget;
}

Slider* Adapters::scrollBar(form::ScrollBar& control, const Words& words) {
    auto* widget = new Slider;
    add<ScrollBarAdapter>(control, control, *widget, words);
    return widget;
}

QComboBox* Adapters::comboBox(form::ComboBox& control, const Words& words) {
    auto* widget = new QComboBox;
    add<ComboBoxAdapter>(control, control, *widget, words);
    return widget;
}

void Adapters::menu(form::Menu& control, QAction& action, const QString& tip) {
    action.setToolTip(plainTip(tip));
    add<MenuAdapter>(control, control, action);
}

} // namespace ui
