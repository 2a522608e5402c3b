#include "performance/polar_import.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "base/line_reader.h"
#include "base/number_format.h"
#include "base/single_precision.h"
#include "base/text_number.h"

namespace wakeline {
namespace {

constexpr std::size_t kMaxRows = 11;
constexpr std::size_t kMaxColumns = 10;
// A first line of more wind speeds than this is no polar grid: refused before its rows are
// read, which keeps the memory of any input small (the rows are bounded by the 181 whole
// angles 0..180 they must ascend through).
constexpr std::size_t kMaxGridWindSpeeds = 50;
constexpr std::int16_t kMaxTables = 6;
constexpr std::int16_t kTablesReadBack = 5;  // the polar file's reader stops at a sixth

// The polar file's masks: what it writes is what it reads back.
constexpr std::string_view kWindSpeedMask = "00";
constexpr std::string_view kAngleMask = "##0";
constexpr std::string_view kSpeedMask = "#0.0";

enum class Separator { Tab, Semicolon, Comma, Blanks };

bool IsBlank(char c) {
    return c == ' ' || c == '\t';
}

Separator SeparatorOf(std::string_view header) {
    if (header.find('\t') != std::string_view::npos) {
        return Separator::Tab;
    }
    if (header.find(';') != std::string_view::npos) {
        return Separator::Semicolon;
    }
    if (header.find(',') != std::string_view::npos) {
        return Separator::Comma;
    }
    return Separator::Blanks;
}

std::string_view Trimmed(std::string_view field) {
    while (!field.empty() && IsBlank(field.front())) {
        field.remove_prefix(1);
    }
    while (!field.empty() && IsBlank(field.back())) {
        field.remove_suffix(1);
    }
    if (field.size() >= 2 && field.front() == '"' && field.back() == '"') {
        field = Trimmed(field.substr(1, field.size() - 2));
    }
    return field;
}

// The line's fields. With runs of blanks, `emptyCorner` keeps a leading run as an empty first
// field (the first line's corner); rows skip it, so that right-aligned numbers read.
std::vector<std::string_view> Fields(std::string_view line, Separator separator, bool emptyCorner) {
    std::vector<std::string_view> fields;
    if (separator == Separator::Blanks) {
        if (emptyCorner && !line.empty() && IsBlank(line.front())) {
            fields.emplace_back();
        }
        std::size_t at = 0;
        while (at < line.size()) {
            while (at < line.size() && IsBlank(line[at])) {
                ++at;
            }
            const std::size_t start = at;
            while (at < line.size() && !IsBlank(line[at])) {
                ++at;
            }
            if (at > start) {
                fields.push_back(Trimmed(line.substr(start, at - start)));
            }
        }
        return fields;
    }
    const char split = separator == Separator::Tab         ? '\t'
                       : separator == Separator::Semicolon ? ';'
                                                           : ',';
    std::size_t start = 0;
    for (;;) {
        const std::size_t end = line.find(split, start);
        fields.push_back(Trimmed(line.substr(start, end - start)));
        if (end == std::string_view::npos) {
            return fields;
        }
        start = end + 1;
    }
}

// The value as the polar file gives it back after writing it with `mask`; empty when it does
// not fit a 32-bit float.
std::optional<float> Rounded(double value, std::string_view mask) {
    const std::optional<float> single = ToSingle(value);
    if (!single) {
        return std::nullopt;
    }
    return ToSingle(LeadingNumber(FormatToWidth(*single, mask, 0)));
}

std::string Whole(float value) {
    return FormatToWidth(value, "0", 0);
}

std::string LineText(std::size_t index) {
    return "line " + std::to_string(index + 1);
}

// A field quoted in a message, cut short so that a binary file does not flood it.
std::string Quoted(std::string_view field) {
    constexpr std::size_t kShown = 24;
    return "'" + std::string(field.substr(0, kShown)) + (field.size() > kShown ? "...'" : "'");
}

Status Refused(std::string reason) {
    return Status::Failure("import", "the polar grid", std::move(reason));
}

Status CheckName(const std::string& name) {
    if (name.empty()) {
        return Refused("the sail needs a name");
    }
    if (name.find_first_of("=\r\n") != std::string::npos) {
        return Refused("the sail name " + Quoted(name) +
                       " holds '=' or a line end, which the polar file cannot hold");
    }
    return {};
}

struct AngleRow {
    float angle = 0.0f;
    std::vector<float> speeds;  // one per wind speed of the first line; 0 for no speed
    bool any = false;           // a speed above 0 somewhere
};

struct Grid {
    std::vector<float> windSpeeds;
    std::vector<AngleRow> rows;  // ascending by angle
};

// Reads the grid's lines into rounded values; the notes say which lines were left out.
Result<Grid> ReadGrid(std::string_view text, std::vector<std::string>& notes) {
    const std::vector<std::string> lines = SplitLines(text);
    std::size_t at = 0;
    auto blank = [](std::string_view line) { return Trimmed(line).empty(); };
    while (at < lines.size() && blank(lines[at])) {
        ++at;
    }
    if (at == lines.size()) {
        return Refused("the grid is empty: its first line must hold the wind speeds");
    }
    const Separator separator = SeparatorOf(lines[at]);
    std::vector<std::string_view> header = Fields(lines[at], separator, true);
    while (!header.empty() && header.back().empty()) {
        header.pop_back();
    }
    if (header.size() < 2) {
        return Refused(LineText(at) + " holds no wind speeds after its corner cell");
    }
    if (header.size() - 1 > kMaxGridWindSpeeds) {
        return Refused(LineText(at) + " holds " + std::to_string(header.size() - 1) +
                       " wind speeds; a sail table holds at most 11");
    }
    Grid grid;
    for (std::size_t f = 1; f < header.size(); ++f) {
        const std::optional<double> value = DecimalNumberValue(header[f]);
        if (!value || *value < 0.0) {
            return Refused(LineText(at) + ": " + Quoted(header[f]) + " is not a wind speed");
        }
        const std::optional<float> speed = Rounded(*value, kWindSpeedMask);
        if (!speed) {
            return Refused(LineText(at) + ": wind speed " + Quoted(header[f]) + " is too large");
        }
        if (!grid.windSpeeds.empty() && *speed <= grid.windSpeeds.back()) {
            return Refused(LineText(at) + ": the wind speeds must ascend in whole knots, not " +
                           Whole(*speed) + " after " + Whole(grid.windSpeeds.back()));
        }
        grid.windSpeeds.push_back(*speed);
    }

    std::size_t notNumbers = 0;
    std::string firstNotNumber;
    for (++at; at < lines.size(); ++at) {
        if (blank(lines[at])) {
            continue;
        }
        const std::vector<std::string_view> fields = Fields(lines[at], separator, false);
        const std::optional<double> value = DecimalNumberValue(fields.front());
        if (!value) {
            notes.push_back(LineText(at) + " " + Quoted(Trimmed(lines[at])) +
                            " was left out: it does not start with a true wind angle");
            continue;
        }
        AngleRow row;
        const std::optional<float> angle = Rounded(*value, kAngleMask);
        if (!angle || *angle < 0.0f || *angle > 180.0f) {
            return Refused(LineText(at) + ": the true wind angle " + Quoted(fields.front()) +
                           " lies outside 0 to 180 degrees");
        }
        if (!grid.rows.empty() && *angle <= grid.rows.back().angle) {
            return Refused(LineText(at) + ": the true wind angles must ascend in whole degrees, " +
                           "not " + Whole(*angle) + " after " + Whole(grid.rows.back().angle));
        }
        row.angle = *angle;
        row.speeds.assign(grid.windSpeeds.size(), 0.0f);
        for (std::size_t j = 0; j < grid.windSpeeds.size() && j + 1 < fields.size(); ++j) {
            const std::string_view field = fields[j + 1];
            if (field.empty()) {
                continue;
            }
            const std::optional<double> cell = DecimalNumberValue(field);
            if (!cell) {
                if (notNumbers++ == 0) {
                    firstNotNumber = LineText(at) + " " + Quoted(field);
                }
                continue;
            }
            const std::optional<float> speed = Rounded(*cell, kSpeedMask);
            if (!speed) {
                return Refused(LineText(at) + ": the boat speed " + Quoted(field) +
                               " is too large");
            }
            if (*speed > 0.0f) {
                row.speeds[j] = *speed;
                row.any = true;
            }
        }
        grid.rows.push_back(std::move(row));
    }
    if (notNumbers > 0) {
        notes.push_back(std::to_string(notNumbers) + (notNumbers == 1 ? " cell" : " cells") +
                        " not a number taken as no speed, the first at " + firstNotNumber);
    }
    if (grid.rows.empty()) {
        return Refused("the grid has no lines of true wind angles after the wind speeds");
    }
    return grid;
}

// Positions of the `kept` of `count` items spread evenly, the first and the last among them:
// round(i * (count - 1) / (kept - 1)), halves up, which ascends strictly while kept <= count.
std::vector<std::size_t> SpreadEvenly(std::size_t count, std::size_t kept) {
    std::vector<std::size_t> positions;
    const std::size_t steps = kept - 1;
    for (std::size_t i = 0; i < kept; ++i) {
        positions.push_back((2 * i * (count - 1) + steps) / (2 * steps));
    }
    return positions;
}

std::string AngleList(const std::vector<float>& angles) {
    std::string text;
    for (float angle : angles) {
        text += (text.empty() ? "" : ", ") + Whole(angle);
    }
    return text;
}

}  // namespace

Result<PolarImport> ImportPolarGrid(std::string_view text, std::string name) {
    if (Status named = CheckName(name); !named.Ok()) {
        return named;
    }
    std::vector<std::string> notes;
    Result<Grid> read = ReadGrid(text, notes);
    if (!read.Ok()) {
        return read.GetStatus();
    }
    const Grid grid = std::move(read).Value();

    // The wind speeds with a speed somewhere become the rows, each with its best upwind angle.
    struct Row {
        std::size_t speed;   // index into the grid's wind speeds
        std::size_t twaMin;  // index into the grid's rows
    };
    std::vector<Row> rows;
    for (std::size_t j = 0; j < grid.windSpeeds.size(); ++j) {
        std::size_t first = 0;
        while (first < grid.rows.size() && grid.rows[first].speeds[j] <= 0.0f) {
            ++first;
        }
        if (first == grid.rows.size()) {
            notes.push_back("wind speed " + Whole(grid.windSpeeds[j]) +
                            " was left out: it has no boat speed above 0");
        } else {
            rows.push_back({j, first});
        }
    }
    if (rows.empty()) {
        return Refused("no wind speed of the grid has a boat speed above 0");
    }
    if (rows.size() > kMaxRows) {
        return Refused("the grid has " + std::to_string(rows.size()) +
                       " wind speeds with boat speeds; a sail table holds at most 11");
    }

    // The angles above the smallest best upwind angle become the columns (indices ascend with
    // the angles, so the smallest index is the smallest angle).
    std::size_t lowest = rows.front().twaMin;
    for (const Row& row : rows) {
        lowest = std::min(lowest, row.twaMin);
    }
    std::vector<std::size_t> usable;
    std::vector<float> empty;
    for (std::size_t i = lowest + 1; i < grid.rows.size(); ++i) {
        if (grid.rows[i].any) {
            usable.push_back(i);
        } else {
            empty.push_back(grid.rows[i].angle);
        }
    }
    if (!empty.empty()) {
        notes.push_back("true wind angles left out, no boat speed above 0: " + AngleList(empty));
    }
    if (usable.empty()) {
        return Refused("the grid has no true wind angle with boat speeds above " +
                       Whole(grid.rows[lowest].angle) + ", the smallest best upwind angle");
    }
    std::vector<std::size_t> columns = usable;
    if (usable.size() > kMaxColumns) {
        columns.clear();
        std::vector<float> leftOut;
        const std::vector<std::size_t> kept = SpreadEvenly(usable.size(), kMaxColumns);
        for (std::size_t u = 0, k = 0; u < usable.size(); ++u) {
            if (k < kept.size() && kept[k] == u) {
                columns.push_back(usable[u]);
                ++k;
            } else {
                leftOut.push_back(grid.rows[usable[u]].angle);
            }
        }
        notes.push_back(std::to_string(usable.size()) +
                        " true wind angles above the best upwind angle, a sail table holds 10: " +
                        "left out " + AngleList(leftOut));
    }

    PolarImport import;
    PolarTable& table = import.table;
    table.Name = std::move(name);
    table.RowCount = static_cast<std::int16_t>(rows.size());
    table.ColumnCount = static_cast<std::int16_t>(columns.size());
    for (std::size_t c = 0; c < columns.size(); ++c) {
        table.ColumnAngle[c + 1] = grid.rows[columns[c]].angle;
    }
    for (std::size_t r = 0; r < rows.size(); ++r) {
        const std::size_t j = rows[r].speed;
        table.RowWindSpeed[r + 1] = grid.windSpeeds[j];
        table.RowTwaMin[r + 1] = grid.rows[rows[r].twaMin].angle;
        table.Cell[r + 1][0] = grid.rows[rows[r].twaMin].speeds[j];
        for (std::size_t c = 0; c < columns.size(); ++c) {
            table.Cell[r + 1][c + 1] = grid.rows[columns[c]].speeds[j];
        }
    }
    for (const std::string& note : notes) {
        import.message += (import.message.empty() ? "" : "\n") + note;
    }
    return import;
}

Result<std::string> AddImportedTable(PolarSet& set, PolarTable table) {
    auto refused = [&table](std::string reason) {
        return Status::Failure("add the sail", Quoted(table.Name), std::move(reason));
    };
    if (set.Count < 0 || set.Count >= kMaxTables) {
        return refused("the tables hold six sails already, the most they can");
    }
    for (std::int16_t p = 0; p < set.Count; ++p) {
        if (set.Tables[static_cast<std::size_t>(p)].Name == table.Name) {
            return refused("a sail of that name is in the tables already");
        }
    }
    std::string note;
    if (set.Count == kTablesReadBack) {
        note = "sail " + Quoted(table.Name) +
               " is the sixth: the polar file is read back with five sails only, so it is lost "
               "at the next start";
    }
    set.Tables[static_cast<std::size_t>(set.Count)] = std::move(table);
    set.Current = set.Count;
    ++set.Count;
    return note;
}

}  // namespace wakeline
