#pragma once

#include <QtGlobal>
#include <functional>
#include <string>

/// Messages outside the main window: before the window exists, beside it, and when the display is lost.
namespace ui {

/// Shows a message while the engines run on: the box is not modal. Can be called from any thread.
void notify(const std::string& what);

/// Shows the error in a box: a start from the desktop's menu has no terminal.
void showFailure(int argc, char** argv, const std::string& why);

/// A message handler for the time in which the toolkit looks for a display: without a display the toolkit
/// would print a long text and abort.
void tellOfNoDisplay(QtMsgType type, const QMessageLogContext& context, const QString& text);

/// Runs its function when std::exit ends the program while this object lives. The toolkit calls std::exit
/// when the display is lost. Only one object may exist at a time.
class LastWish {
  public:
    explicit LastWish(std::function<void()> wish);
    LastWish(const LastWish&) = delete;
    LastWish& operator=(const LastWish&) = delete;
    ~LastWish();
};

} // namespace ui
