// Feeds arbitrary bytes to the polar grid import. Beyond the sanitizers' checks it insists that
// an accepted grid gives a table within its arrays (1..11 rows, 1..10 columns, both axes
// ascending, index 0 of each axis left at 0) and that the polar file written with it reads
// back without complaint as the same table, current.

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "performance/polar_file_reader.h"
#include "performance/polar_file_writer.h"
#include "performance/polar_import.h"
#include "performance/table_defaults.h"
#include "require.h"

using wakeline::fuzz::Require;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace wakeline;
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const Result<PolarImport> import = ImportPolarGrid(text, "Fuzz");
    if (!import.Ok()) {
        Require(!import.GetStatus().Reason().empty());
        return 0;
    }
    const PolarTable& t = import.Value().table;
    Require(t.RowCount >= 1 && t.RowCount <= 11);
    Require(t.ColumnCount >= 1 && t.ColumnCount <= 10);
    Require(t.RowWindSpeed[0] == 0.0f && t.RowTwaMin[0] == 0.0f && t.ColumnAngle[0] == 0.0f);
    for (int r = 2; r <= t.RowCount; ++r) {
        Require(t.RowWindSpeed[r] > t.RowWindSpeed[r - 1]);
    }
    for (int c = 1; c <= t.ColumnCount; ++c) {
        Require(t.ColumnAngle[c] > t.ColumnAngle[c - 1] && t.ColumnAngle[c] <= 180.0f);
    }

    PerformanceTables tables;
    tables.Correction = DefaultCorrectionTable();
    Require(AddImportedTable(tables.Polars, t).Ok());
    const std::optional<std::string> written = PolarFileText(tables, 45000.0);
    Require(written.has_value());
    PerformanceTables again;
    Require(ReadPolarText(*written, "WakelinePolar.txt", again).messages.empty());
    Require(again.Polars.Count == 1 && again.Polars.Current == 0);
    const PolarTable& back = again.Polars.Tables[0];
    Require(back.Name == t.Name && back.RowCount == t.RowCount &&
            back.ColumnCount == t.ColumnCount && back.RowWindSpeed == t.RowWindSpeed &&
            back.RowTwaMin == t.RowTwaMin && back.ColumnAngle == t.ColumnAngle &&
            back.Cell == t.Cell);
    return 0;
}
