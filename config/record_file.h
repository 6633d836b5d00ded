#pragma once

#include "config/journal.h"
#include "config/record.h"
#include "platform/storage.h"
#include "runtime/file_name.h"

#include <functional>
#include <map>
#include <mutex>

namespace config {

/// The file of fixed-length records "save.cfg": its content in memory, and its way to the disk. Each change
/// is first appended as one group to the journal "save.cfg.journal". A thread of the storage flushes the
/// journal to the disk, writes the file, and then removes the journal. After an interruption the next start
/// applies the journal, so each change is on the disk completely or not at all.
class RecordFile {
  public:
    RecordFile(platform::Storage& storage, std::filesystem::path path);
    RecordFile(const RecordFile&) = delete;
    RecordFile& operator=(const RecordFile&) = delete;
    /// Waits until all changes have been written.
    ~RecordFile() { storage_.finish(); }

    const std::filesystem::path& path() const { return path_; }

    /// The records in memory. The first call reads the file, and creates an empty file if there is none.
    /// Throws FileError if reading failed; the program never writes to a file that it could not read.
    RecordImage read();
    /// The same, as the file's bytes.
    std::string bytes();
    /// Returns when the change is safe against a crash of the program. Throws FileError if it cannot be
    /// written; nothing has changed then.
    void write(std::vector<Record> records) { write(Unit{{}, std::move(records)}); }
    void write(const Unit& unit);
    /// Waits until all changes are in the file on the disk. Throws FileError if a change cannot be written to
    /// the file; the journal keeps the change then.
    void finish();

    /// The bytes of another configuration file. Throws FileError if the file is no configuration.
    std::string configuration(const std::filesystem::path& source);
    /// Replaces this file by `bytes`, keeps the old file as "save.cfg.bak", and writes `files` beside them.
    void replaceBy(const std::string& bytes, const std::vector<Unit::Whole>& files = {});
    struct Copy {
        std::filesystem::path file;
        std::string bytes;
    };
    /// Copies the file to `file`, with others beside it: all or none. Old ones of these names stay until all
    /// copies are complete; then the notice is `done`. Throws FileError if a copy cannot be written.
    void copyTo(const std::filesystem::path& file, std::vector<Copy> others = {},
                const std::string& done = {});
    void writeCopies(const std::vector<Copy>& copies, const std::string& done);
    /// From now on nothing is written: the program has saved for the last time.
    void seal() { sealed_ = true; }

    /// Called whenever a change starts on its way to the disk.
    std::function<void()> onBusy;
    /// busy(): whether a change is still on its way to the disk. takeNotice(): the last problem, reported
    /// once; empty if there was none.
    bool busy();
    std::string takeNotice();

  private:
    enum class State { Unread, Held, Unreadable };

    void load();
    /// These need the lock, where the thread may run.
    void append(const std::string& group);
    void apply(const Unit& unit);
    /// Puts all that waits in a new journal where somebody has removed it; false when it is there.
    bool remakeJournal();

    void syncJournal();
    /// The bytes of a file beside this one that is still on its way to the disk.
    std::optional<std::string> waiting(const std::filesystem::path& source);
    std::optional<std::string> ifReadable(const std::filesystem::path& file);
    /// Holds the unit in place of what could not be read; a journal is kept as "save.cfg.journal.bak".
    void startAnew(const Unit& unit);
    void later(std::function<void()> job);
    void flush();
    void putInPlace(const std::string& bytes);
    void putWhole(const std::filesystem::path& file, std::string_view bytes);
    std::filesystem::path beside(const std::string& name) const {
        return path_.parent_path() / runtime::pathOf(name);
    }
    void attempt(const std::function<void()>& step, const std::string& otherwise);
    void tell(const std::string& words);

    platform::Storage& storage_;
    const std::filesystem::path path_, journal_, kept_;
    State state_ = State::Unread;
    bool sealed_ = false;

    // Shared with the thread; mutex_ guards the members that follow.
    std::mutex mutex_;
    std::string held_;
    std::map<std::string, std::string> files_; // whole files that are in the journal, by their names
    std::size_t journalLength_ = 0;
    int jobs_ = 0;
    std::string notice_;

    // Used by the thread, or after waiting for the thread: the file's last known content on the disk; empty
    // if unknown.
    std::optional<std::string> onDisk_;
    bool unreadable_ = false; // what the file holds; it becomes "save.cfg.bak" before another takes its place
};

} // namespace config
