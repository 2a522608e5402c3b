#include "performance/polar_file_reader.h"

#include <cstddef>
#include <cstdint>
#include <limits>

#include "base/line_reader.h"
#include "base/text_number.h"
#include "performance/checked_arithmetic.h"

namespace wakeline {
namespace {

constexpr std::string_view kMissingCell = "Polar File corrupt, added one cell with value -1";
constexpr std::string_view kCorrupt = "Polar File is corrupt, check with documentation";
constexpr std::string_view kTooManyTables = "Too many Polar tables !";

// The file holds five tables at most when read back, although the set has room for six.
constexpr int kMostTablesRead = 5;

using performance_detail::At;
using performance_detail::Single;

// Thrown by any step that makes the file unusable from there on, as At and Single do for a
// count or a value the tables cannot hold; caught once at the top.
using CorruptFile = performance_detail::LookupFault;

// A line that starts a section ends whatever was being read. An empty line counts too: the
// test asks where the line's first character stands in "['", and an empty text stands first.
bool StartsSection(std::string_view line) {
    return line.empty() || line[0] == '[';
}

bool SameKey(std::string_view key, std::string_view expected) {
    if (key.size() != expected.size()) {
        return false;
    }
    for (std::size_t i = 0; i < key.size(); ++i) {
        auto lower = [](char c) { return (c >= 'A' && c <= 'Z') ? static_cast<char>(c + 32) : c; };
        if (lower(key[i]) != lower(expected[i])) {
            return false;
        }
    }
    return true;
}

// The text between the first and the second "=" (to the end when there is no second).
std::string_view AfterFirstEquals(std::string_view line) {
    const std::size_t first = line.find('=');
    if (first == std::string_view::npos) {
        return {};
    }
    const std::string_view rest = line.substr(first + 1);
    return rest.substr(0, rest.find('='));
}

// A table name is written followed by "]"; reading drops the last character whatever it is.
// A name line with nothing to drop cannot be read.
std::string NameOf(std::string_view line) {
    const std::string_view text = AfterFirstEquals(line);
    if (text.empty()) {
        throw CorruptFile{};
    }
    return std::string(text.substr(0, text.size() - 1));
}

std::size_t FieldCount(std::string_view line) {
    std::size_t count = 1;
    for (char c : line) {
        count += (c == ',') ? 1 : 0;
    }
    return count;
}

std::int16_t Count16(std::size_t count) {
    if (count > static_cast<std::size_t>(std::numeric_limits<std::int16_t>::max())) {
        throw CorruptFile{};
    }
    return static_cast<std::int16_t>(count);
}

class PolarTextReader {
  public:
    PolarTextReader(std::string_view text, PerformanceTables& tables)
        : lines_(SplitLines(text)), tables_(tables) {}

    // Reads the whole text; the report's messages are those shown on the way.
    void Read(const std::string& path, PolarReadReport& report) {
        messages_ = &report.messages;
        tables_.Polars.Count = 0;
        tables_.Polars.Current = -1;
        try {
            while (const auto line = NextLine()) {
                if (!ReadSection(*line)) {
                    return;
                }
            }
        } catch (const CorruptFile&) {
            report.messages.push_back(std::string(kCorrupt) + "\r\n" + path);
        }
    }

  private:
    std::optional<std::string_view> NextLine() {
        if (next_ >= lines_.size()) {
            return std::nullopt;
        }
        return lines_[next_++];
    }
    // The line just taken is read again by the next NextLine.
    void HoldBack() { --next_; }

    // In the correction table every line is expected: the file may not end there.
    std::string_view NextCorrectionLine() {
        const auto line = NextLine();
        if (!line) {
            throw CorruptFile{};
        }
        return *line;
    }

    double Field(std::string_view line, int index) {
        const std::optional<double> value = ParseField(line, index);
        if (!value) {
            messages_->push_back(std::string(kMissingCell));
            return -1.0;
        }
        return *value;
    }

    // One top-level line; false when reading must stop.
    bool ReadSection(std::string_view line) {
        // Comments ("'") and any other line outside a section are skipped.
        if (line.empty() || line[0] != '[') {
            return true;
        }
        const std::size_t equals = line.find('=');
        const std::string_view key =
            equals == std::string_view::npos ? line : line.substr(0, equals + 1);
        if (SameKey(key, "[DampingFactor=")) {
            tables_.DampingFactor = Single(LeadingNumber(AfterFirstEquals(line)));
        } else if (SameKey(key, "[PolarTable=")) {
            return ReadPolarTable(line);
        } else if (SameKey(key, "[CorrectionTable]")) {
            ReadCorrectionTable();
        } else if (SameKey(key, "[PolarTableCurrent=")) {
            SelectCurrent(line);
        }
        return true;
    }

