#pragma once
// The tables window's logic: the three grids' texts (angle corrections, speed corrections, the
// selected sail's polar table), the in-cell editor's start and commit, the sails' check list
// and the damping factor. Every stored edit marks the tables changed; the run writes the polar
// file on closing only then, so a window opened and closed for a look leaves the file alone.

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/status.h"
#include "performance/performance_tables.h"

namespace wakeline {

enum class TablesGrid {
    AngleCorrection,  // MSFTWAC
    SpeedCorrection,  // MSFTWSC
    Polar,            // MSFPT
};

// A grid's texts, row 0 and column 0 the headings.
struct GridTexts {
    std::vector<std::vector<std::string>> cells;  // [row][column]
    // The heading row's height against a data row's: 2 where the headings carry two lines.
    int headingRowFactor = 1;

    int Rows() const { return static_cast<int>(cells.size()); }
    int Columns() const { return cells.empty() ? 0 : static_cast<int>(cells[0].size()); }
};

GridTexts FillCorrectionAngleGrid(const CorrectionTable& table);
GridTexts FillCorrectionSpeedGrid(const CorrectionTable& table);
GridTexts FillPolarGrid(const PolarTable& table);

// The sails' names for the list: a table without a name is "Dummy" and its number, 01 up.
std::vector<std::string> SailNames(const PolarSet& set);

// How the in-cell editor opens: with `text`, the caret after it, or with all of it selected.
struct EditStart {
    std::string text;
    bool selectAll = false;
};

// The damping factor as the window shows it.
std::string DampingText(float factor);

class TablesEditor {
  public:
    // `tables` must outlive the editor. Opening clears the changed mark and selects the
    // current sail (the first when none is current).
    explicit TablesEditor(PerformanceTables& tables);

    const PerformanceTables& Tables() const { return tables_; }
    bool TablesChanged() const { return changed_; }

    GridTexts Grid(TablesGrid grid) const;

    // A key (its character code; empty for a double click) on the cell (row, column) whose
    // text is `cellText`. Headings (row 0 or column 0) never open the editor. A printable key,
    // a code below 0 or above 32, replaces the text with its character; any other key (the
    // space bar among them) and a double click load the text and select all of it.
    std::optional<EditStart> StartEdit(int row, int column, std::optional<int> keyCode,
                                       const std::string& cellText);
    // The editor's text goes into the cell: an empty text stores nothing; any other is read as
    // its leading number ("7.5 kn" is 7.5, a letter 0, "1e40" 1), into the sail that was
    // selected when the edit began. False when nothing was stored: an empty text, a cell no
    // value belongs to, or a number too large for the tables.
    bool Commit(TablesGrid grid, int row, int column, std::string_view text);
    // Up (-1) or Down (+1) after a commit: the row to go to, staying within the data rows.
    static int RowAfterMove(int row, int rows, int step);

    // The sail whose table the polar grid shows; edits go to it.
    int SelectedSail() const { return selectedSail_; }
    void SelectSail(int index);
    // Checking a sail makes it current (only one is ever checked); unchecking the current one
    // leaves none current.
    void CheckSail(int index, bool checked);

    // "Import polar...": a designer's grid (see polar_import.h) becomes a new sail, shown and
    // current. The value is what the sailor should read (what was left out), empty when the
    // whole grid came in; a grid that cannot be read changes nothing and says why.
    Result<std::string> ImportTable(std::string_view gridText, std::string name);

    // The damping field's text, taken on a click, on leaving it and at the close: clamped into
    // 0..1. A text the sailor did not change leaves the tables unchanged.
    void TakeDampingText(std::string_view text);

  private:
    bool StoreValue(TablesGrid grid, int row, int column, float value);

    PerformanceTables& tables_;
    bool changed_ = false;
    int selectedSail_ = 0;
    std::string shownDamping_;
};

}  // namespace wakeline
