#pragma once

#include "form/control.h"
#include "ui/redraw.h"

#include <QString>
#include <QWidget>
#include <functional>

namespace ui {

/// What an operator is told about a control. "%1" stands for the name of the engine.
struct Words {
    QString name{}; // for a screen reader
    QString tip{};
    QString key{}; // empty where there is none
};

inline QString shown(const std::string& text) {
    return QString::fromStdString(text);
}

/// A tool tip that is never taken for markup, whatever a user has typed into it.
QString plainTip(const QString& text);

/// Joins a control and what stands for it on the screen: the control's changes are drawn, the user's actions
/// become its events.
class Adapter : public form::ControlObserver {
  public:
    Adapter(form::Control& control, Redraw& redraw);
    Adapter(const Adapter&) = delete;
    Adapter& operator=(const Adapter&) = delete;
    ~Adapter() override;

    void changed(form::Control& control) override;
    void focusWanted(form::Control& /*control*/) override {}
    void frontWanted(form::Control& /*control*/) override {}

    void draw();
    /// Runs after each drawing, for what depends on this control and is none itself.
    std::function<void()> onDrawn;

    /// Names the engine in the words of this control.
    void nameEngine(const QString& engine);
    /// Draws again soon; after a user's action this puts back what the control does not confirm.
    void redrawSoon() { changed(control_); }

  protected:
    virtual void drawNow() = 0;
    form::Control& control() const { return control_; }
    Redraw& redraw() const { return redraw_; }
    const QString& engine() const { return engine_; }
    QString complete(const QString& words) const;

  private:
    form::Control& control_;
    Redraw& redraw_;
    QString engine_;
    bool waiting_ = false;
};

/// An adapter whose control is a widget.
class WidgetAdapter : public Adapter {
  public:
    WidgetAdapter(form::Control& control, QWidget& widget, Words words, Redraw& redraw);

    void focusWanted(form::Control& control) override;
    void frontWanted(form::Control& control) override;

  protected:
    void drawNow() override;
    virtual void drawOwn() = 0;

  private:
    void drawWords();

    QWidget& widget_;
    Words words_;
    bool visible_ = true;
    bool wordsDrawn_ = false;
    std::string tipDrawn_;
    QString engineDrawn_;
};

} // namespace ui
