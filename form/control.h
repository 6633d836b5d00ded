#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace form {

class Control;

/// The window's side of a control. At most one observer looks at a control.
class ControlObserver {
  public:
    virtual ~ControlObserver() = default;
    virtual void changed(Control& control) = 0;
    virtual void focusWanted(Control& control) = 0;
    virtual void frontWanted(Control& control) = 0;
};

/// A window or dialog: its controls, and the handler for errors of its event handlers.
class Form {
  public:
    explicit Form(std::string name) : name_(std::move(name)) {}
    Form(const Form&) = delete;
    Form& operator=(const Form&) = delete;
    virtual ~Form() = default;

    const std::string& name() const { return name_; }
    const std::vector<Control*>& controls() const { return controls_; }

    std::string Caption;

    /// Runs `body` as an event from outside: `onError` receives its exceptions.
    void guard(const std::function<void()>& body);
    std::function<void(const std::exception&)> onError;
    /// Called after each event from outside.
    std::function<void()> onEventEnd;

    /// Closes the window or dialog; the window sets `onUnload`.
    void unload();
    std::function<void()> onUnload;
    /// The user leaves the dialog without saving. Set if Cancel does more than unload the dialog.
    void cancel();
    std::function<void()> onCancel;
    void beep();
    std::function<void()> onBeep;

  private:
    friend class Control;
    std::string name_;
    std::vector<Control*> controls_;
};

/// A value of a control. Assigning tells the control and its window, but only when the value really changes.
template <class T>
class Property {
  public:
    explicit Property(Control& owner, T initial = {}) : owner_(owner), value_(std::move(initial)) {}
    Property(const Property&) = delete;
    ~Property() = default;

    /// Raises the event that the control has for it (see each control), as if the user had done it.
    Property& operator=(T value);
    Property& operator=(const Property& other) { return *this = other.value_; }
    /// Assigns without raising an event: for values that are loaded, not chosen.
    void load(T value);

    const T& get() const { return value_; }
    operator const T&() const { return value_; }
    friend bool operator==(const Property& a, const T& b) { return a.value_ == b; }
    friend bool operator==(const Property& a, const Property& b) { return a.value_ == b.value_; }

  private:
    Control& owner_;
    T value_;
};

/// An event of a control. It has one handler, which a subsystem attaches.
template <class... Args>
class Event {
  public:
    explicit Event(Control& owner) : owner_(owner) {}
    Event(const Event&) = delete;
    Event& operator=(const Event&) = delete;
    ~Event() = default;

    void attach(std::function<void(Args...)> handler) { handler_ = std::move(handler); }
    /// From code: runs the handler whether or not the control is enabled or visible; errors reach the caller.
    void raise(Args... args) const {
        if (handler_) handler_(std::forward<Args>(args)...);
    }
    /// From the user or from outside: errors go to the form's error boundary.
    void fire(Args... args) const;

  private:
    Control& owner_;
    std::function<void(Args...)> handler_;
};

class Control {
  public:
    Control(Form& form, std::string name);
    Control(const Control&) = delete;
    Control& operator=(const Control&) = delete;
    virtual ~Control() = default;

    const std::string& name() const { return name_; }
    Form& form() const { return form_; }

    Property<bool> Visible{*this, true};
    Property<bool> Enabled{*this, true};
    Property<std::string> ToolTip{*this};

    void setFocus();
    void bringToFront();

    void observe(ControlObserver* observer) { observer_ = observer; }

  protected:
    /// Called after an assigned property has changed; a control raises its event or acts here.
    virtual void propertyChanged(const void* /*property*/) {}
    ControlObserver* observer() const { return observer_; }

  private:
    template <class T>
    friend class Property;
    void tellObserver() {
        if (observer_) observer_->changed(*this);
    }

    Form& form_;
    std::string name_;
    ControlObserver* observer_ = nullptr;
};

template <class T>
void Property<T>::load(T value) {
    if (value == value_) return;
    value_ = std::move(value);
    owner_.tellObserver();
}

template <class T>
Property<T>& Property<T>::operator=(T value) {
    if (value == value_) return *this;
    value_ = std::move(value);
    owner_.tellObserver();
    owner_.propertyChanged(this);
    return *this;
}

template <class... Args>
void Event<Args...>::fire(Args... args) const {
    owner_.form().guard([&] { raise(std::forward<Args>(args)...); });
}

} // namespace form
