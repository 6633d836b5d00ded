#pragma once

#include <QClipboard>
#include <QLineEdit>
#include <functional>
#include <optional>

namespace ui {

/// A text box whose owner sees every key first, and every character however it comes: typed, pasted or from
/// an input method. While disabled it looks like plain text.
class LineEdit : public QLineEdit {
  public:
    explicit LineEdit(QWidget* parent = nullptr);

    /// A key goes down, as a virtual-key number.
    std::function<void(int keyCode)> onKeyDown;
    /// A character would be inserted (8: removed); returns what to insert, 0 for nothing.
    std::function<int(int characterCode)> onCharacter;
    std::function<void()> onMouseDown;
    /// A double-click while disabled.
    std::function<void()> onOpen;

    /// Text that is not being edited is shown without a frame.
    void setQuiet(bool quiet) { quiet_ = quiet; }
    /// While it is quiet: a pencil shows that it can be edited.
    void setPencil(bool pencil);
    void setBackground(std::optional<QColor> background);
    void reserve(const QString& samples);
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

  protected:
    bool event(QEvent* event) override;
    void changeEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void inputMethodEvent(QInputMethodEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

  private:
    QString accepted(const QString& typed);
    void pasteFrom(QClipboard::Mode mode);
    bool quietNow() const { return quiet_ && !isEnabled(); }

    bool quiet_ = false;
    bool pencil_ = false;
    QString samples_;
};

} // namespace ui
