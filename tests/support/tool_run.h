#pragma once
// Runs this build's wakeline-tool with arguments and bytes on standard input, for the platform
// tests of its commands. Only the platform tests know where the program is.

#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace wakeline::testing {

struct ToolRun {
    int status = -1;  // the exit status, -1 when the program did not end by itself
    std::string out;  // standard output; standard error is dropped
};

inline ToolRun RunTool(const std::vector<std::string>& arguments, const std::string& input = "") {
    const auto dir =
        std::filesystem::temp_directory_path() / ("wakeline_tool_" + std::to_string(::getpid()));
    std::filesystem::create_directories(dir);
    std::ofstream(dir / "in", std::ios::binary) << input;
    std::string command = std::string("'") + WAKELINE_TOOL_BINARY + "'";
    for (const std::string& argument : arguments) {
        command += " '" + argument + "'";
    }
    command += " <'" + (dir / "in").string() + "' >'" + (dir / "out").string() + "' 2>/dev/null";
    ToolRun run;
    const int raw = std::system(command.c_str());
    run.status = WIFEXITED(raw) ? WEXITSTATUS(raw) : -1;
    std::ifstream out(dir / "out", std::ios::binary);
    run.out.assign(std::istreambuf_iterator<char>(out), {});
    std::filesystem::remove_all(dir);
    return run;
}

}  // namespace wakeline::testing
