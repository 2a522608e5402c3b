#include "performance/tables_editor.h"

#include <algorithm>
#include <cmath>

#include "base/number_format.h"
#include "base/text_number.h"
#include "performance/polar_import.h"
#include "performance/wind_correction.h"

namespace wakeline {
namespace {

std::string Text(float value, std::string_view mask) {
    return FormatToWidth(value, mask, 0);
}

// A count as far as the arrays go: a corrupt file may leave one beyond them.
int Bounded(int count, std::size_t size) {
    return std::clamp(count, 0, static_cast<int>(size) - 1);
}

}  // namespace

GridTexts FillCorrectionAngleGrid(const CorrectionTable& table) {
    const int speeds = Bounded(table.SpeedCount, table.WindSpeed.size());
    GridTexts grid;
    grid.headingRowFactor = 2;
    grid.cells.push_back({"   / TWS", "Upwind       " + Text(table.ClassAngle[1], "0"),
                          "Reaching    " + Text(table.ClassAngle[2], "0"),
                          "Downwind " + Text(table.ClassAngle[3], "0")});
    for (int j = 1; j <= speeds; ++j) {
        const auto& row = table.AngleCorrection[static_cast<std::size_t>(j)];
        grid.cells.push_back({Text(table.WindSpeed[static_cast<std::size_t>(j)], "0.0"),
                              Text(row[1], "0.0"), Text(row[2], "0.0"), Text(row[3], "0.0")});
    }
    return grid;
}

GridTexts FillCorrectionSpeedGrid(const CorrectionTable& table) {
    const int speeds = Bounded(table.SpeedCount, table.WindSpeed.size());
    GridTexts grid;
    grid.cells.push_back({"   / TWS", "corr kt", "corr angle"});
    for (int j = 1; j <= speeds; ++j) {
        const auto at = static_cast<std::size_t>(j);
        grid.cells.push_back({Text(table.WindSpeed[at], "0.0"),
                              Text(table.SpeedCorrectionKt[at], "0.0"),
                              Text(table.SpeedCorrectionAngle[at], "0")});
    }
    return grid;
}

GridTexts FillPolarGrid(const PolarTable& table) {
    const int columns = Bounded(table.ColumnCount, table.ColumnAngle.size());
    const int rows = Bounded(table.RowCount, table.RowWindSpeed.size());
    GridTexts grid;
    std::vector<std::string> heading = {"", "TWA_min", "TWA / TSP"};
    for (int c = 1; c <= columns; ++c) {
        heading.push_back(Text(table.ColumnAngle[static_cast<std::size_t>(c)], "0"));
    }
    grid.cells.push_back(std::move(heading));
    for (int r = 1; r <= rows; ++r) {
        const auto at = static_cast<std::size_t>(r);
        std::vector<std::string> line = {Text(table.RowWindSpeed[at], "0.0"),
                                         Text(table.RowTwaMin[at], "0.0")};
        for (int c = 0; c <= columns; ++c) {
            line.push_back(Text(table.Cell[at][static_cast<std::size_t>(c)], "0.0"));
        }
        grid.cells.push_back(std::move(line));
    }
    return grid;
}

std::vector<std::string> SailNames(const PolarSet& set) {
    std::vector<std::string> names;
    const int count = std::clamp<int>(set.Count, 0, static_cast<int>(set.Tables.size()));
    for (int i = 0; i < count; ++i) {
        const std::string& name = set.Tables[static_cast<std::size_t>(i)].Name;
        names.push_back(name.empty() ? "Dummy" + FormatMask(i + 1, "00") : name);
    }
    return names;
}

std::string DampingText(float factor) {
    return FormatToWidth(factor, "0.0000", 0);
}

TablesEditor::TablesEditor(PerformanceTables& tables)
    : tables_(tables), shownDamping_(DampingText(tables.DampingFactor)) {
    const int count = static_cast<int>(SailNames(tables.Polars).size());
    const int current = tables.Polars.Current;
    selectedSail_ = current >= 0 && current < count ? current : 0;
}

GridTexts TablesEditor::Grid(TablesGrid grid) const {
    switch (grid) {
        case TablesGrid::AngleCorrection:
            return FillCorrectionAngleGrid(tables_.Correction);
        case TablesGrid::SpeedCorrection:
            return FillCorrectionSpeedGrid(tables_.Correction);
        case TablesGrid::Polar:
            break;
    }
    if (selectedSail_ < 0 || selectedSail_ >= static_cast<int>(SailNames(tables_.Polars).size())) {
        return FillPolarGrid(PolarTable{});
    }
    return FillPolarGrid(tables_.Polars.Tables[static_cast<std::size_t>(selectedSail_)]);
}

std::optional<EditStart> TablesEditor::StartEdit(int row, int column, std::optional<int> keyCode,
                                                 const std::string& cellText) {
    if (row <= 0 || column <= 0) {
        return std::nullopt;
    }
    if (keyCode && (*keyCode < 0 || *keyCode > 32)) {
        return EditStart{std::string(1, static_cast<char>(*keyCode)), false};
    }
    return EditStart{cellText, true};
}

bool TablesEditor::Commit(TablesGrid grid, int row, int column, std::string_view text) {
    if (text.empty() || row <= 0 || column <= 0) {
        return false;
    }
    const double value = LeadingNumber(text);
    // A number beyond a 32-bit float ends the store: the cell keeps its value.
    if (!std::isfinite(static_cast<float>(value))) {
        return false;
    }
    return StoreValue(grid, row, column, static_cast<float>(value));
}

bool TablesEditor::StoreValue(TablesGrid grid, int row, int column, float value) {
    const auto r = static_cast<std::size_t>(row);
    const auto c = static_cast<std::size_t>(column);
    CorrectionTable& correction = tables_.Correction;
    switch (grid) {
        case TablesGrid::AngleCorrection:
            if (r >= correction.AngleCorrection.size() ||
                c >= correction.AngleCorrection[r].size()) {
                return false;
            }
            correction.AngleCorrection[r][c] = value;
            break;
        case TablesGrid::SpeedCorrection:
            if (r >= correction.SpeedCorrectionKt.size()) {
                return false;
            }
            // Only the two correction columns hold values; any other still counts as an edit.
            if (column == 1) {
                correction.SpeedCorrectionKt[r] = value;
            } else if (column == 2) {
                correction.SpeedCorrectionAngle[r] = value;
            }
            break;
        case TablesGrid::Polar: {
            if (selectedSail_ < 0 ||
                selectedSail_ >= static_cast<int>(tables_.Polars.Tables.size())) {
                return false;
            }
            PolarTable& table = tables_.Polars.Tables[static_cast<std::size_t>(selectedSail_)];
            if (r >= table.Cell.size() || (column >= 2 && c - 2 >= table.Cell[r].size())) {
                return false;
            }
            if (column == 1) {
                table.RowTwaMin[r] = value;
            } else {
                table.Cell[r][c - 2] = value;
            }
            break;
        }
    }
    changed_ = true;
    return true;
}

int TablesEditor::RowAfterMove(int row, int rows, int step) {
    const int moved = row + step;
    return moved < 1 || moved > rows - 1 ? row : moved;
}

void TablesEditor::SelectSail(int index) {
    if (index >= 0 && index < static_cast<int>(SailNames(tables_.Polars).size())) {
        selectedSail_ = index;
    }
}

void TablesEditor::CheckSail(int index, bool checked) {
    PolarSet& set = tables_.Polars;
    if (checked) {
        set.Current = static_cast<std::int16_t>(index);
    } else if (index == set.Current) {
        set.Current = -1;
    }
    changed_ = true;
}

Result<std::string> TablesEditor::ImportTable(std::string_view gridText, std::string name) {
    Result<PolarImport> imported = ImportPolarGrid(gridText, std::move(name));
    if (!imported.Ok()) {
        return imported.GetStatus();
    }
    PolarImport import = std::move(imported).Value();
    const Result<std::string> added = AddImportedTable(tables_.Polars, std::move(import.table));
    if (!added.Ok()) {
        return added.GetStatus();
    }
    changed_ = true;
    selectedSail_ = tables_.Polars.Current;
    std::string note = import.message;
    if (!added.Value().empty()) {
        note += (note.empty() ? "" : "\n") + added.Value();
    }
    return note;
}

void TablesEditor::TakeDampingText(std::string_view text) {
    if (text == shownDamping_) {
        return;
    }
    tables_.DampingFactor = ParseDampingFactor(text);
    shownDamping_ = std::string(text);
    changed_ = true;
}

}  // namespace wakeline
