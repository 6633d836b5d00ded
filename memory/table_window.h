#pragma once

#include "config/record_file.h"
#include "form/boxes.h"
#include "form/form1.h"
#include "form/table_window.h"

#include <array>
#include <functional>
#include <string>
#include <vector>

namespace memory {

/// The window in which the frequency table is edited. Each change is on disk before it shows, and can be
/// taken back; a change that cannot be stored is not made.
class TableWindow {
  public:
    static constexpr double kOldestSeconds = 3; // of a frequency that is added

    TableWindow(form::Form1& main, form::Boxes& boxes, config::RecordFile& file, platform::Storage& storage);

    void mnuFileMemHR_Click();
    /// Adds the frequency now with both positions, or replaces the entry of this frequency.
    void cmdTableAdd_Click();
    /// Shows the engines' names as the main window has them.
    void nameEngines() { window_.grid.Engines = {main_.lblEngineA.Caption, main_.lblEngineB.Caption}; }
    /// The table was loaded anew: what was done before can no longer be undone.
    void loaded();

    /// The entries of "HiResMem.txt"; a notice names the first line that is none.
    form::FrequencyTable file();
    /// The table of such a file in the place of "HiResMem.txt"; empty where there is none. Throws
    /// runtime::FileError.
    config::Unit::Whole present() const;
    config::Unit::Whole replacement(const std::filesystem::path& file);

    /// Curve and least move are to be kept.
    std::function<void()> keepSettings;
    /// Why the place of an engine is not to be trusted, in words for the user; empty when all is well.
    std::function<std::string()> faultOfPlace;
    /// Tells in the main window what happened.
    std::function<void(const std::string&)> notify;

    form::FrmHiResMem& window() { return window_; }

  private:
    using Table = form::FrequencyTable;

    void edited(int row, int column, const std::string& text);
    void pasted(const std::string& text);
    void erase();
    /// Takes the latest table of `from`; the present one goes to `to`.
    void goBack(std::vector<Table>& from, std::vector<Table>& to, const char* said);
    void import();
    void exportTable();
    void reset();
    void chooseCurve();
    void enterLeastMove();
    form::TableEntry newEntry(double megahertz) const;
    std::string faultOfAdding() const;
    /// Makes a change that can be undone. False when it could not be stored.
    bool change(const Table& table, const std::string& what);
    std::string readFile(const std::filesystem::path& path);
    /// Stores and shows a table. False, after a notice, when it could not be stored.
    bool put(const Table& table);
    void show();
    void say(const std::string& what);

    form::Form1& main_;
    form::Boxes& boxes_;
    config::RecordFile& file_;
    platform::Storage& storage_;
    form::FrmHiResMem window_;
    std::vector<Table> undo_, redo_; // as the table was; the latest last
};

} // namespace memory
