#include "memory/table_window.h"

#include "config/records.h"
#include "form/frequency_source.h"
#include "memory/frequency_table.h"
#include "memory/table_text.h"
#include "runtime/errors.h"
#include "runtime/file_name.h"
#include "runtime/number.h"

#include <algorithm>
#include <utility>

namespace memory {

namespace {

constexpr std::size_t kMostUndone = 100;
constexpr int kMostLeast = 1000;                // steps
constexpr std::size_t kLongestFile = 1'000'000; // bytes
constexpr const char* kTextFiles = "Table (*.txt *.csv)|*.txt *.csv";

std::string megahertzText(double megahertz) {
    return runtime::shortestText(megahertz) + " MHz";
}

/// A position without the digits that a single only seems to have.
double exactly(float position) {
    return runtime::parseNumber(runtime::shortestText(position));
}

} // namespace

TableWindow::TableWindow(form::Form1& main, form::Boxes& boxes, config::RecordFile& file,
                         platform::Storage& storage)
    : main_(main), boxes_(boxes), file_(file), storage_(storage) {
    main_.mnuFileMemHR.Click.attach([this] { mnuFileMemHR_Click(); });
    window_.onError = [this](const std::exception& error) { main_.onError(error); };
    window_.grid.Edited.attach(
        [this](int row, int column, const std::string& text) { edited(row, column, text); });
    window_.grid.Pasted.attach([this](const std::string& text) { pasted(text); });
    window_.cmdTableAdd.Click.attach([this] { cmdTableAdd_Click(); });
    window_.cmdTableDelete.Click.attach([this] { erase(); });
    window_.cmdTableUndo.Click.attach([this] { goBack(undo_, redo_, "Taken back"); });
    window_.cmdTableRedo.Click.attach([this] { goBack(redo_, undo_, "Made again"); });
    window_.cmdTableImport.Click.attach([this] { import(); });
    window_.cmdTableExport.Click.attach([this] { exportTable(); });
    window_.cmdTableReset.Click.attach([this] { reset(); });
    window_.cmbTableCurve.Click.attach([this] { chooseCurve(); });
    window_.txtLeastMove.KeyDown.attach([this](int key) {
        if (key == form::TextBox::kEnter) enterLeastMove();
    });
}

void TableWindow::mnuFileMemHR_Click() {
    show();
    boxes_.showBeside(window_);
}

void TableWindow::loaded() {
    undo_.clear();
    redo_.clear();
    window_.grid.Row.load(-1);
    window_.lblTableNotice.Caption = "";
    show();
}

form::TableEntry TableWindow::newEntry(double megahertz) const {
    return {megahertz, exactly(main_.sngPosA), exactly(main_.sngPosB)};
}

std::string TableWindow::faultOfAdding() const {
    if (main_.intFunzione == form::kSatelliteRotor) return "the table belongs to the tuner functions";
    if (!main_.frequencyNow) return "no frequency is known";
    if (main_.frequencySeconds > kOldestSeconds) {
        return "the frequency is older than " + runtime::shortestText(kOldestSeconds) + " s";
    }
    if (!main_.cmdOff.Enabled) return "an engine runs";
    return faultOfPlace ? faultOfPlace() : std::string();
}

void TableWindow::cmdTableAdd_Click() {
    std::string fault = faultOfAdding();
    if (fault.empty()) {
        const form::TableEntry entry = newEntry(form::megahertzOf(*main_.frequencyNow));
        fault = faultOf(entry);
        if (fault.empty()) {
            Table table = main_.hiResMem;
            const bool replaces = std::ranges::any_of(
                table, [&](const form::TableEntry& old) { return old.megahertz == entry.megahertz; });
            if (!replaces && std::ssize(table) == form::kTableEntriesMax) {
                fault = "the table is full";
            } else {
                const std::size_t row = memory::put(table, entry);
                window_.grid.Row.load(static_cast<int>(row));
                change(table, megahertzText(entry.megahertz) + (replaces ? " replaced" : " added"));
                return;
            }
        }
    }
    say("Not added: " + fault);
}

void TableWindow::edited(int row, int column, const std::string& text) {
    Table table = main_.hiResMem;
    const auto index = static_cast<std::size_t>(row);
    const bool isNew = index >= table.size();
    if (isNew && column != form::TableGrid::kFrequency)
        return say("Enter the frequency of the new entry first");
    try {
        const double value = runtime::parseNumber(text);
        form::TableEntry entry = isNew ? newEntry(value) : table[index];
        switch (column) {
        case form::TableGrid::kFrequency:
            entry.megahertz = value;
            break;
        case form::TableGrid::kPositionA:
            entry.posA = value;
            break;
        case form::TableGrid::kPositionB:
            entry.posB = value;
            break;
        default:
            entry.fourth = value;
            break;
        }
        if (const std::string fault = faultOf(entry); !fault.empty()) return say("Not changed: " + fault);
        if (column == form::TableGrid::kFrequency) {
            if (!isNew) table.erase(table.begin() + row);
            const bool taken = std::ranges::any_of(
                table, [&](const form::TableEntry& other) { return other.megahertz == entry.megahertz; });
            if (taken) return say("There is an entry for " + megahertzText(entry.megahertz) + " already");
            if (std::ssize(table) == form::kTableEntriesMax) return say("Not added: the table is full");
            row = static_cast<int>(memory::put(table, entry));
        } else {
            table[index] = entry;
        }
        window_.grid.Row.load(row);
        change(table, megahertzText(entry.megahertz) + (isNew ? " added" : " changed"));
    } catch (const runtime::RunTimeError&) {
        say("\"" + text + "\" is not a number");
    }
}

void TableWindow::pasted(const std::string& text) {
    try {
        const Table rows = readTable(text);
        if (rows.empty()) return say("Nothing to paste");
        Table table = main_.hiResMem;
        for (const form::TableEntry& row : rows)
            memory::put(table, row);
        change(table, std::to_string(rows.size()) + " entries pasted");
    } catch (const TableTextError& error) {
        say(std::string("Not pasted: ") + error.what());
    } catch (const runtime::SubscriptError&) {
        say("Not pasted: the table would have too many entries");
    }
}

void TableWindow::erase() {
    std::vector<int> rows = window_.grid.SelectedRows;
    std::ranges::sort(rows, std::greater());
    Table table = main_.hiResMem;
    for (const int row : rows) {
        if (row < static_cast<int>(table.size())) table.erase(table.begin() + row);
    }
    const std::size_t gone = main_.hiResMem.size() - table.size();
    if (gone == 0) return say("Mark the rows to delete first");
    window_.grid.Row.load(-1);
    change(table, gone == 1 ? "1 entry deleted" : std::to_string(gone) + " entries deleted");
}

void TableWindow::goBack(std::vector<Table>& from, std::vector<Table>& to, const char* said) {
    if (from.empty()) return;
    Table now = main_.hiResMem;
    if (!put(from.back())) return;
    from.pop_back();
    to.push_back(std::move(now));
    show();
    say(said);
}

std::string TableWindow::readFile(const std::filesystem::path& path) {
    return storage_.read(path, kLongestFile).value_or("");
}

form::FrequencyTable TableWindow::file() {
    try {
        std::string fault;
        Table kept = readKeptTable(readFile(file_.path().parent_path() / kTableFile), fault);
        if (!fault.empty()) notify("Not used of " + std::string(kTableFile) + ": " + fault);
        return kept;
    } catch (const runtime::FileError& error) {
        notify(error.what());
    }
    return {};
}

config::Unit::Whole TableWindow::present() const {
    return {kTableFile, tableText(main_.hiResMem)};
}

config::Unit::Whole TableWindow::replacement(const std::filesystem::path& file) {
    return {kTableFile, readFile(file)};
}

void TableWindow::import() {
    const auto path = boxes_.openFile(kTextFiles);
    if (!path) return;
    try {
        const Table table = readTable(readFile(runtime::pathOf(*path)));
        if (table.empty()) return say("Not imported: the file has no entries");
        change(table, std::to_string(table.size()) + " entries imported");
    } catch (const TableTextError& error) {
        say(std::string("Not imported: ") + error.what());
    } catch (const runtime::FileError& error) {
        say(std::string("Not imported: ") + error.what());
    }
}

void TableWindow::exportTable() {
    const auto path = boxes_.saveFile(kTextFiles);
    if (!path) return;
    try {
        file_.writeCopies({{runtime::pathOf(*path), tableText(main_.hiResMem)}}, "");
        say("Exported to " + *path);
    } catch (const runtime::FileError& error) {
        say(std::string("Not exported: ") + error.what());
    }
}

void TableWindow::reset() {
    if (!main_.hiResMem.empty()) change({}, "The table is empty");
}

void TableWindow::chooseCurve() {
    main_.tuner.curve = static_cast<form::TableCurve>(window_.cmbTableCurve.ListIndex.get());
    if (keepSettings) keepSettings();
}

void TableWindow::enterLeastMove() {
    try {
        const int steps = runtime::parseInt16(window_.txtLeastMove.Text.get()).value();
        if (steps < 0 || steps > kMostLeast) throw runtime::OverflowError();
        main_.tuner.leastMove = steps;
        if (keepSettings) keepSettings();
        say("Moves below " + std::to_string(steps) + " steps are left out");
    } catch (const runtime::RunTimeError&) {
        say("The least move is 0 to " + std::to_string(kMostLeast) + " steps");
    }
    window_.txtLeastMove.Text = std::to_string(main_.tuner.leastMove);
}

bool TableWindow::change(const Table& table, const std::string& what) {
    Table before = main_.hiResMem;
    if (!put(table)) return false;
    undo_.push_back(std::move(before));
    if (undo_.size() > kMostUndone) undo_.erase(undo_.begin());
    redo_.clear();
    show();
    say(what);
    return true;
}

bool TableWindow::put(const Table& table) {
    try {
        config::Unit unit{{{kTableFile, tableText(table)}}, {}};
        unit.records.push_back(
            config::integerRecord(config::record::kTableCount, static_cast<std::int64_t>(table.size())));
        int number = config::record::kTableFirst;
        for (const form::TableEntry& entry : table) {
            for (const std::string& column : recordTexts(entry))
                unit.records.push_back(config::textRecord(number++, column));
        }
        file_.write(unit);
    } catch (const runtime::FileError& error) {
        show();
        say(std::string("Not stored: ") + error.what());
        return false;
    }
    main_.hiResMem = table;
    return true;
}

void TableWindow::show() {
    window_.grid.Entries = main_.hiResMem;
    window_.cmdTableUndo.Enabled = !undo_.empty();
    window_.cmdTableRedo.Enabled = !redo_.empty();
    window_.cmbTableCurve.ListIndex.load(static_cast<int>(main_.tuner.curve));
    window_.txtLeastMove.Text.load(std::to_string(main_.tuner.leastMove));
}

void TableWindow::say(const std::string& what) {
    window_.lblTableNotice.Caption = what;
    if (notify) notify(what);
}

} // namespace memory
