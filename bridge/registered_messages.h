#pragma once

#include "platform/station_messages.h"
#include "runtime/errors.h"

#include <cstddef>
#include <map>
#include <string>

namespace bridge {

/// The window messages that clients had the system register. The system never forgets one and has room for a
/// few thousand in all programs together, so their number is bounded for the life of the bridge.
class RegisteredMessages {
  public:
    static constexpr std::size_t kMost = 64;
    /// The message that Twinstep needs. It has a reserved place, whatever else was registered.
    static constexpr const char* kReserved = "Logger32";

    explicit RegisteredMessages(platform::StationMessages& station) : station_(station) {}

    /// Throws runtime::ObjectError when there are too many, or when the system refuses the name.
    long idOf(const std::string& name) {
        if (const auto found = ids_.find(name); found != ids_.end()) return found->second;
        if (name != kReserved && ids_.size() - ids_.count(kReserved) >= kMost)
            throw runtime::ObjectError("too many messages were registered");
        return ids_[name] = station_.registerMessage(name);
    }

  private:
    platform::StationMessages& station_;
    std::map<std::string, long> ids_;
};

} // namespace bridge
