#include "livedata/data_line.h"

namespace wakeline {

DataLinePieces SplitPieces(std::string_view line) {
    DataLinePieces pieces;
    std::size_t start = 0;
    while (pieces.count < kFieldCount) {
        const std::size_t comma = line.find(',', start);
        if (comma == std::string_view::npos) {
            pieces.piece[pieces.count++] = line.substr(start);
            break;
        }
        pieces.piece[pieces.count++] = line.substr(start, comma - start);
        start = comma + 1;
    }
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
