#pragma once

#include <functional>
#include <memory>
#include <string>

namespace platform {

/// The events of a link, always on the user-interface thread.
struct DdeEvents {
    std::function<void()> opened;
    /// The server did not answer; the link has ended.
    std::function<void()> failed;
    /// Called with the item's text, after opening and at each change.
    std::function<void(const std::string&)> changed;
    /// The server has ended the link.
    std::function<void()> closed;
};

/// An open link; destroying it ends the link without an event.
class DdeLink {
  public:
    virtual ~DdeLink() = default;
};

/// Automatic (hot) links to items of DDE servers.
class DdeLinks {
  public:
    virtual ~DdeLinks() = default;
    /// `topic` is "application|topic". Never waits: `opened` or `failed` follows within a second, or during
    /// the call.
    virtual std::unique_ptr<DdeLink> open(const std::string& topic, const std::string& item,
                                          DdeEvents events) = 0;
};

} // namespace platform
