#pragma once
// The seam between a data source and the run that shows and records its lines.

#include <string>

namespace wakeline {

// Where a new data line goes: the live display and the track writer.
class DataLineSink {
  public:
    virtual ~DataLineSink() = default;
    // Computes and shows the live display; false when the line could not be displayed, and
    // such a line is not recorded.
    virtual bool TraceDisplayLine(const std::string& line) = 0;
    virtual void TraceWriteLine(const std::string& line, bool force) = 0;
};

}  // namespace wakeline
