#include "form/link_label.h"

namespace form {

void LinkLabel::propertyChanged(const void* property) {
    if (property != &LinkMode) return;
    if (LinkMode == kAutomatic) {
        open();
    } else {
        close();
    }
}

void LinkLabel::open() {
    platform::DdeEvents events;
    events.opened = [this] {
        isOpen_ = true;
        LinkOpen.fire();
    };
    events.failed = [this] {
        LinkMode.load(kNone);
        LinkError.fire();
    };
    events.changed = [this](const std::string& text) {
        form().guard([&] {
            if (Caption == text) return;
            Caption = text;
            Change.raise();
        });
    };
    events.closed = [this] {
        // This is a call from the link object, so it cannot be destroyed here. The next open or close
        // destroys it.
        LinkMode.load(kNone);
        ended();
    };
    link_ = links_.open(LinkTopic, LinkItem, std::move(events));
}

void LinkLabel::close() {
    link_.reset();
    ended();
}

void LinkLabel::ended() {
    if (!isOpen_) return;
    isOpen_ = false;
    LinkClose.fire();
}

} // namespace form
