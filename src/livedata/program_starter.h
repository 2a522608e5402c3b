#pragma once
// The seam through which the link starts the chart plotter's program.

#include <string>

namespace wakeline {

// Starts another program, detached from this one. Returns an empty text when it was started,
// otherwise the reason why it could not be (which the link logs).
class ProgramStarter {
  public:
    virtual ~ProgramStarter() = default;
    virtual std::string StartProgram(const std::string& path) = 0;
};

}  // namespace wakeline