    bool ReadPolarTable(std::string_view nameLine) {
        PolarSet& set = tables_.Polars;
        if (set.Count >= kMostTablesRead) {
            messages_->push_back(std::string(kTooManyTables));
            return false;
        }
        PolarTable& table = At(set.Tables, set.Count);
        ++set.Count;
        table = PolarTable{};
        table.Name = NameOf(nameLine);
        const auto heading = NextLine();
        if (!heading) {
            return true;
        }
        if (StartsSection(*heading)) {
            HoldBack();
            return true;
        }
        table.RowCount = 0;
        table.ColumnCount = Count16(FieldCount(*heading));
        for (int c = 1; c <= table.ColumnCount; ++c) {
            At(table.ColumnAngle, c) = Single(Field(*heading, c - 1));
        }
        while (const auto row = NextLine()) {
            if (StartsSection(*row)) {
                HoldBack();
                break;
            }
            ++table.RowCount;
            const int r = table.RowCount;
            At(table.RowWindSpeed, r) = Single(Field(*row, 0));
            At(table.RowTwaMin, r) = Single(Field(*row, 1));
            for (int c = 0; c <= table.ColumnCount; ++c) {
                At(At(table.Cell, r), c) = Single(Field(*row, c + 2));
            }
        }
        return true;
    }

    void ReadCorrectionTable() {
        CorrectionTable& table = tables_.Correction;
        std::string_view line = NextCorrectionLine();
        if (StartsSection(line)) {
            HoldBack();
            return;
        }
        table.SpeedCount = Count16(FieldCount(line));
        for (int j = 1; j <= table.SpeedCount; ++j) {
            At(table.WindSpeed, j) = Single(Field(line, j - 1));
        }
        table.ClassCount = 3;
        for (int k = 1; k <= 3; ++k) {
            line = NextCorrectionLine();
            if (StartsSection(line)) {
                HoldBack();
                return;
            }
            At(table.ClassAngle, k) = Single(Field(line, 0));
            for (int j = 1; j <= table.SpeedCount; ++j) {
                At(At(table.AngleCorrection, j), k) = Single(Field(line, j));
            }
        }
        line = NextCorrectionLine();
        if (StartsSection(line)) {
            HoldBack();
            return;
        }
        for (int j = 1; j <= table.SpeedCount; ++j) {
            At(table.SpeedCorrectionKt, j) = Single(Field(line, j - 1));
        }
        line = NextCorrectionLine();
        if (StartsSection(line)) {
            HoldBack();
            return;
        }
        for (int j = 1; j <= table.SpeedCount; ++j) {
            At(table.SpeedCorrectionAngle, j) = Single(Field(line, j - 1));
        }
    }

    // The current sail is named with its case; of several tables with that name the last wins.
    void SelectCurrent(std::string_view line) {
        const std::string name = NameOf(line);
        PolarSet& set = tables_.Polars;
        for (int p = 0; p < set.Count; ++p) {
            if (At(set.Tables, p).Name == name) {
                set.Current = static_cast<std::int16_t>(p);
            }
        }
    }

    std::vector<std::string> lines_;
    std::size_t next_ = 0;
    PerformanceTables& tables_;
    std::vector<std::string>* messages_ = nullptr;
};

}  // namespace

std::optional<double> ParseField(std::string_view line, int index) {
    if (index < 0) {
        return std::nullopt;
    }
    std::size_t start = 0;
    for (int i = 0; i < index; ++i) {
        const std::size_t comma = line.find(',', start);
        if (comma == std::string_view::npos) {
            return std::nullopt;
        }
        start = comma + 1;
    }
    const std::size_t end = line.find(',', start);
    return LeadingNumber(line.substr(start, end == std::string_view::npos ? end : end - start));
}

PolarReadReport ReadPolarText(std::string_view text, const std::string& path,
                              PerformanceTables& tables) {
    PolarReadReport report;
    PolarTextReader(text, tables).Read(path, report);
    return report;
}

PolarReadReport ReadPolarFile(const FileSystem& files, const std::string& path,
                              PerformanceTables& tables) {
    const Result<std::string> text = files.ReadFile(path);
    if (!text.Ok()) {
        tables.Polars.Count = 0;
        tables.Polars.Current = -1;
        PolarReadReport report;
        report.fileStatus = text.GetStatus();
        report.messages.push_back(std::string(kCorrupt) + "\r\n" + path);
        return report;
    }
    return ReadPolarText(text.Value(), path, tables);
}

}  // namespace wakeline
