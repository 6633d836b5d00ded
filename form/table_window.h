#pragma once

#include "form/controls.h"
#include "form/frequency_table.h"

#include <array>
#include <string>
#include <vector>

namespace form {

/// The entries of the frequency table in rows, with an empty row for a new entry behind the last.
class TableGrid : public Control {
  public:
    enum Column { kFrequency, kPositionA, kPositionB, kEndOfStretch };

    TableGrid(Form& form, std::string name) : Control(form, std::move(name)) {}

    Property<FrequencyTable> Entries{*this, {}};
    Property<std::array<std::string, 2>> Engines{*this, {}}; // what the function calls them
    Property<int> Row{*this, -1};                            // the current row, from 0; -1 for none
    std::vector<int> SelectedRows;                           // as the user marked them
    Event<int, int, std::string> Edited{*this}; // row, column, text; the row behind the last makes an entry
    Event<std::string> Pasted{*this};           // rows as text
};

/// "Frequency table": not modal, so that one tunes beside it.
struct FrmHiResMem : Form {
    FrmHiResMem() : Form("frmHiResMem") { Caption = "Frequency Table"; }

    TableGrid grid{*this, "gridHiResMem"};
    Button cmdTableAdd{*this, "cmdTableAdd", "&Add this position"};
    Button cmdTableDelete{*this, "cmdTableDelete", "&Delete"};
    Button cmdTableUndo{*this, "cmdTableUndo", "&Undo"}, cmdTableRedo{*this, "cmdTableRedo", "&Redo"};
    Button cmdTableImport{*this, "cmdTableImport", "&Import…"};
    Button cmdTableExport{*this, "cmdTableExport", "&Export…"};
    Button cmdTableReset{*this, "cmdTableReset", "Re&set"};
    Button cmdTablePicture{*this, "cmdTablePicture", "Save &Picture…"};
    ComboBox cmbTableCurve{*this, "cmbTableCurve", {"Straight lines", "Smooth curve"}}; // a TableCurve
    TextBox txtLeastMove{*this, "txtLeastMove", "1"};                                   // steps
    Label lblTableNotice{*this, "lblTableNotice"}; // what happened last, or why nothing did
};

} // namespace form
