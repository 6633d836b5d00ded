#include "ui/line_edit.h"

#include "ui/caption_label.h"
#include "ui/colours.h"

#include <QGuiApplication>
#include <QKeyEvent>
#include <QMenu>
#include <QPainter>

namespace ui {

namespace {

constexpr int kPadding = 10;
constexpr int kBackspace = 8;

/// The number of a key as handlers know it: the ANSI code of letters, digits and the editing keys; 0 for a
/// key without one.
int keyCode(int key) {
    switch (key) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        return 13;
    case Qt::Key_Escape:
        return 27;
    case Qt::Key_Backspace:
        return kBackspace;
    case Qt::Key_Tab:
    case Qt::Key_Backtab:
        return 9;
    case Qt::Key_PageUp:
        return 33;
    case Qt::Key_PageDown:
        return 34;
    case Qt::Key_End:
        return 35;
    case Qt::Key_Home:
        return 36;
    case Qt::Key_Left:
        return 37;
    case Qt::Key_Up:
        return 38;
    case Qt::Key_Right:
        return 39;
    case Qt::Key_Down:
        return 40;
    case Qt::Key_Insert:
        return 45;
    case Qt::Key_Delete:
        return 46;
    default:
        break;
    }
    const bool letterOrDigit =
        (key >= Qt::Key_A && key <= Qt::Key_Z) || (key >= Qt::Key_0 && key <= Qt::Key_9);
    return letterOrDigit || key == Qt::Key_Space ? key : 0;
}

bool isTyping(const QKeyEvent& event) {
    const auto command = Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier;
    // AltGr arrives as Control and Alt together, with a character.
    const bool altGr = (event.modifiers() & command) == (Qt::ControlModifier | Qt::AltModifier);
    return !event.text().isEmpty() && event.text().front().isPrint() &&
           (altGr || !(event.modifiers() & command));
}

void drawPencil(QPainter& painter, const QRectF& room, const QPalette& palette) {
    const QColor ink = quietText(palette);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(ink, 2.5, Qt::SolidLine, Qt::FlatCap));
    painter.drawLine(room.topRight() + QPointF(-1, 1), room.bottomLeft() + QPointF(3, -3));
    painter.setPen(QPen(ink, 1));
    painter.drawLine(room.bottomLeft() + QPointF(3, -3), room.bottomLeft() + QPointF(0.5, -0.5));
}

} // namespace

LineEdit::LineEdit(QWidget* parent) : QLineEdit(parent) {
    setAcceptDrops(false);
}

void LineEdit::setPencil(bool pencil) {
    if (pencil_ == pencil) return;
    pencil_ = pencil;
    update();
}

void LineEdit::setBackground(std::optional<QColor> background) {
    QPalette own;
    if (background) {
        own.setColor(QPalette::Base, *background);
        own.setColor(QPalette::Text, readableOn(*background));
    }
    setPalette(own);
}

void LineEdit::reserve(const QString& samples) {
    samples_ = samples;
    updateGeometry();
}

QSize LineEdit::sizeHint() const {
    if (samples_.isEmpty()) return QLineEdit::sizeHint();
    return {widest(fontMetrics(), samples_) + 2 * kPadding, QLineEdit::sizeHint().height()};
}

QString LineEdit::accepted(const QString& typed) {
    if (!onCharacter) return typed;
    QString result;
    for (const uint character : typed.toUcs4()) {
        const int code = onCharacter(static_cast<int>(character));
        const auto point = static_cast<char32_t>(code);
        if (code > 0) result += QString::fromUcs4(&point, 1);
    }
    return result;
}

bool LineEdit::event(QEvent* event) {
    if (event->type() == QEvent::MouseButtonDblClick && !isEnabled() && onOpen) {
        onOpen();
        return true;
    }
    // Esc reaches the text box first; the window hears of it afterwards.
    if (event->type() == QEvent::ShortcutOverride &&
        static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape) {
        event->accept();
        return true;
    }
    return QLineEdit::event(event);
}

void LineEdit::changeEvent(QEvent* event) {
    if (event->type() == QEvent::EnabledChange) {
        setCursor(isEnabled() ? Qt::IBeamCursor : Qt::ArrowCursor);
        update();
    }
    QLineEdit::changeEvent(event);
}

void LineEdit::keyPressEvent(QKeyEvent* event) {
    const int key = event->key();
    const int code = keyCode(key);
    if (code != 0 && onKeyDown) onKeyDown(code);
    if (key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Escape) {
        event->ignore(); // for the window: its default button, its Cancel
    } else if (key == Qt::Key_Backspace && event->modifiers() == Qt::NoModifier) {
        if (!onCharacter || onCharacter(kBackspace) == kBackspace) backspace();
    } else if (event->matches(QKeySequence::Paste)) {
        const bool selection = event->modifiers() == (Qt::ControlModifier | Qt::ShiftModifier);
        pasteFrom(selection ? QClipboard::Selection : QClipboard::Clipboard);
    } else if (isTyping(*event)) {
        const QString text = accepted(event->text());
        if (!text.isEmpty()) insert(text);
    } else {
        QLineEdit::keyPressEvent(event);
    }
}

void LineEdit::inputMethodEvent(QInputMethodEvent* event) {
    QInputMethodEvent filtered(event->preeditString(), event->attributes());
    filtered.setCommitString(accepted(event->commitString()), event->replacementStart(),
                             event->replacementLength());
    QLineEdit::inputMethodEvent(&filtered);
}

void LineEdit::mousePressEvent(QMouseEvent* event) {
    if (onMouseDown) onMouseDown();
    QLineEdit::mousePressEvent(event);
}

void LineEdit::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::MiddleButton) {
        QLineEdit::mouseReleaseEvent(event);
        return;
    }
    deselect();
    pasteFrom(QClipboard::Selection);
}

void LineEdit::contextMenuEvent(QContextMenuEvent* event) {
    QMenu* menu = createStandardContextMenu();
    menu->setAttribute(Qt::WA_DeleteOnClose);
    for (QAction* action : menu->actions()) {
        if (!action->text().startsWith(QLineEdit::tr("&Paste"))) continue;
        action->disconnect(SIGNAL(triggered()));
        connect(action, &QAction::triggered, this, [this] { pasteFrom(QClipboard::Clipboard); });
    }
    menu->popup(event->globalPos());
}

void LineEdit::pasteFrom(QClipboard::Mode mode) {
    // Far more than any box takes; a clipboard may hold megabytes.
    constexpr int kLongest = 256;
    const QString pasted = QGuiApplication::clipboard()->text(mode).trimmed().left(kLongest);
    for (const uint character : pasted.toUcs4()) {
        if (!QChar::isPrint(character)) continue;
        const auto point = static_cast<char32_t>(character);
        const QString text = accepted(QString::fromUcs4(&point, 1));
        if (!text.isEmpty()) insert(text);
    }
}

void LineEdit::paintEvent(QPaintEvent* event) {
    if (!quietNow()) {
        QLineEdit::paintEvent(event);
        return;
    }
    QPainter painter(this);
    painter.setPen(palette().color(QPalette::Active, QPalette::WindowText));
    const QRect room = rect().adjusted(kPadding / 2, 0, -1, 0);
    painter.drawText(room, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                     fontMetrics().elidedText(text(), Qt::ElideRight, room.width()));
    if (pencil_) drawPencil(painter, QRectF(width() - kPadding - 2, height() / 2.0 - 5, 10, 10), palette());
}

} // namespace ui
