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
    ToolTip = text; // whole, where the status bar has too little room
    age_.Enabled = false;
    age_.Enabled = true;
}

} // namespace form
