#include "bench_boat.h"

#include <unistd.h>

#include <algorithm>
#include <fstream>

namespace wakeline::bench {

namespace fs = std::filesystem;

BenchBoat::BenchBoat() {
    dir_ = fs::temp_directory_path() / ("wakeline_window_bench_" + std::to_string(::getpid()));
    fs::create_directories(dir_ / "traces");
    fs::create_directories(ConfigDir());
    fs::create_directories(StateDir());
    ini_ = dir_ / "SeaClear_2.ini";
    std::ofstream(ini_, std::ios::binary)
        << "[Program Setup]\r\nDDE=1\r\nTrack Time=10\r\nTrack Dir=" << (dir_ / "traces").string()
        << "\r\n";

    // A track file's record is "YYYYMMDD HH:MM:SS CZ," and the data line the link delivered.
    std::ifstream voyage(WAKELINE_VOYAGE_PATH, std::ios::binary);
    std::string record;
    while (std::getline(voyage, record)) {
        if (!record.empty() && record.back() == '\r') {
            record.pop_back();
        }
        const std::size_t comma = record.find(',');
        if (comma != std::string::npos) {
            lines_.push_back(record.substr(comma + 1));
        }
    }
    // The voyage from where its waypoint is set (the last field, the waypoint's name, filled):
    // the waypoint's rows are then on the screen for good, so that going round the voyage
    // again changes values rather than the window's layout, as a long passage does.
    const auto withWaypoint =
        std::find_if(lines_.begin(), lines_.end(),
                     [](const std::string& line) { return !line.empty() && line.back() != ','; });
    lines_.erase(lines_.begin(), withWaypoint);
}

BenchBoat::~BenchBoat() {
    std::error_code ignored;
    fs::remove_all(dir_, ignored);
}

}  // namespace wakeline::bench
