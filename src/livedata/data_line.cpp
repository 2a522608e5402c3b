#include "livedata/data_line.h"

namespace wakeline {

DataLinePieces SplitPieces(std::string_view line) {
    // One pass over the characters: the fields are short, and a search call per field would
    // cost more than the scan.
    DataLinePieces pieces;
    std::size_t start = 0;
    for (std::size_t i = 0; i < line.size(); ++i) {
        if (line[i] == ',') {
            pieces.piece[pieces.count++] = line.substr(start, i - start);
            start = i + 1;
            if (pieces.count == kFieldCount) {
                return pieces;
            }
        }
    }
    pieces.piece[pieces.count++] = line.substr(start);
    return pieces;
}

SplitOutcome SplitDataLine(std::string_view line, FieldTable& table) {
    const DataLinePieces pieces = SplitPieces(line);
    for (std::size_t i = 0; i < pieces.count; ++i) {
        table[i].Value.assign(pieces.piece[i]);
    }
    return SplitOutcome{pieces.count};
}

}  // namespace wakeline
