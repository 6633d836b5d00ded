#pragma once

#include "form/control.h"
#include "ui/redraw.h"

#include <QString>
#include <QWidget>
#include <functional>

namespace ui {

/// The texts that explain a control to the user. "%1" stands for the name of the engine.
struct Words {
    QString name{}; // for a screen reader
    QString tip{};
    QString key{}; // empty if there is none
};

inline QString shown(const std::string& text) {
    return QString::fromStdString(text);
}

/// A tool tip that is never shown as markup, even if it contains user input.
QString plainTip(const QString& text);

/// Connects a control with its widget: draws the control's changes, and turns the user's actions into the
/// control's events.
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
    /// Runs after each drawing, for parts of the window that depend on this control but are not controls.
    std::function<void()> onDrawn;

    /// Sets the engine's name in the texts of this control.
    void nameEngine(const QString& engine);
    /// Draws again soon; after a user's action this undoes what the control has not accepted.
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
