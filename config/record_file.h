#pragma once

#include "config/journal.h"
#include "config/record.h"
#include "platform/storage.h"

#include <functional>
#include <map>
#include <mutex>

namespace config {

/// The random-access file of fixed records, as the program holds it, and its way to the disk. A change is
/// first one group in a journal beside the file, "save.cfg.journal". A thread of the storage brings that to
/// the disk, then writes the file, and removes the journal. A journal that an interrupted program has left is
/// taken up by the next reading, so that each change is on the disk whole or not at all.
class RecordFile {
  public:
    RecordFile(platform::Storage& storage, std::filesystem::path path);
    RecordFile(const RecordFile&) = delete;
    RecordFile& operator=(const RecordFile&) = delete;
    /// Waits for what is on its way.
    ~RecordFile() { storage_.finish(); }

    const std::filesystem::path& path() const { return path_; }

    /// The records as the program holds them; from the disk the first time, where a file that is missing is
    /// created empty. FileError when that failed: nothing is written to such a file.
    RecordImage read();
    /// Returns when the change would survive the end of the program. FileError, and nothing changed, when it
    /// cannot be written.
    void write(std::vector<Record> records) { write(Unit{{}, std::move(records)}); }
    void write(const Unit& unit);
    /// Waits until all is in its place on the disk. FileError when something cannot get there; the journal
    /// keeps it then.
    void finish();

    /// The bytes of another file that is to take the place of this one. FileError when it is none.
    std::string configuration(const std::filesystem::path& source);
    /// Puts them in place of this file, which is kept as "save.cfg.bak".
    void replaceBy(const std::string& bytes);
    /// A copy at `target`; the old file of that name stays until the copy is whole. FileError when it cannot
    /// be written.
    void copyTo(const std::filesystem::path& target);
    /// Nothing is written any more: the program has saved for the last time.
    void seal() { sealed_ = true; }

    /// Told whenever something is on its way to the disk.
    std::function<void()> onBusy;
    /// Whether something still is, and what went wrong meanwhile, once; empty when nothing did.
    bool busy();
    std::string takeNotice();

  private:
    enum class State { Unread, Held, Unreadable };

    void load();
    void append(const std::string& group);
    void apply(const Unit& unit);
    void later(std::function<void()> job);
    void flush();
    void putInPlace(const std::string& bytes);
    void putWhole(const std::filesystem::path& target, std::string_view bytes);
    std::filesystem::path beside(const std::string& name) const { return path_.parent_path() / name; }
    void attempt(const std::function<void()>& step, const std::string& otherwise);
    void tell(const std::string& words);

    platform::Storage& storage_;
    const std::filesystem::path path_, journal_;
    State state_ = State::Unread;
    bool sealed_ = false;

    // What follows is shared with the thread.
    std::mutex mutex_;
    std::string held_;
    std::map<std::string, std::string> files_; // whole files that are in the journal, by their names
    std::size_t journalLength_ = 0;
    int jobs_ = 0;
    std::string notice_;

    // The thread's own, or of who has waited for it: what it last found or put in the file, where that is
    // known.
    std::optional<std::string> onDisk_;
};

} // namespace config
