#include "ui/adapter.h"

#include <QApplication>
#include <QStackedLayout>
#include <QTextDocument>

namespace ui {

QString plainTip(const QString& text) {
    return Qt::mightBeRichText(text) ? Qt::convertFromPlainText(text, Qt::WhiteSpaceNormal) : text;
}

Adapter::Adapter(form::Control& control, Redraw& redraw) : control_(control), redraw_(redraw) {
    control_.observe(this);
    redrawSoon();
}

Adapter::~Adapter() {
    control_.observe(nullptr);
    redraw_.forget(*this);
}

void Adapter::changed(form::Control& /*control*/) {
    if (std::exchange(waiting_, true)) return;
    redraw_.mark(*this);
}

void Adapter::draw() {
    waiting_ = false;
    drawNow();
    if (onDrawn) onDrawn();
}

void Adapter::nameEngine(const QString& engine) {
    if (engine_ == engine) return;
    engine_ = engine;
    redrawSoon();
}

QString Adapter::complete(const QString& words) const {
    return words.contains(QStringLiteral("%1")) ? words.arg(engine_) : words;
}

WidgetAdapter::WidgetAdapter(form::Control& control, QWidget& widget, Words words, Redraw& redraw)
    : Adapter(control, redraw), widget_(widget), words_(std::move(words)) {
    widget_.setObjectName(shown(control.name()));
}

void WidgetAdapter::focusWanted(form::Control& /*control*/) {
    // A window behind a dialog keeps its focus, and shows what it shows.
    const QWidget* dialog = QApplication::activeModalWidget();
    if (dialog && widget_.window() != dialog) return;
    // The control may just have been enabled: its widget can take the focus only after the widget is enabled
    // too.
    redraw().drawAll();
    widget_.setFocus(Qt::OtherFocusReason);
}

void WidgetAdapter::frontWanted(form::Control& /*control*/) {
    QWidget* parent = widget_.parentWidget();
    // In a pile, only the front widget is visible: labels are transparent.
    if (auto* pile = parent ? qobject_cast<QStackedLayout*>(parent->layout()) : nullptr) {
        pile->setCurrentWidget(&widget_);
    } else {
        widget_.raise();
    }
}

void WidgetAdapter::drawNow() {
    // Passes on only changes: the pile shows and hides its own widgets.
    if (visible_ != control().Visible) widget_.setVisible(visible_ = control().Visible);
    widget_.setEnabled(control().Enabled);
    drawOwn();
    drawWords();
}

void WidgetAdapter::drawWords() {
    // The texts rarely change, and a step draws only lamps and digits.
    const std::string& ownTip = control().ToolTip;
    if (wordsDrawn_ && ownTip == tipDrawn_ && engine() == engineDrawn_) return;
    wordsDrawn_ = true;
    tipDrawn_ = ownTip;
    engineDrawn_ = engine();
    QString tip = ownTip.empty() ? complete(words_.tip) : shown(ownTip);
    if (ownTip.empty() && !words_.key.isEmpty()) tip += QStringLiteral("\nKey: ") + words_.key;
    widget_.setToolTip(plainTip(tip));
    widget_.setAccessibleName(complete(words_.name));
}

} // namespace ui
