// The tables window's in-place editing and sails list, driven by keys and clicks.

#include "performance/window/tables_window.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QLineEdit>
#include <QListWidget>
#include <QTableWidget>
#include <QTest>
#include <QTimer>

#include "base/file_system.h"
#include "performance/polar_file_reader.h"

namespace wakeline {
namespace {

// The fixture's current sail is the Jib: columns 52 and 90; rows 8 kt (TWA_min 42: 4.5, 5.0,
// 5.8) and 16 kt (38: 5.6, 6.3, 7.1).
PerformanceTables Fixture() {
    PerformanceTables tables;
    const StdFileSystem files;
    ReadPolarFile(files, WAKELINE_TEST_DATA "/polar_file/WakelinePolar.txt", tables);
    return tables;
}

struct Tables {
    Tables() { window.show(); }
    QString Cell(int row, int column) { return polar->item(row, column)->text(); }
    void Key(int row, int column, int key) {
        polar->setCurrentCell(row, column);
        QTest::keyClick(polar, static_cast<Qt::Key>(key));
    }

    PerformanceTables tables = Fixture();
    TablesEditor editor{tables};
    TablesWindow window{editor};
    QTableWidget* polar = window.Grid(TablesGrid::Polar);
    QLineEdit* edit = window.CellEditor();
};

TEST(TablesWindow, KeysOpenStoreAndDropEditsAsTheSailorExpects) {
    Tables t;
    ASSERT_EQ(t.Cell(1, 2), "4.5");
    // Headings never open the editor.
    t.Key(0, 3, Qt::Key_7);
    t.Key(2, 0, Qt::Key_7);
    EXPECT_FALSE(t.edit->isVisible());

    // A digit replaces the text; Up on the first data row stores it and stays there.
    t.Key(1, 2, Qt::Key_7);
    ASSERT_TRUE(t.edit->isVisible());
    EXPECT_EQ(t.edit->text(), "7");
    EXPECT_FALSE(t.edit->hasSelectedText());
    QTest::keyClick(t.edit, Qt::Key_Up);
    EXPECT_FALSE(t.edit->isVisible());
    EXPECT_EQ(t.Cell(1, 2), "7.0");
    EXPECT_EQ(t.tables.Polars.Tables[1].Cell[1][0], 7.0F);
    EXPECT_EQ(t.polar->currentRow(), 1);

    // The space bar loads the text selected; Down stores and moves on.
    t.Key(1, 3, Qt::Key_Space);
    EXPECT_EQ(t.edit->selectedText(), "5.0");
    QTest::keyClicks(t.edit, "5.5");
    QTest::keyClick(t.edit, Qt::Key_Down);
    EXPECT_EQ(t.Cell(1, 3), "5.5");
    EXPECT_EQ(t.polar->currentRow(), 2);

    // Escape stores nothing.
    t.Key(2, 4, Qt::Key_9);
    QTest::keyClick(t.edit, Qt::Key_Escape);
    EXPECT_FALSE(t.edit->isVisible());
    EXPECT_EQ(t.Cell(2, 4), "7.1");
    EXPECT_TRUE(t.editor.TablesChanged());

    // An edit left open is stored when the window closes.
    t.Key(2, 1, Qt::Key_4);
    t.window.accept();
    EXPECT_EQ(t.tables.Polars.Tables[1].RowTwaMin[2], 4.0F);
}

TEST(TablesWindow, CheckingASecondSailUnchecksTheFirstAndMakesItCurrent) {
    Tables t;
    QListWidget* sails = t.window.Sails();
    ASSERT_EQ(sails->count(), 2);
    EXPECT_EQ(sails->item(1)->checkState(), Qt::Checked);
    EXPECT_EQ(sails->currentRow(), 1);
    sails->item(0)->setCheckState(Qt::Checked);
    EXPECT_EQ(sails->item(1)->checkState(), Qt::Unchecked);
    EXPECT_EQ(t.tables.Polars.Current, 0);
    // Clicking a sail shows its table: the Genois has three columns.
    sails->setCurrentRow(0);
    EXPECT_EQ(t.polar->columnCount(), 3 + 3);
    sails->item(0)->setCheckState(Qt::Unchecked);
    EXPECT_EQ(t.tables.Polars.Current, -1);

    // An imported grid is a third sail, checked and shown; a note would come as a box.
    QTimer::singleShot(0, [] {
        if (QWidget* box = QApplication::activeModalWidget()) {
            box->close();
        }
    });
    t.window.ImportGrid(WAKELINE_TEST_DATA "/polar_import/genoa_tab.txt");
    ASSERT_EQ(sails->count(), 3);
    EXPECT_EQ(sails->item(2)->text(), "genoa_tab");
    EXPECT_EQ(sails->item(2)->checkState(), Qt::Checked);
    EXPECT_EQ(t.polar->rowCount(), 1 + 3);
    EXPECT_TRUE(t.editor.TablesChanged());
}

}  // namespace
}  // namespace wakeline
