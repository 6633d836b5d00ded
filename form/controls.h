#pragma once

#include "form/colours.h"
#include "form/control.h"

#include <array>
#include <memory>
#include <string>
#include <vector>

/// The kinds of controls. They do only what the comments here say.
namespace form {

class Label : public Control {
  public:
    Label(Form& form, std::string name, std::string caption = {})
        : Control(form, std::move(name)), Caption(*this, std::move(caption)) {}

    Property<std::string> Caption;
    Property<Colour> ForeColor{*this, kWindowText};
    Property<Colour> BackColor{*this, kWindowBackground};
    Event<> DblClick{*this};
};

class Button : public Control {
  public:
    Button(Form& form, std::string name, std::string caption = {})
        : Control(form, std::move(name)), Caption(*this, std::move(caption)) {}

    Property<std::string> Caption;
    Property<Colour> BackColor{*this, kButtonFace};
    Event<> Click{*this};
    Event<> MouseDown{*this}; // a user's press, by mouse or key
    Event<> MouseUp{*this};
};

/// Value is 0 or 1; a change from code raises Click, as the user's click does.
class CheckBox : public Control {
  public:
    CheckBox(Form& form, std::string name, std::string caption = {})
        : Control(form, std::move(name)), Caption(*this, std::move(caption)) {}

    Property<std::string> Caption;
    Property<int> Value{*this, 0};
    Property<Colour> BackColor{*this, kButtonFace};
    Event<> Click{*this};
    Event<> MouseDown{*this}; // a user's press, before the value changes

    bool ticked() const { return Value == 1; }
    /// What a user's click does: MouseDown, then the value changes over.
    void userClick();

  protected:
    void propertyChanged(const void* property) override {
        if (property == &Value) Click.raise();
    }
};

/// An option of a group. At most one option is selected; the group's owner clears the others. Setting Value
/// to true raises Click.
class OptionButton : public Control {
  public:
    OptionButton(Form& form, std::string name, std::string caption = {})
        : Control(form, std::move(name)), Caption(*this, std::move(caption)) {}

    Property<std::string> Caption;
    Property<bool> Value{*this, false};
    Event<> Click{*this};

    /// What a user's click does: selects, and raises Click even when it was selected already.
    void userClick();

  protected:
    void propertyChanged(const void* property) override {
        if (property == &Value && Value) Click.raise();
    }
};

/// A change of Value from code raises Change, as the user's scrolling does. A value outside Min to Max
/// becomes the nearer limit.
class ScrollBar : public Control {
  public:
    struct Range {
        int min;
        int max;
        int smallChange = 1;
        int largeChange = 10;
    };
    ScrollBar(Form& form, std::string name, Range limits)
        : Control(form, std::move(name)), Limits(limits), Value(*this, limits.min) {}

    const Range Limits;
    /// Assign through set and load, which keep it in range.
    Property<int> Value;
    Event<> Change{*this};

    void set(int value) { Value = inRange(value); }
    void load(int value) { Value.load(inRange(value)); }
    void userScroll(int value);

  protected:
    void propertyChanged(const void* property) override {
        if (property == &Value) Change.raise();
    }

  private:
    int inRange(int value) const;
};

class TextBox : public Control {
  public:
    TextBox(Form& form, std::string name, std::string text = {})
        : Control(form, std::move(name)), Text(*this, std::move(text)) {}

    static constexpr int kEnter = 13;
    static constexpr int kEscape = 27;
    static constexpr int kBackspace = 8;

    Property<std::string> Text;
    Property<Colour> BackColor{*this, kWindowBackground};
    Property<bool> FontItalic{*this, false};
    int MaxLength = 0;           // characters that can be typed; 0 for any number
    Event<int> KeyDown{*this};   // a key code: kEnter, kEscape
    Event<int&> KeyPress{*this}; // a character code, set to 0 to discard it
    Event<> Change{*this};       // the user has changed the text
    Event<> MouseDown{*this};

    /// A printable character or Backspace from the user; returns the code to insert, 0 for none.
    int press(int characterCode);
    /// Marks the whole text, so that the next character replaces it.
    void selectAll();
    std::function<void()> onSelectAll;
};

class ComboBox : public Control {
  public:
    ComboBox(Form& form, std::string name, std::vector<std::string> list)
        : Control(form, std::move(name)), List(std::move(list)) {}

    const std::vector<std::string> List;
    Property<int> ListIndex{*this, 0};
    Event<> Click{*this}; // the user chose an entry; ListIndex holds it
};

class Frame : public Control {
  public:
    Frame(Form& form, std::string name, std::string caption = {})
        : Control(form, std::move(name)), Caption(*this, std::move(caption)) {}

    Property<std::string> Caption;
};

class Shape : public Control {
  public:
    using Control::Control;
    Property<Colour> FillColor{*this, kBlack};
};

/// A thin bar: how much of a way is done.
class Bar : public Control {
  public:
    using Control::Control;
    Property<int> Value{*this, 0}; // per cent
};

class Menu : public Control {
  public:
    Menu(Form& form, std::string name, std::string caption)
        : Control(form, std::move(name)), Caption(*this, std::move(caption)) {}

    Property<std::string> Caption; // with its mnemonic: "E&xit"
    Property<bool> Checked{*this, false};
    Event<> Click{*this};
};

/// Panels are numbered from 1.
class StatusBar : public Control {
  public:
    static constexpr int kPanels = 6;
    using Control::Control;

    Property<std::string>& Panels(int number) { return *panels_.at(static_cast<std::size_t>(number - 1)); }

  private:
    Property<std::string> one_{*this}, two_{*this}, three_{*this}, four_{*this}, five_{*this}, six_{*this};
    const std::array<Property<std::string>*, kPanels> panels_{&one_, &two_, &three_, &four_, &five_, &six_};
};

/// `kCount` controls of a kind, numbered from 1 and named `prefix` and number.
template <class ControlKind, int kCount>
class ControlArray {
  public:
    ControlArray(Form& form, const std::string& prefix) {
        for (int n = 1; n <= kCount; ++n) {
            controls_.push_back(std::make_unique<ControlKind>(form, prefix + std::to_string(n)));
        }
    }
    ControlKind& operator[](int number) { return *controls_.at(static_cast<std::size_t>(number - 1)); }

  private:
    std::vector<std::unique_ptr<ControlKind>> controls_;
};

} // namespace form
