#include "shell/command_line.h"

#include "base/ascii_case.h"
#include "base/text_number.h"

namespace wakeline {

std::vector<std::string> SplitCommandLine(std::string_view line) {
    std::vector<std::string> fields;
    if (line.empty()) {
        return fields;
    }
    std::size_t start = 0;
    while (true) {
        const std::size_t comma = line.find(',', start);
        if (comma == std::string_view::npos) {
            fields.emplace_back(line.substr(start));
            return fields;
        }
        fields.emplace_back(line.substr(start, comma - start));
        start = comma + 1;
    }
}

std::optional<std::int16_t> ParseDebugMode(std::string_view field) {
    const std::string upper = UpperCase(field);
    if (upper == "I") {
        return std::int16_t{1};
    }
    if (upper == "F") {
        return std::int16_t{2};
    }
    return WholeNumber16(field);
}

SourceOptions ParseSourceOptions(std::string_view field) {
    const std::string upper = UpperCase(field);
    SourceOptions options;
    if (upper == "SB") {
        options.SeaTalkMode = 1;
    } else if (upper == "SC") {
        options.SeaTalkMode = 2;
    } else if (upper == "M") {
        options.LiveOptionM = true;
    } else if (upper == "X") {
        options.TablesLocked = true;
    }
    return options;
}

TraceOptions ParseTraceOptions(std::string_view field) {
    TraceOptions options;
    options.TraceOn = UpperCase(field) != "NOTRACE";
    if (LeadingNumber(field) != 0.0) {
        options.DiskWriteInterval = WholeNumber16(field);
        options.IntervalOutOfRange = !options.DiskWriteInterval.has_value();
    }
    return options;
}

}  // namespace wakeline
