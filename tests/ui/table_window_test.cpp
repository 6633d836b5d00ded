#include "tests/ui/window_fixture.h"
#include "ui/table_plot.h"

#include <QClipboard>
#include <QImage>
#include <QTableWidget>
#include <QWheelEvent>

namespace {

/// The frequency table's window over three entries, in Tune & Load.
class TableWindowTest : public WindowFixture {
  protected:
    void SetUp() override {
        storage.put(folder.path() / "loop.txt", "7 10 90\n7.1 20 80 1\n14 40 60\n");
        WindowFixture::SetUp();
        chooseFunction(form::kTuneAndLoad);
        f().mnuFileMemHR.Click.fire();
        dialogs.fileAnswers = {(folder.path() / "loop.txt").string()};
        click("cmdTableImport");
        ASSERT_EQ(grid().rowCount(), 4); // the last one is empty
    }
    QTableWidget& grid() { return widget<QTableWidget>("gridHiResMem"); }
    ui::TablePlot& plot() { return widget<ui::TablePlot>("tablePlot"); }
    void type(int row, int column, const char* text) {
        grid().item(row, column)->setText(text);
        settle();
    }
    QString cell(int row, int column) { return grid().item(row, column)->text(); }
    QString heads() {
        return grid().horizontalHeaderItem(1)->text() + "|" + grid().horizontalHeaderItem(2)->text();
    }
};

TEST_F(TableWindowTest, NamesTheEnginesAsTheFunctionDoes) {
    EXPECT_EQ(heads(), "Tune|Load");
    chooseFunction(form::kCoilTuner);
    EXPECT_EQ(heads(), "Engine 1|Engine 2");
}

TEST_F(TableWindowTest, IsEditedInPlace) {
    type(0, 1, "12,5");
    EXPECT_EQ(cell(0, 1), "12.5");
    type(0, 1, "far");
    EXPECT_EQ(cell(0, 1), "12.5"); // what is refused goes back
    EXPECT_EQ(text("lblTableNotice"), "\"far\" is not a number");
    type(3, 0, "10.1"); // the empty row takes a new entry, which goes to its place
    EXPECT_EQ(cell(2, 0), "10.1");
    EXPECT_EQ(grid().currentRow(), 2);
    grid().item(0, 3)->setCheckState(Qt::Checked);
    settle();
    EXPECT_TRUE(f().hiResMem.at(0).endsStretch());

    grid().setFocus();
    grid().selectRow(1);
    QTest::keyClick(&grid(), Qt::Key_C, Qt::ControlModifier);
    QTest::keyClick(&grid(), Qt::Key_Delete);
    settle();
    EXPECT_EQ(grid().rowCount(), 4);
    QTest::keyClick(&grid(), Qt::Key_V, Qt::ControlModifier);
    settle();
    EXPECT_EQ(cell(1, 0), "7.1");
    click("cmdTableUndo");
    EXPECT_EQ(cell(1, 0), "10.1");
    click("cmdTableRedo");
    EXPECT_EQ(cell(1, 0), "7.1");
}

TEST_F(TableWindowTest, ThePlotSelectsZoomsAndIsSaved) {
    // The highest frequency stands at the right: somewhere there is its dot.
    for (int y = 0; y < plot().height(); y += 8) {
        for (int x = plot().width() * 3 / 4; x < plot().width(); x += 8)
            QTest::mouseClick(&plot(), Qt::LeftButton, {}, QPoint(x, y));
    }
    settle();
    EXPECT_EQ(grid().currentRow(), 2);
    const QImage all = plot().grab().toImage();
    QWheelEvent turn(QPointF(100, 100), plot().mapToGlobal(QPointF(100, 100)), {}, {0, 600}, Qt::NoButton,
                     Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(&plot(), &turn);
    EXPECT_NE(plot().grab().toImage(), all);
    QTest::mouseDClick(&plot(), Qt::LeftButton, {}, QPoint(100, 100));
    EXPECT_EQ(plot().grab().toImage(), all);
    const QString picture = QString::fromStdString((folder.path() / "loop.png").string());
    dialogs.fileAnswers = {picture.toStdString()};
    click("cmdTablePicture");
    EXPECT_EQ(QImage(picture).size(), plot().size() * plot().devicePixelRatioF());
}

} // namespace
