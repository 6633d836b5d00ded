#pragma once

#include "form/table_window.h"

#include <QTableWidget>

namespace ui {

/// The rows of a frequency table, to be edited in place; the last, empty one takes a new entry. It shows what
/// its control holds: what the user types goes there first.
class TableGridView : public QTableWidget {
  public:
    explicit TableGridView(form::TableGrid& grid);

    /// Shows entries, current row and the engines' names as the control has them.
    void draw();

  protected:
    void keyPressEvent(QKeyEvent* event) override;

  private:
    void showRow(int row, const form::TableEntry* entry);
    void copy();
    void tellSelection();

    form::TableGrid& grid_;
};

} // namespace ui
