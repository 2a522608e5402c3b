#pragma once
// frmTables: the correction grids, the selected sail's polar grid, the sails' check list and
// the damping factor, over the run's tables editor. Cells are edited in place the way the
// sailor's old program did it: a typed character replaces the cell's text, the space bar or a
// double click opens it for correcting, Enter or leaving the cell stores it, Escape drops it,
// Up and Down store it and move within the rows.

#include <QDialog>
#include <array>
#include <optional>

#include "performance/tables_editor.h"

class QLineEdit;
class QListWidget;
class QTableWidget;

namespace wakeline {

class PolarDiagramWidget;

class TablesWindow : public QDialog {
    Q_OBJECT
  public:
    // `editor` must outlive the window.
    explicit TablesWindow(TablesEditor& editor, QWidget* parent = nullptr);

    QTableWidget* Grid(TablesGrid grid) const { return grids_[static_cast<std::size_t>(grid)]; }
    QListWidget* Sails() const { return sails_; }
    QLineEdit* DampingField() const { return damping_; }
    QLineEdit* CellEditor() const { return editor_; }
    PolarDiagramWidget* Diagram() const { return diagram_; }
    // The live true wind (degrees, knots) as a point on the diagram; empty while no data flow.
    void ShowLiveWind(std::optional<float> twaDegrees, std::optional<float> twsKnots);
    // Stores an open edit; the run calls it, then takes the damping text, before closing.
    void CommitOpenEdit();
    // Shows every grid, the sails and the diagram from the tables again.
    void Refill();
    // "Import polar...": the grid in the file becomes a new sail, current and shown; what was
    // left out of it, or why it could not be read, is told in a message.
    void ImportGrid(const QString& path);

  Q_SIGNALS:
    // The polar grid shows another sail, or one of its values changed.
    void sailShown();

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void done(int result) override;

  private:
    QTableWidget* NewGrid(TablesGrid grid, const char* name);
    void Fill(TablesGrid grid);
    void FillSails();
    bool OpenEditor(TablesGrid grid, std::optional<int> keyCode);
    void CloseEditor(bool store);
    void MoveAfterEdit(int step);
    void ImportFromFile();

    TablesEditor& editor_core_;
    std::array<QTableWidget*, 3> grids_{};
    QListWidget* sails_ = nullptr;
    QLineEdit* damping_ = nullptr;
    QLineEdit* editor_ = nullptr;
    PolarDiagramWidget* diagram_ = nullptr;
    // The cell being edited.
    bool editing_ = false;
    TablesGrid editGrid_ = TablesGrid::Polar;
    int editRow_ = 0;
    int editColumn_ = 0;
};

}  // namespace wakeline
