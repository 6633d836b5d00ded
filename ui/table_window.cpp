#include "ui/table_window.h"

#include "ui/card.h"
#include "ui/table_grid.h"
#include "ui/table_plot.h"

#include <QPixmap>
#include <QShortcut>

namespace ui {

namespace {

constexpr const char* kPictures = "Picture (*.png)|*.png";

void savePicture(TablePlot& plot, form::Boxes& boxes) {
    const auto path = boxes.saveFile(kPictures);
    if (!path) return;
    if (!plot.grab().save(shown(*path), "PNG")) {
        boxes.critical("\"" + *path + "\" cannot be written.", "Error!");
    }
}

QHBoxLayout* editing(form::FrmHiResMem& form, Adapters& adapters) {
    QHBoxLayout* line = row();
    line->addWidget(adapters.button(
        form.cmdTableAdd,
        {"Add this position",
         "Adds the frequency now with both positions, or replaces the entry of this frequency.",
         "Insert, in the main window too"}));
    line->addWidget(adapters.button(form.cmdTableDelete, {"Delete", "Deletes the marked rows.", "Delete"}));
    line->addStretch(1);
    line->addWidget(adapters.button(form.cmdTableUndo, {"Undo", "Takes the last change back.", "Ctrl+Z"}));
    line->addWidget(adapters.button(form.cmdTableRedo, {"Redo", "Makes the change again.", "Ctrl+Shift+Z"}));
    return line;
}

QHBoxLayout* files(form::FrmHiResMem& form, Adapters& adapters) {
    QHBoxLayout* line = row();
    line->addWidget(
        adapters.button(form.cmdTableImport,
                        {"Import", "Replaces the table by a text file or a spreadsheet's export.", "Alt+I"}));
    line->addWidget(
        adapters.button(form.cmdTableExport, {"Export", "Writes the table to a text file.", "Alt+E"}));
    line->addStretch(1);
    line->addWidget(adapters.button(form.cmdTableReset, {"Reset", "Empties the table.", "Alt+S"}));
    return line;
}

QHBoxLayout* plotLine(form::FrmHiResMem& form, Adapters& adapters) {
    const QString curve = "How positions run between two entries.";
    const QString least = "A recall leaves out moves of an engine by fewer steps than this.";
    QHBoxLayout* line = row();
    line->addWidget(adapters.comboBox(form.cmbTableCurve, {"Curve", curve}));
    line->addSpacing(kGrid);
    line->addWidget(fixedText("Least move", least));
    line->addWidget(adapters.textBox(form.txtLeastMove, {"Least move in steps", least, "Enter"}, "0000"));
    line->addWidget(fixedText("steps", least));
    line->addStretch(1);
    line->addWidget(
        adapters.button(form.cmdTablePicture, {"Save picture", "Saves the plot as PNG.", "Alt+P"}));
    return line;
}

} // namespace

void layOut(Dialog& window, form::FrmHiResMem& form, const form::Form1& main, form::Boxes& boxes) {
    Adapters& adapters = window.adapters();
    auto* left = new Card("Entries", "Where both engines stand at each frequency.");
    TableGridView* grid = adapters.tableGrid(
        form.grid,
        {"Entries", "Frequency, positions of both engines, and where a stretch ends. The empty row "
                    "takes a new entry."});
    left->body().addWidget(grid, 1);
    left->body().addLayout(editing(form, adapters));
    left->body().addLayout(files(form, adapters));

    auto* right =
        new Card("Positions over frequency",
                 "Dots are entries, dashed lines the frequency now and where the engines stand. Turn "
                 "the wheel to zoom, double-click to see all.");
    auto* plot = new TablePlot(main, form);
    plot->setObjectName("tablePlot");
    plot->setAccessibleName("Positions over frequency");
    plot->setToolTip(right->toolTip());
    right->body().addWidget(plot, 1);
    right->body().addLayout(plotLine(form, adapters));
    form.cmdTablePicture.Click.attach([plot, &boxes] { savePicture(*plot, boxes); });

    auto* all = new QVBoxLayout(&window);
    all->setContentsMargins(2 * kGrid, 2 * kGrid, 2 * kGrid, kGrid);
    auto* cards = row();
    cards->addWidget(left, 2);
    cards->addWidget(right, 3);
    all->addLayout(cards, 1);
    CaptionLabel* notice = adapters.label(
        form.lblTableNotice, {"What happened last", "What happened last, or why nothing did."}, "Notice");
    notice->setTone(CaptionLabel::Tone::Quiet);
    all->addWidget(notice);
    window.resize(1060, 560);
    // Enter confirms an entry, and presses nothing.
    for (QPushButton* button : window.findChildren<QPushButton*>())
        button->setAutoDefault(false);

    const auto key = [&window](const QKeySequence& keys, QWidget* where, form::Button& button) {
        auto* shortcut = new QShortcut(keys, where, nullptr, nullptr,
                                       where == &window ? Qt::WindowShortcut : Qt::WidgetShortcut);
        QObject::connect(shortcut, &QShortcut::activated, &window, [&button] { button.Click.fire(); });
    };
    key(Qt::Key_Insert, &window, form.cmdTableAdd);
    key(QKeySequence::Undo, &window, form.cmdTableUndo);
    key(QKeySequence::Redo, &window, form.cmdTableRedo);
    key(Qt::Key_Delete, grid, form.cmdTableDelete);
}

} // namespace ui
