#pragma once
// The boat the window benchmarks sail: a settings file that takes its data from the chart
// plotter link, a traces directory, and configuration and state directories of its own, all
// in a temporary directory that goes when the benchmarks end; and the recorded voyage's data
// lines, as the chart plotter would send them, once a waypoint is set.

#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

namespace wakeline::bench {

class BenchBoat {
  public:
    BenchBoat();
    ~BenchBoat();
    BenchBoat(const BenchBoat&) = delete;
    BenchBoat& operator=(const BenchBoat&) = delete;

    const std::filesystem::path& Dir() const { return dir_; }
    const std::filesystem::path& Ini() const { return ini_; }
    std::filesystem::path ConfigDir() const { return dir_ / "config"; }
    std::filesystem::path StateDir() const { return dir_ / "state"; }
    // The n-th data line of the voyage with its waypoint set, without its line end; after the
    // last line the voyage starts again, so consecutive lines always differ.
    const std::string& Line(std::size_t n) const { return lines_[n % lines_.size()]; }
    bool HasLines() const { return !lines_.empty(); }

  private:
    std::filesystem::path dir_;
    std::filesystem::path ini_;
    std::vector<std::string> lines_;
};

}  // namespace wakeline::bench
