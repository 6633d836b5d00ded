#include "form/notice.h"

namespace form {

Notice::Notice(Form& form, const std::string& name, platform::Timers& timers)
    : Label(form, name), age_(form, name + "Age", timers, kMilliseconds) {
    age_.Tick.attach([this] { stay(""); });
}

void Notice::tell(const std::string& text) {
    stay(text);
    age_.Enabled = true;
}

void Notice::stay(const std::string& text) {
    Caption = text;
    ToolTip = text; // the full text, in case its place is too narrow
    age_.Enabled = false;
}

} // namespace form
