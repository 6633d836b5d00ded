#include "ui/table_grid.h"

#include "memory/table_text.h"
#include "runtime/number.h"
#include "ui/adapters.h"

#include <QApplication>
#include <QClipboard>
#include <QHeaderView>
#include <QKeyEvent>
#include <QSignalBlocker>

namespace ui {

namespace {

constexpr int kColumns = 4;

QTableWidgetItem* numberItem(const QString& text) {
    auto* item = new QTableWidgetItem(text);
    item->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
    return item;
}

class TableGridAdapter : public WidgetAdapter {
  public:
    TableGridAdapter(form::TableGrid& grid, TableGridView& widget, const Words& words, Redraw& redraw)
        : WidgetAdapter(grid, widget, words, redraw), grid_(grid), widget_(widget) {
        QObject::connect(&widget, &QTableWidget::itemChanged, &widget, [this](const QTableWidgetItem* item) {
            const bool isMark = item->column() == form::TableGrid::kEndOfStretch;
            const std::string text =
                isMark ? (item->checkState() == Qt::Checked ? "1" : "0") : item->text().toStdString();
            const int row = item->row();
            const int column = item->column();
            redrawSoon(); // puts back what the control does not confirm
            grid_.Edited.fire(row, column, text);
        });
    }

  private:
    void drawOwn() override { widget_.draw(); }

    form::TableGrid& grid_;
    TableGridView& widget_;
};

} // namespace

TableGridView::TableGridView(form::TableGrid& grid) : QTableWidget(1, kColumns), grid_(grid) {
    setHorizontalHeaderLabels({"MHz", "", "", "Ends stretch"});
    horizontalHeaderItem(form::TableGrid::kEndOfStretch)
        ->setToolTip("Between this entry and the next one nothing is interpolated.");
    horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    verticalHeader()->setVisible(false);
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setAlternatingRowColors(true);
    setTabKeyNavigation(false);
    connect(this, &QTableWidget::itemSelectionChanged, this, [this] { tellSelection(); });
    connect(this, &QTableWidget::currentCellChanged, this, [this](int row) { grid_.Row.load(row); });
}

void TableGridView::draw() {
    const QSignalBlocker quiet(this);
    const form::FrequencyTable& entries = grid_.Entries;
    const int row = grid_.Row;
    horizontalHeaderItem(form::TableGrid::kPositionA)->setText(shown(grid_.Engines.get()[0]));
    horizontalHeaderItem(form::TableGrid::kPositionB)->setText(shown(grid_.Engines.get()[1]));
    const int last = static_cast<int>(entries.size());
    setRowCount(last + 1);
    for (int i = 0; i < last; ++i)
        showRow(i, &entries[static_cast<std::size_t>(i)]);
    showRow(last, nullptr);
    if (row >= 0 && row <= last && row != currentRow()) {
        setCurrentCell(row, std::max(currentColumn(), 0));
        tellSelection();
    }
}

void TableGridView::showRow(int row, const form::TableEntry* entry) {
    const auto number = [entry](double form::TableEntry::*value) {
        return entry ? shown(runtime::shortestText(entry->*value)) : QString();
    };
    setItem(row, form::TableGrid::kFrequency, numberItem(number(&form::TableEntry::megahertz)));
    setItem(row, form::TableGrid::kPositionA, numberItem(number(&form::TableEntry::posA)));
    setItem(row, form::TableGrid::kPositionB, numberItem(number(&form::TableEntry::posB)));
    auto* mark = new QTableWidgetItem;
    mark->setFlags(entry ? Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable
                         : Qt::ItemIsSelectable);
    if (entry) mark->setCheckState(entry->endsStretch() ? Qt::Checked : Qt::Unchecked);
    setItem(row, form::TableGrid::kEndOfStretch, mark);
}

void TableGridView::tellSelection() {
    grid_.SelectedRows.clear();
    for (const QModelIndex& index : selectionModel()->selectedRows())
        grid_.SelectedRows.push_back(index.row());
}

void TableGridView::copy() {
    form::FrequencyTable marked;
    const form::FrequencyTable& entries = grid_.Entries;
    for (const int row : grid_.SelectedRows) {
        if (row < static_cast<int>(entries.size())) marked.push_back(entries[static_cast<std::size_t>(row)]);
    }
    if (!marked.empty()) QApplication::clipboard()->setText(shown(memory::tableText(marked)));
}

void TableGridView::keyPressEvent(QKeyEvent* event) {
    if (event->matches(QKeySequence::Copy)) {
        copy();
    } else if (event->matches(QKeySequence::Paste)) {
        grid_.Pasted.fire(QApplication::clipboard()->text().toStdString());
    } else {
        QTableWidget::keyPressEvent(event);
    }
}

TableGridView* Adapters::tableGrid(form::TableGrid& control, const Words& words) {
    auto* widget = new TableGridView(control);
    add<TableGridAdapter>(control, control, *widget, words);
    return widget;
}

} // namespace ui
