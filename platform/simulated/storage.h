#pragma once

#include "platform/storage.h"

#include <deque>
#include <map>
#include <memory>

namespace simulated {

/// Files in memory, with every kind of storage fault.
class Storage : public platform::Storage {
  public:
    enum class Fault {
        Error,        // the call does nothing and fails
        Short,        // a write gets as far as half and fails, as on a full disk; any other call: Error
        Kill,         // neither this call nor any later call happens, and none reports an error
        KillHalf,     // a write gets as far as half before that
        PowerCut,     // as Kill, and what was not synced is gone
        PowerCutNamed // as PowerCut, but new names had reached the disk before what the files hold
    };

    std::optional<std::string> read(const Path& file, std::size_t limit) override;
    void create(const Path& file, std::string_view bytes) override;
    void write(const Path& file, std::size_t offset, std::string_view bytes) override;
    void sync(const Path& file) override;
    void rename(const Path& from, const Path& to) override;
    void remove(const Path& file) override;
    void later(std::function<void()> job) override;
    void finish() override;

    /// The call of this number from now on, from 0, of those that change something, and of syncs.
    void failAt(int call, Fault fault);
    /// So many changing calls were made.
    int calls() const { return calls_; }
    /// Restarts the computer: removes all faults.
    void restart();
    bool dead() const { return dead_; }
    /// Jobs wait for finish, as those of a thread may do.
    bool holdsJobs = false;
    /// This file cannot be read: an input error.
    void breakReading(const Path& file) { unreadable_ = file; }

    /// Another program at work.
    void put(const Path& file, const std::string& bytes);
    std::string bytesOf(const Path& file);
    bool exists(const Path& file) const { return names_.contains(file); }
    void take(const Path& file) { names_.erase(file); }

  private:
    struct File {
        std::string now, synced;
    };
    using Names = std::map<Path, std::shared_ptr<File>>;

    /// Counts the call; returns false if the call does not happen. `part` is the length of a write; it is set
    /// to the part that happens.
    bool happens(const Path& file, std::size_t* part = nullptr);

    Names names_, syncedNames_;
    std::deque<std::function<void()>> jobs_;
    int calls_ = 0, failing_ = -1;
    Fault fault_ = Fault::Error;
    bool dead_ = false;
    Path unreadable_;
};

} // namespace simulated
