#pragma once

#include <QtGlobal>
#include <functional>
#include <string>

/// What the program says and does outside its window: before it stands, beside it, and when the display goes.
namespace ui {

/// Says what the user must know, beside the engines that go on: the box is not modal. From any thread.
void notify(const std::string& what);

/// A start from the desktop's menu has no terminal to say why it failed.
void showFailure(int argc, char** argv, const std::string& why);

/// A message handler for the time in which the toolkit looks for a display: it would end the program with a
/// screenful and an abort.
void tellOfNoDisplay(QtMsgType type, const QMessageLogContext& context, const QString& text);

/// Runs when something ends the program by std::exit while this object lives, as the toolkit does when the
/// display goes away. One object at a time.
class LastWish {
  public:
    explicit LastWish(std::function<void()> wish);
    LastWish(const LastWish&) = delete;
    LastWish& operator=(const LastWish&) = delete;
    ~LastWish();
};

} // namespace ui
