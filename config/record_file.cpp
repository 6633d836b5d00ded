#include "config/record_file.h"

#include "config/record_table.h"
#include "runtime/errors.h"

#include <algorithm>
#include <iterator>
#include <random>
#include <utility>

namespace config {

namespace {

using Path = std::filesystem::path;

/// Far more than all records need, and still read quickly.
constexpr std::size_t kBytesMax = std::size_t{1} << 20U;
/// A memory card may need seconds for a flush; meanwhile many changes wait in the journal.
constexpr std::size_t kJournalMax = 16 * kBytesMax;

std::string quoted(const Path& path) {
    return "\"" + path.filename().string() + "\"";
}

Path withEnding(Path path, const char* ending) {
    path += ending;
    return path;
}

/// The file that a link of this name leads to: the link stays, and the file is replaced.
Path destination(const Path& file) {
    std::error_code error;
    if (!std::filesystem::is_symlink(file, error)) return file;
    const Path found = std::filesystem::canonical(file, error);
    return error ? file : found;
}

bool areOneFile(const Path& a, const Path& b) {
    std::error_code error;
    return std::filesystem::weakly_canonical(std::filesystem::absolute(a, error), error) ==
           std::filesystem::weakly_canonical(std::filesystem::absolute(b, error), error);
}

void putRecords(std::string& bytes, const std::vector<Record>& records) {
    for (const Record& record : records) {
        const std::size_t offset = static_cast<std::size_t>(record.number - 1) * kRecordLength;
        bytes.resize(std::max(bytes.size(), offset + kRecordLength));
        bytes.replace(offset, kRecordLength, record.bytes.data(), kRecordLength);
    }
}

/// The offset of the first differing byte, and the length up to the last differing byte. `longer` is at least
/// as long as the other text.
std::pair<std::size_t, std::size_t> difference(std::string_view before, std::string_view longer) {
    const auto begin = std::mismatch(before.begin(), before.end(), longer.begin()).second;
    auto end = longer.end();
    if (before.size() == longer.size()) {
        end = std::mismatch(longer.rbegin(), std::make_reverse_iterator(begin), before.rbegin()).first.base();
    }
    return {static_cast<std::size_t>(begin - longer.begin()), static_cast<std::size_t>(end - begin)};
}

} // namespace

RecordFile::RecordFile(platform::Storage& storage, Path path)
    : storage_(storage), path_(std::move(path)), journal_(withEnding(path_, ".journal")),
      kept_(withEnding(path_, ".bak")) {}

RecordImage RecordFile::read() {
    if (state_ == State::Unread) load();
    if (state_ == State::Unreadable)
        throw runtime::FileError(quoted(path_) + " could not be read at the start, so it is not used");
    const std::lock_guard lock(mutex_);
    return RecordImage(held_);
}

std::string RecordFile::bytes() {
    read();
    const std::lock_guard lock(mutex_);
    return held_;
}

void RecordFile::load() {
    state_ = State::Unreadable;
    const std::string left = storage_.read(journal_, kJournalMax).value_or("");
    const Journal journal = decodeJournal(left);
    try {
        onDisk_ = storage_.read(path_, kBytesMax);
    } catch (const runtime::FileError&) {
        // An interrupted Load Config: the whole new file is in the journal.
        if (!journal.holds(path_.filename().string())) throw;
        onDisk_.reset();
        unreadable_ = true;
    }
    if (!onDisk_ && !unreadable_) {
        storage_.create(path_, "");
        onDisk_ = "";
    }
    // Groups behind a damaged one would count again as soon as others fill the gap.
    if (journal.length != 0 && journal.length < left.size())
        storage_.write(journal_, journal.length, std::string(left.size() - journal.length, '\0'));
    state_ = State::Held;
    held_ = onDisk_.value_or("");
    for (const Unit& unit : journal.units)
        apply(unit);
    journalLength_ = journal.length;
    if (journalLength_ != 0) {
        later([this] { flush(); });
    } else { // the journal holds at most an incomplete group
        attempt([this] { storage_.remove(journal_); }, "");
    }
}

void RecordFile::write(const Unit& unit) {
    if (sealed_) return;
    read();
    {
        const std::lock_guard lock(mutex_);
        append(encodeUnit(unit));
        apply(unit);
    }
    later([this] { flush(); });
}

void RecordFile::append(const std::string& group) {
    if (journalLength_ == 0) {
        storage_.remove(journal_);
        storage_.create(journal_, group);
    } else {
        // Overwrites what a failed attempt may have left.
        try {
            storage_.write(journal_, journalLength_, group);
        } catch (const runtime::FileError&) {
            if (!remakeJournal()) throw;
            storage_.write(journal_, journalLength_, group);
        }
    }
    journalLength_ += group.size();
}

bool RecordFile::remakeJournal() {
    if (storage_.read(journal_, kJournalMax)) return false;
    Unit unit;
    for (const auto& [name, bytes] : files_)
        unit.files.push_back({name, bytes});
    unit.files.push_back({path_.filename().string(), held_});
    const std::string group = encodeUnit(unit);
    storage_.create(journal_, group);
    journalLength_ = group.size();
    return true;
}

void RecordFile::syncJournal() {
    try {
        storage_.sync(journal_);
    } catch (const runtime::FileError&) {
        {
            const std::lock_guard lock(mutex_);
            if (!remakeJournal()) throw;
        }
        storage_.sync(journal_);
    }
}

void RecordFile::apply(const Unit& unit) {
    for (const auto& [name, bytes] : unit.files) {
        if (name == path_.filename()) {
            held_ = bytes;
        } else {
            files_[name] = bytes;
        }
    }
    putRecords(held_, unit.records);
}

void RecordFile::later(std::function<void()> job) {
    {
        const std::lock_guard lock(mutex_);
        ++jobs_;
    }
    storage_.later([this, job = std::move(job)] {
        job();
        const std::lock_guard lock(mutex_);
        --jobs_;
    });
    if (onBusy) onBusy();
}

void RecordFile::flush() {
    const Path spent = withEnding(path_, ".part");
    const auto bring = [&] {
        for (;;) {
            std::unique_lock lock(mutex_);
            if (journalLength_ == 0) return;
            const std::string held = held_;
            const auto files = files_;
            const std::size_t length = journalLength_;
            lock.unlock();
            syncJournal();
            if (unreadable_) storage_.rename(path_, kept_);
            unreadable_ = false;
            for (const auto& [name, bytes] : files)
                putWhole(beside(name), bytes);
            putInPlace(held);
            lock.lock();
            // A new change has come meanwhile: keep the journal and repeat.
            if (journalLength_ != length) continue;
            // To remove a file takes long on some cards, and the window must not wait for the lock.
            storage_.rename(journal_, spent);
            journalLength_ = 0;
            files_.clear();
            lock.unlock();
            attempt([&] { storage_.remove(spent); }, "");
            return;
        }
    };
    attempt(bring, ". The changes wait in " + quoted(journal_));
}

void RecordFile::putInPlace(const std::string& bytes) {
    const auto found = storage_.read(path_, kBytesMax);
    const auto known = std::exchange(onDisk_, std::nullopt);
    if (known && found == known && bytes.size() >= known->size()) {
        const auto [first, length] = difference(*known, bytes);
        if (length != 0) storage_.write(path_, first, std::string_view(bytes).substr(first, length));
        storage_.sync(path_);
    } else {
        putWhole(path_, bytes);
        if (known && found != known) {
            tell(quoted(path_) +
                 " was removed or changed by another program. It is written again with the settings in use");
        }
    }
    onDisk_ = bytes;
}

void RecordFile::putWhole(const Path& file, std::string_view bytes) {
    const Path target = destination(file);
    const Path part = withEnding(target, ".part");
    storage_.remove(part);
    storage_.create(part, bytes);
    storage_.sync(part);
    storage_.rename(part, target);
    storage_.sync(target);
}

void RecordFile::finish() {
    storage_.finish();
    flush();
    const std::lock_guard lock(mutex_);
    if (journalLength_ != 0) throw runtime::FileError(std::exchange(notice_, {}));
}

std::string RecordFile::configuration(const Path& source) {
    std::error_code error;
    if (std::filesystem::equivalent(source, path_, error)) return this->bytes();
    auto bytes = waiting(source);
    if (!bytes) bytes = storage_.read(source, kBytesMax);
    if (!bytes) throw runtime::FileError(quoted(source) + " is not there");
    if (const auto fault = configurationFault(*bytes))
        throw runtime::FileError(quoted(source) + " is no configuration: " + *fault);
    return *bytes;
}

std::optional<std::string> RecordFile::waiting(const Path& source) {
    const std::lock_guard lock(mutex_);
    for (const auto& [name, bytes] : files_) {
        if (areOneFile(beside(name), source)) return bytes;
    }
    return std::nullopt;
}

void RecordFile::replaceBy(const std::string& bytes, const std::vector<Unit::Whole>& files) {
    if (sealed_) return;
    if (state_ == State::Unread) read();
    Unit unit;
    if (const auto old = state_ == State::Held ? std::optional(held_) : ifReadable(path_))
        unit.files.push_back({kept_.filename().string(), *old});
    unit.files.push_back({path_.filename().string(), bytes});
    unit.files.insert(unit.files.end(), files.begin(), files.end());
    if (state_ == State::Held) {
        write(unit);
    } else {
        startAnew(unit);
    }
}

std::optional<std::string> RecordFile::ifReadable(const Path& file) {
    try {
        return storage_.read(file, kBytesMax);
    } catch (const runtime::FileError&) {
        return std::nullopt;
    }
}

void RecordFile::startAnew(const Unit& unit) {
    const Path part = withEnding(journal_, ".part");
    storage_.remove(part);
    storage_.create(part, encodeUnit(unit));
    bool exists = true;
    try {
        exists = storage_.read(journal_, kJournalMax).has_value();
    } catch (const runtime::FileError&) { // It is kept for who can read it.
    }
    if (exists) storage_.rename(journal_, withEnding(journal_, ".bak"));
    storage_.rename(part, journal_);
    load();
}

void RecordFile::copyTo(const Path& file, std::vector<Copy> others, const std::string& done) {
    read();
    std::error_code error;
    if (std::filesystem::equivalent(path_, file, error)) return;
    others.push_back({file, held_});
    writeCopies(others, done);
}

void RecordFile::writeCopies(const std::vector<Copy>& copies, const std::string& done) {
    // Any other name may be taken, by the user or by a copy that is on its way.
    const std::string ending = "." + std::to_string(std::random_device()()) + ".part";
    std::vector<std::pair<Path, Path>> moves;
    const auto clear = [this](const auto& left) {
        for (const auto& [part, target] : left)
            attempt([&, &file = part] { storage_.remove(file); }, "");
    };
    try {
        for (const Copy& copy : copies) {
            const Path target = destination(copy.file);
            moves.emplace_back(withEnding(target, ending.c_str()), target);
            storage_.create(moves.back().first, copy.bytes);
        }
    } catch (const runtime::FileError&) {
        clear(moves);
        throw;
    }
    later([this, moves, done, clear] {
        const auto bring = [&] {
            for (const auto& [part, target] : moves)
                storage_.sync(part);
            for (const auto& [part, target] : moves)
                storage_.rename(part, target);
            for (const auto& [part, target] : moves)
                storage_.sync(target);
            if (!done.empty()) tell(done);
        };
        attempt(bring, "");
        clear(moves); // left by a failed attempt
    });
}

void RecordFile::attempt(const std::function<void()>& step, const std::string& otherwise) {
    try {
        step();
    } catch (const runtime::FileError& error) {
        tell(error.what() + otherwise);
    }
}

void RecordFile::tell(const std::string& words) {
    const std::lock_guard lock(mutex_);
    if (notice_.find(words) != std::string::npos) return;
    if (!notice_.empty()) notice_ += ". ";
    notice_ += words;
}

bool RecordFile::busy() {
    const std::lock_guard lock(mutex_);
    return jobs_ != 0;
}

std::string RecordFile::takeNotice() {
    const std::lock_guard lock(mutex_);
    return std::exchange(notice_, {});
}

} // namespace config
