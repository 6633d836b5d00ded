#pragma once

#include "form/controls.h"
#include "platform/dde_links.h"

namespace form {

/// A label that can be linked to an item of a DDE server. Setting LinkMode to kAutomatic asks for the link,
/// to kNone ends it.
class LinkLabel : public Label {
  public:
    static constexpr int kNone = 0;
    static constexpr int kAutomatic = 1;

    LinkLabel(Form& form, std::string name, platform::DdeLinks& links)
        : Label(form, std::move(name)), links_(links) {}

    bool isOpen() const { return isOpen_; }

    std::string LinkTopic; // "application|topic"
    std::string LinkItem;
    Property<int> LinkMode{*this, kNone};
    Event<> LinkOpen{*this};
    Event<> LinkClose{*this}; // an open link has ended, from either side
    Event<> LinkError{*this}; // the server did not answer; LinkMode is kNone again
    Event<> Change{*this};    // the link has brought another text

  protected:
    void propertyChanged(const void* property) override;

  private:
    void open();
    void close();
    void ended();

    platform::DdeLinks& links_;
    std::unique_ptr<platform::DdeLink> link_;
    bool isOpen_ = false;
};

} // namespace form
