#pragma once

#include "form/table_window.h"

#include <QTableWidget>

namespace ui {

/// The rows of a frequency table, to be edited in place; the last, empty one takes a new entry. It shows what
/// its control holds: what the user types goes there first.
class TableGridView : public QTableWidget {
  public:
    explicit TableGridView(form::TableGrid& grid);

    /// Shows entries and current row as the control has them.
    void show(const form::FrequencyTable& entries, int row);

  protected:
    void keyPressEvent(QKeyEvent* event) override;

  private:
    void showRow(int row, const form::TableEntry* entry);
    void copy();
    void tellSelection();

    form::TableGrid& grid_;
};

} // namespace ui
