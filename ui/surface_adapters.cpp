#include "ui/adapters.h"

namespace ui {

namespace {

class LampAdapter : public WidgetAdapter {
  public:
    LampAdapter(form::Shape& shape, Lamp& widget, const Words& words, Redraw& redraw)
        : WidgetAdapter(shape, widget, words, redraw), shape_(shape), widget_(widget) {}

  private:
    void drawOwn() override { widget_.setColour(screenColour(shape_.FillColor, widget_.palette())); }
    form::Shape& shape_;
    Lamp& widget_;
};

class BarAdapter : public WidgetAdapter {
  public:
    BarAdapter(form::Bar& bar, ThinBar& widget, const Words& words, Redraw& redraw)
        : WidgetAdapter(bar, widget, words, redraw), bar_(bar), widget_(widget) {}

  private:
    void drawOwn() override { widget_.setShare(bar_.Value / 100.0); }
    form::Bar& bar_;
    ThinBar& widget_;
};

class DisplayAdapter : public WidgetAdapter {
  public:
    DisplayAdapter(form::Shape& shape, Display& widget, const Words& words, Redraw& redraw)
        : WidgetAdapter(shape, widget, words, redraw), shape_(shape), widget_(widget) {}

  private:
    void drawOwn() override { widget_.setFill(screenColour(shape_.FillColor, widget_.palette())); }
    form::Shape& shape_;
    Display& widget_;
};

/// A group's own look is the layout's; its control shows and hides it.
class FrameAdapter : public WidgetAdapter {
  public:
    FrameAdapter(form::Frame& frame, QWidget& widget, Redraw& redraw)
        : WidgetAdapter(frame, widget, {widget.accessibleName(), widget.toolTip(), {}}, redraw) {}

  private:
    void drawOwn() override {}
};

class StatusBarAdapter : public WidgetAdapter {
  public:
    StatusBarAdapter(form::StatusBar& bar, QWidget& widget, std::vector<CaptionLabel*> panels, Redraw& redraw)
        : WidgetAdapter(bar, widget, {QStringLiteral("Status"), {}, {}}, redraw), bar_(bar),
          panels_(std::move(panels)) {}

  private:
    void drawOwn() override {
        int number = 1;
        for (CaptionLabel* panel : panels_) {
            const QString text = shown(bar_.Panels(number++));
            if (panel->text() != text) panel->setText(text);
        }
    }
    form::StatusBar& bar_;
    std::vector<CaptionLabel*> panels_;
};

} // namespace

Lamp* Adapters::lamp(form::Shape& control, const Words& words) {
    auto* widget = new Lamp;
    add<LampAdapter>(control, control, *widget, words);
    return widget;
}

ThinBar* Adapters::bar(form::Bar& control, const Words& words, ThinBar* widget) {
    if (!widget) widget = new ThinBar;
    add<BarAdapter>(control, control, *widget, words);
    return widget;
}

void Adapters::display(form::Shape& control, Display& widget, const Words& words) {
    add<DisplayAdapter>(control, control, widget, words);
}

void Adapters::frame(form::Frame& control, QWidget& widget) {
    add<FrameAdapter>(control, control, widget);
}

void Adapters::statusBar(form::StatusBar& control, QWidget& widget,
                         const std::vector<CaptionLabel*>& panels) {
    add<StatusBarAdapter>(control, control, widget, panels);
}

void Adapters::redrawAll() {
    for (const auto& adapter : all_) {
        adapter->redrawSoon();
    }
}

} // namespace ui
