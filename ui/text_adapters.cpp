#include "ui/adapters.h"

#include <QSignalBlocker>

namespace ui {

namespace {

class LabelAdapter : public WidgetAdapter {
  public:
    LabelAdapter(form::Label& label, CaptionLabel& widget, const Words& words, Redraw& redraw)
        : WidgetAdapter(label, widget, words, redraw), label_(label), widget_(widget) {}

  private:
    void drawOwn() override {
        const QString text = shown(label_.Caption);
        if (widget_.text() != text) widget_.setText(text);
        const bool amber = label_.ForeColor == form::kAmber;
        widget_.setColours(amber ? amberText(widget_.palette()) : ownColour(label_.ForeColor),
                           ownColour(label_.BackColor));
    }
    form::Label& label_;
    CaptionLabel& widget_;
};

class DigitsAdapter : public WidgetAdapter {
  public:
    DigitsAdapter(form::Label& label, Digits& widget, const Words& words, Redraw& redraw)
        : WidgetAdapter(label, widget, words, redraw), label_(label), widget_(widget) {}

  private:
    void drawOwn() override {
        const QString text = shown(label_.Caption);
        if (widget_.text() != text) widget_.setText(text);
        widget_.setDigitColour(screenColour(label_.ForeColor, widget_.palette()));
    }
    form::Label& label_;
    Digits& widget_;
};

class TextBoxAdapter : public WidgetAdapter {
  public:
    TextBoxAdapter(form::TextBox& box, LineEdit& widget, const Words& words, Redraw& shared)
        : WidgetAdapter(box, widget, words, shared), box_(box), widget_(widget) {
        if (box.MaxLength > 0) widget.setMaxLength(box.MaxLength);
        widget.onKeyDown = [this](int code) { box_.KeyDown.fire(code); };
        widget.onMouseDown = [this] { box_.MouseDown.fire(); };
        widget.onCharacter = [this](int code) {
            const int accepted = box_.press(code);
            // Text set by the handler must be in the box before the character is inserted.
            redraw().drawAll();
            return accepted;
        };
        QObject::connect(&widget, &QLineEdit::textChanged, &widget, [this](const QString& text) {
            box_.Text.load(text.toStdString());
            box_.Change.fire();
        });
        box.onSelectAll = [this] {
            redraw().drawAll();
            widget_.selectAll();
        };
    }
    ~TextBoxAdapter() override { box_.onSelectAll = nullptr; }

  private:
    void drawOwn() override {
        const QSignalBlocker quiet(widget_);
        const QString text = shown(box_.Text);
        if (widget_.text() != text) widget_.setText(text);
        widget_.setBackground(ownColour(box_.BackColor));
        QFont font = widget_.font();
        if (font.italic() != box_.FontItalic) {
            font.setItalic(box_.FontItalic);
            widget_.setFont(font);
        }
    }
    form::TextBox& box_;
    LineEdit& widget_;
};

} // namespace

std::optional<QColor> ownColour(form::Colour colour) {
    if (namesPaletteColour(colour)) return std::nullopt;
    return screenColour(colour, QPalette());
}

CaptionLabel* Adapters::label(form::Label& control, const Words& words, const QString& reserve) {
    auto* widget = new CaptionLabel;
    widget->reserve(reserve);
    add<LabelAdapter>(control, control, *widget, words);
    return widget;
}

CaptionLabel* Adapters::activeLabel(form::Label& control, const Words& words, const QString& reserve) {
    CaptionLabel* widget = label(control, words, reserve);
    widget->setActivated([&control] { control.DblClick.fire(); });
    return widget;
}

Digits* Adapters::digits(form::Label& control, const Words& words, bool opens) {
    auto* widget = new Digits;
    if (opens) widget->setActivated([&control] { control.DblClick.fire(); });
    add<DigitsAdapter>(control, control, *widget, words);
    return widget;
}

LineEdit* Adapters::textBox(form::TextBox& control, const Words& words, const QString& reserve) {
    auto* widget = new LineEdit;
    widget->reserve(reserve);
    add<TextBoxAdapter>(control, control, *widget, words);
    return widget;
}

} // namespace ui
