#include "performance/polar_file_writer.h"

#include <string_view>
#include <utility>

#include "base/number_format.h"
#include "performance/checked_arithmetic.h"

namespace wakeline {
namespace {

constexpr std::string_view kLineEnd = "\r\n";

using performance_detail::At;
using performance_detail::Checked;

std::string Number(float value, std::string_view mask) {
    return FormatToWidth(value, mask, 0);
}

void AppendCorrectionTable(const CorrectionTable& table, std::string& out) {
    out += "[CorrectionTable]";
    out += kLineEnd;
    // The first value of each line is written even for an empty table, the rest follow it.
    out += "       " + Number(At(table.WindSpeed, 1), "00");
    for (long j = 2; j <= table.SpeedCount; ++j) {
        out += ",   " + Number(At(table.WindSpeed, j), "00");
    }
    out += kLineEnd;
    for (long k = 1; k <= table.ClassCount; ++k) {
        out += Number(At(table.ClassAngle, k), "000");
        for (long j = 1; j <= table.SpeedCount; ++j) {
            out += ",  " + Number(At(At(table.AngleCorrection, j), k), "##0.0");
        }
        out += kLineEnd;
    }
    out += "      " + Number(At(table.SpeedCorrectionKt, 1), "0.0");
    for (long j = 2; j <= table.SpeedCount; ++j) {
        out += ",  " + Number(At(table.SpeedCorrectionKt, j), "0.0");
    }
    out += kLineEnd;
    out += "      " + Number(At(table.SpeedCorrectionAngle, 1), "000");
    for (long j = 2; j <= table.SpeedCount; ++j) {
        out += ",  " + Number(At(table.SpeedCorrectionAngle, j), "000");
    }
    out += kLineEnd;
}

void AppendPolarTable(const PolarTable& table, std::string& out) {
    out += "[PolarTable=" + table.Name + "]";
    out += kLineEnd;
    out += "                 " + Number(At(table.ColumnAngle, 1), "##0");
    for (long c = 2; c <= table.ColumnCount; ++c) {
        out += ",   " + Number(At(table.ColumnAngle, c), "##0");
    }
    out += kLineEnd;
    for (long r = 1; r <= table.RowCount; ++r) {
        out += Number(At(table.RowWindSpeed, r), "00");
        out += ",  " + Number(At(table.RowTwaMin, r), "#00");
        for (long c = 0; c <= table.ColumnCount; ++c) {
            out += ",  " + Number(At(At(table.Cell, r), c), "#0.0");
        }
        out += kLineEnd;
    }
}

}  // namespace

std::optional<std::string> PolarFileText(const PerformanceTables& tables, DateTime writtenAt) {
    std::string out;
    out.reserve(4096);
    out += "'Wakeline Correction and Polar Tables written at " + FormatStampTime(writtenAt);
    out += kLineEnd;
    out += "[DampingFactor=" + Number(tables.DampingFactor, "0.0000") + "]";
    out += kLineEnd;
    // A count outside its arrays stops the text; no part of it is written.
    return Checked([&] {
        AppendCorrectionTable(tables.Correction, out);
        const PolarSet& set = tables.Polars;
        for (long p = 0; p < set.Count; ++p) {
            AppendPolarTable(At(set.Tables, p), out);
        }
        if (set.Current >= 0) {
            out += "[PolarTableCurrent=" + At(set.Tables, set.Current).Name + "]";
            out += kLineEnd;
        }
        return std::move(out);
    });
}

Status WritePolarFile(FileSystem& files, const std::string& path, const PerformanceTables& tables,
                      DateTime writtenAt) {
    const std::optional<std::string> text = PolarFileText(tables, writtenAt);
    if (!text) {
        return Status::Failure("write", path, "a table's count lies outside its arrays");
    }
    return files.WriteFile(path, *text);
}

}  // namespace wakeline
