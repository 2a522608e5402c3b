#include "performance/window/tables_window.h"

#include <QApplication>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QPushButton>
#include <QScrollBar>
#include <QTableWidget>
#include <QVBoxLayout>

#include <algorithm>
#include "performance/window/polar_diagram_widget.h"

namespace wakeline {
namespace {

QString FromLatin1(const std::string& text) {
    return QString::fromLatin1(text.data(), static_cast<qsizetype>(text.size()));
}

std::string ToLatin1(const QString& text) {
    const QByteArray bytes = text.toLatin1();
    return std::string(bytes.constData(), static_cast<std::size_t>(bytes.size()));
}

}  // namespace

TablesWindow::TablesWindow(TablesEditor& editor, QWidget* parent)
    : QDialog(parent), editor_core_(editor) {
    setObjectName("frmTables");
    setWindowTitle(QStringLiteral("Wakeline tables"));
    setModal(true);

    auto* columns = new QHBoxLayout(this);
    auto* corrections = new QVBoxLayout;
    corrections->addWidget(new QLabel(tr("True wind angle correction (degrees)"), this));
    corrections->addWidget(NewGrid(TablesGrid::AngleCorrection, "MSFTWAC"), 3);
    corrections->addWidget(new QLabel(tr("True wind speed correction"), this));
    corrections->addWidget(NewGrid(TablesGrid::SpeedCorrection, "MSFTWSC"), 3);
    auto* dampingPrompt = new QLabel(QStringLiteral("Enter Damping Value between 0 and 1"), this);
    damping_ = new QLineEdit(FromLatin1(DampingText(editor.Tables().DampingFactor)), this);
    damping_->setObjectName("txtDF");
    damping_->setMaximumWidth(120);
    damping_->installEventFilter(this);
    connect(damping_, &QLineEdit::editingFinished, this,
            [this] { editor_core_.TakeDampingText(ToLatin1(damping_->text())); });
    corrections->addWidget(dampingPrompt);
    corrections->addWidget(damping_);
    corrections->addStretch(1);
    columns->addLayout(corrections, 4);

    auto* polar = new QVBoxLayout;
    auto* sailsRow = new QHBoxLayout;
    sails_ = new QListWidget(this);
    sails_->setObjectName("lstSails");
    sailsRow->addWidget(sails_, 1);
    diagram_ = new PolarDiagramWidget(this);
    sailsRow->addWidget(diagram_, 3);
    polar->addLayout(sailsRow, 3);
    polar->addWidget(new QLabel(tr("Polar table of the selected sail: target speed in knots by "
                                   "true wind speed (rows) and angle (columns)"),
                                this));
    polar->addWidget(NewGrid(TablesGrid::Polar, "MSFPT"), 3);
    auto* import = new QPushButton(tr("Import polar..."), this);
    import->setObjectName("cmdImport");
    import->setAutoDefault(false);
    import->setToolTip(
        tr("A polar grid from a designer or a rating certificate: wind speeds "
           "across the first line, true wind angles down the first column, "
           "separated by tabs, semicolons or commas"));
    connect(import, &QPushButton::clicked, this, [this] { ImportFromFile(); });
    polar->addWidget(import, 0, Qt::AlignLeft);
    columns->addLayout(polar, 7);

    editor_ = new QLineEdit(this);
    editor_->setObjectName("txtEdit");
    editor_->hide();
    editor_->installEventFilter(this);

    connect(sails_, &QListWidget::itemChanged, this, [this](QListWidgetItem* item) {
        if (sails_->signalsBlocked()) {
            return;
        }
        editor_core_.CheckSail(sails_->row(item), item->checkState() == Qt::Checked);
        FillSails();
    });
    connect(sails_, &QListWidget::currentRowChanged, this, [this](int row) {
        if (sails_->signalsBlocked() || row < 0) {
            return;
        }
        editor_core_.SelectSail(row);
        Fill(TablesGrid::Polar);
        emit sailShown();
    });
    // The diagram follows the sail the grid shows, and every value stored into it.
    connect(this, &TablesWindow::sailShown, this, [this] {
        const PolarSet& set = editor_core_.Tables().Polars;
        const int sail = editor_core_.SelectedSail();
        if (sail >= 0 && sail < static_cast<int>(SailNames(set).size())) {
            diagram_->SetTable(set.Tables[static_cast<std::size_t>(sail)]);
        } else {
            diagram_->Clear();
        }
    });
    Refill();
    resize(1000, 760);
}

void TablesWindow::ImportFromFile() {
    const QString path =
        QFileDialog::getOpenFileName(this, tr("Import polar"), QString(),
                                     tr("Polar grids (*.txt *.csv *.pol *.tsv);;All files (*)"));
    if (!path.isEmpty()) {
        ImportGrid(path);
    }
}

void TablesWindow::ImportGrid(const QString& path) {
    QFile file(path);
    // A grid is a few kilobytes; a file far larger is not one.
    constexpr qint64 kLargestGrid = 1 << 20;
    const auto tell = [this](const QString& text) {
        QMessageBox::information(this, QStringLiteral("Wakeline"), text);
    };
    if (!file.open(QIODevice::ReadOnly)) {
        tell(tr("Cannot read %1: %2").arg(path, file.errorString()));
        return;
    }
    if (file.size() > kLargestGrid) {
        tell(tr("%1 is too large for a polar grid").arg(path));
        return;
    }
    const QByteArray bytes = file.readAll();
    const Result<std::string> imported = editor_core_.ImportTable(
        std::string_view(bytes.constData(), static_cast<std::size_t>(bytes.size())),
        ToLatin1(QFileInfo(path).completeBaseName()));
    if (!imported.Ok()) {
        tell(FromLatin1(imported.GetStatus().Message()));
        return;
    }
    Refill();
    if (!imported.Value().empty()) {
        tell(FromLatin1(imported.Value()));
    }
}

void TablesWindow::ShowLiveWind(std::optional<float> twaDegrees, std::optional<float> twsKnots) {
    diagram_->SetLivePoint(twaDegrees, twsKnots);
}

QTableWidget* TablesWindow::NewGrid(TablesGrid grid, const char* name) {
    auto* table = new QTableWidget(this);
    table->setObjectName(QString::fromLatin1(name));
    table->horizontalHeader()->hide();
    table->verticalHeader()->hide();
    table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    table->setSelectionMode(QAbstractItemView::SingleSelection);
    table->installEventFilter(this);
    connect(table, &QTableWidget::cellDoubleClicked, this,
            [this, grid, table](int row, int column) {
                table->setCurrentCell(row, column);
                OpenEditor(grid, std::nullopt);
            });
    grids_[static_cast<std::size_t>(grid)] = table;
    return table;
}

void TablesWindow::Refill() {
    Fill(TablesGrid::AngleCorrection);
    Fill(TablesGrid::SpeedCorrection);
    FillSails();
    Fill(TablesGrid::Polar);
    emit sailShown();
}

void TablesWindow::Fill(TablesGrid which) {
    QTableWidget* table = Grid(which);
    const GridTexts texts = editor_core_.Grid(which);
    const int currentRow = table->currentRow();
    const int currentColumn = table->currentColumn();
    table->setRowCount(texts.Rows());
    table->setColumnCount(texts.Columns());
    QFont headingFont = table->font();
    headingFont.setBold(true);
    for (int r = 0; r < texts.Rows(); ++r) {
        for (int c = 0; c < texts.Columns(); ++c) {
            auto* item = new QTableWidgetItem(
                FromLatin1(texts.cells[static_cast<std::size_t>(r)][static_cast<std::size_t>(c)]));
            if (r == 0 || c == 0) {
                item->setFont(headingFont);
                item->setBackground(palette().button());
                item->setForeground(palette().buttonText());
            } else {
                item->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
            }
            table->setItem(r, c, item);
        }
    }
    const int rowHeight = table->fontMetrics().height() + 6;
    table->verticalHeader()->setDefaultSectionSize(rowHeight);
    if (texts.Rows() > 0) {
        table->setRowHeight(0, rowHeight * texts.headingRowFactor);
    }
    table->resizeColumnsToContents();
    if (texts.headingRowFactor > 1) {
        // Headings of two lines ("Upwind" over its angle) wrap at their blanks; the column
        // needs only its widest word and its numbers.
        table->setWordWrap(true);
        const QFontMetrics metrics(headingFont);
        for (int c = 1; c < texts.Columns(); ++c) {
            int widest = 0;
            for (const QString& word : table->item(0, c)->text().split(' ', Qt::SkipEmptyParts)) {
                widest = std::max(widest, metrics.horizontalAdvance(word));
            }
            for (int r = 1; r < texts.Rows(); ++r) {
                widest = std::max(
                    widest, table->fontMetrics().horizontalAdvance(table->item(r, c)->text()));
            }
            table->setColumnWidth(c, widest + 16);
        }
    }
    // Every column shows: the grid is at least as wide as its columns.
    table->setMinimumWidth(table->horizontalHeader()->length() + 2 * table->frameWidth() +
                           table->verticalScrollBar()->sizeHint().width());
    if (currentRow >= 0 && currentRow < texts.Rows() && currentColumn < texts.Columns()) {
        table->setCurrentCell(currentRow, currentColumn);
    } else if (texts.Rows() > 1 && texts.Columns() > 1) {
        table->setCurrentCell(1, 1);
    }
}

void TablesWindow::FillSails() {
    const QSignalBlocker blocker(sails_);
    const std::vector<std::string> names = SailNames(editor_core_.Tables().Polars);
    sails_->clear();
    for (std::size_t i = 0; i < names.size(); ++i) {
        auto* item = new QListWidgetItem(FromLatin1(names[i]), sails_);
        item->setFlags(item->flags() | Qt::ItemIsUserCheckable);
        item->setCheckState(static_cast<int>(i) == editor_core_.Tables().Polars.Current
                                ? Qt::Checked
                                : Qt::Unchecked);
    }
    sails_->setCurrentRow(editor_core_.SelectedSail());
    // The list is as tall as its sails, so none hides below a scroll bar.
    sails_->setMinimumHeight(sails_->sizeHintForRow(0) * std::max<int>(2, sails_->count()) + 6);
}

bool TablesWindow::OpenEditor(TablesGrid which, std::optional<int> keyCode) {
    QTableWidget* table = Grid(which);
    const int row = table->currentRow();
    const int column = table->currentColumn();
    const QTableWidgetItem* item = table->item(row, column);
    const std::optional<EditStart> start = editor_core_.StartEdit(
        row, column, keyCode, item != nullptr ? ToLatin1(item->text()) : std::string());
    if (!start) {
        return false;
    }
    editing_ = true;
    editGrid_ = which;
    editRow_ = row;
    editColumn_ = column;
    editor_->setParent(table->viewport());
    editor_->setGeometry(table->visualRect(table->model()->index(row, column)));
    editor_->setText(FromLatin1(start->text));
    if (start->selectAll) {
        editor_->selectAll();
    } else {
        editor_->setCursorPosition(static_cast<int>(editor_->text().size()));
    }
    editor_->show();
    editor_->setFocus();
    return true;
}

void TablesWindow::CloseEditor(bool store) {
    if (!editing_) {
        return;
    }
    editing_ = false;
    const std::string text = ToLatin1(editor_->text());
    QTableWidget* table = Grid(editGrid_);
    table->setFocus();
    editor_->hide();
    if (store && editor_core_.Commit(editGrid_, editRow_, editColumn_, text)) {
        Fill(editGrid_);
        if (editGrid_ == TablesGrid::Polar) {
            emit sailShown();
        }
    }
}

void TablesWindow::CommitOpenEdit() {
    CloseEditor(true);
}

void TablesWindow::MoveAfterEdit(int step) {
    const TablesGrid which = editGrid_;
    const int column = editColumn_;
    const int row = editRow_;
    CloseEditor(true);
    QApplication::processEvents();
    QTableWidget* table = Grid(which);
    table->setCurrentCell(TablesEditor::RowAfterMove(row, table->rowCount(), step), column);
}

bool TablesWindow::eventFilter(QObject* watched, QEvent* event) {
    if (watched == editor_) {
        if (event->type() == QEvent::FocusOut && editing_) {
            CloseEditor(true);
        } else if (event->type() == QEvent::KeyPress) {
            switch (static_cast<QKeyEvent*>(event)->key()) {
                case Qt::Key_Escape:
                    CloseEditor(false);
                    return true;
                case Qt::Key_Return:
                case Qt::Key_Enter:
                    CloseEditor(true);
                    return true;
                case Qt::Key_Up:
                    MoveAfterEdit(-1);
                    return true;
                case Qt::Key_Down:
                    MoveAfterEdit(+1);
                    return true;
                default:
                    break;
            }
        }
        return QDialog::eventFilter(watched, event);
    }
    if (watched == damping_ && event->type() == QEvent::MouseButtonPress) {
        editor_core_.TakeDampingText(ToLatin1(damping_->text()));
    }
    if (event->type() == QEvent::KeyPress) {
        for (std::size_t i = 0; i < grids_.size(); ++i) {
            if (watched != grids_[i]) {
                continue;
            }
            // A key that gives a character opens the editor, as the old grid's key press did;
            // keys without one (arrows, page keys) move about the grid.
            const auto* key = static_cast<QKeyEvent*>(event);
            const QString text = key->text();
            if (text.isEmpty() || key->key() == Qt::Key_Tab || key->key() == Qt::Key_Backtab) {
                break;
            }
            const QByteArray latin1 = text.left(1).toLatin1();
            const int code = static_cast<unsigned char>(latin1.isEmpty() ? '?' : latin1[0]);
            OpenEditor(static_cast<TablesGrid>(i), code);
            return true;
        }
    }
    return QDialog::eventFilter(watched, event);
}

void TablesWindow::done(int result) {
    CommitOpenEdit();
    QDialog::done(result);
}

}  // namespace wakeline
