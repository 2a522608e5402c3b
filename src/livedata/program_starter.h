#pragma once
// The seam through which the link starts the chart plotter's program.

#include <string>

#include "base/status.h"

namespace wakeline {

// Starts another program, detached from this one. Ok when it was started, otherwise a failure
// to "start" `path` with the reason (which the link logs).
class ProgramStarter {
  public:
    virtual ~ProgramStarter() = default;
    virtual Status StartProgram(const std::string& path) = 0;
};

}  // namespace wakeline
