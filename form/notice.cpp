#include "form/notice.h"

namespace form {

Notice::Notice(Form& form, const std::string& name, platform::Timers& timers)
    : Label(form, name), age_(form, name + "Age", timers, kMilliseconds) {
    age_.Tick.attach([this] {
        age_.Enabled = false;
        Caption = "";
        ToolTip = "";
    });
}

void Notice::tell(const std::string& text) {
    Caption = text;
    ToolTip = text; // the full text, in case the status bar is too narrow
    age_.Enabled = false;
    age_.Enabled = true;
}

} // namespace form
