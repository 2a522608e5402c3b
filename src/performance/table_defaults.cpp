#include "performance/table_defaults.h"

#include <utility>

namespace wakeline {

CorrectionTable DefaultCorrectionTable() {
    CorrectionTable table;
    table.ClassCount = 3;
    table.ClassAngle[1] = 45.0f;
    table.ClassAngle[2] = 90.0f;
    table.ClassAngle[3] = 165.0f;
    table.SpeedCount = 6;
    for (int j = 1; j <= 6; ++j) {
        table.WindSpeed[j] = 5.0f * static_cast<float>(j);
    }
    // A limit above every angle that matters keeps the speed correction at rest until the
    // sailor enters one.
    table.SpeedCorrectionAngle.fill(165.0f);
    return table;
}

PolarTable EmptyPolarTable(std::string name, std::int16_t rowCount, std::int16_t columnCount) {
    PolarTable table;
    table.Name = std::move(name);
    table.RowCount = rowCount;
    table.ColumnCount = columnCount;
    return table;
}

PolarSet PlaceholderPolarSet(std::int16_t rowCount, std::int16_t columnCount) {
    PolarSet set;
    set.Tables[0] = EmptyPolarTable("Dummy1", rowCount, columnCount);
    set.Tables[1] = EmptyPolarTable("Dummy2", rowCount, columnCount);
    set.Count = 2;
    set.Current = -1;
    return set;
}

}  // namespace wakeline
