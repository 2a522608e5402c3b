#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <spawn.h>
#include <stdlib.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <thread>
#include <vector>

#include <nlohmann/json.hpp>

namespace {

namespace fs = std::filesystem;

std::string ReadAll(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

struct ToolRun {
    int status = -1;
    std::vector<nlohmann::json> objects;
};

ToolRun RunTool(const std::string& arguments, const fs::path& dir) {
    const std::string command = std::string(WAKELINE_TOOL_BINARY) + " seatalk " + arguments + " >" +
                                (dir / "out").string() + " 2>/dev/null";
    ToolRun run;
    const int raw = std::system(command.c_str());
    run.status = WIFEXITED(raw) ? WEXITSTATUS(raw) : -1;
    std::ifstream out(dir / "out", std::ios::binary);
    for (std::string line; std::getline(out, line);) {
        run.objects.push_back(nlohmann::json::parse(line));
    }
    return run;
}

fs::path TempDir(const char* name) {
    const fs::path dir =
        fs::temp_directory_path() / (std::string(name) + std::to_string(::getpid()));
    fs::create_directories(dir);
    return dir;
}

TEST(SeaTalkCommand, AFileGivesOneObjectPerEventAndItsCapture) {
    const fs::path dir = TempDir("wakeline_seatalk_");
    const std::string fixture = std::string(WAKELINE_TEST_DATA) + "/seatalk/short_passage.bin";

    const ToolRun run = RunTool("--json --capture " + (dir / "raw").string() + " " + fixture, dir);
    EXPECT_EQ(run.status, 0);
    ASSERT_EQ(run.objects.size(), 8u);
    EXPECT_EQ(run.objects[7]["report"],
              "20 01 3C 00 " + std::string(18, ' ') + "m:WS  20: 6 knots");
    EXPECT_EQ(run.objects[7]["line"],
              "000.0000,000.0000,00.00,00.00,-00.04,-00.04,07.95,02.18,00.79,03.94,02.22,02.57,"
              "00.00,01.76,06.00,,,,,,,,\r\n");
    EXPECT_EQ(run.objects[7]["timeStamp"], "2024 03 15 14:24:03");
    EXPECT_EQ(ReadAll(dir / "raw"), ReadAll(fixture));

    // In mode SB without marks the leading 0x12 (two bits) is no command; 0x34 neither.
    EXPECT_EQ(RunTool("--json --mode SB " + fixture, dir).objects.size(), 8u);
    EXPECT_EQ(RunTool((dir / "missing.bin").string(), dir).status, 1);
    fs::remove_all(dir);
}

TEST(SeaTalkCommand, ADeviceIsReadUntilInterrupted) {
    // A pseudo-terminal keeps no parity, so mode SB's bit count starts the datagram: 0x01 has
    // one bit set.
    const int master = ::posix_openpt(O_RDWR | O_NOCTTY);
    ASSERT_GE(master, 0);
    ASSERT_EQ(::grantpt(master), 0);
    ASSERT_EQ(::unlockpt(master), 0);
    const std::string slave = ::ptsname(master);
    const fs::path dir = TempDir("wakeline_seatalk_dev_");
    const std::string out = (dir / "out").string();

    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 1, out.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    posix_spawn_file_actions_addopen(&actions, 2, "/dev/null", O_WRONLY, 0);
    std::vector<std::string> words = {
        WAKELINE_TOOL_BINARY, "seatalk", "--mode", "SB", "--json", slave};
    std::vector<char*> argv;
    for (auto& word : words) {
        argv.push_back(word.data());
    }
    argv.push_back(nullptr);
    pid_t pid = 0;
    ASSERT_EQ(::posix_spawn(&pid, argv[0], &actions, nullptr, argv.data(), environ), 0);
    posix_spawn_file_actions_destroy(&actions);

    // Written until the tool has the port open and has answered.
    const unsigned char datagram[] = {0x01, 0x00, 0x07};
    for (int i = 0; i < 100 && ReadAll(out).empty(); ++i) {
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
        ASSERT_EQ(::write(master, datagram, sizeof datagram), 3);
    }
    ::kill(pid, SIGINT);
    int raw = 0;
    ::waitpid(pid, &raw, 0);
    ::close(master);
    EXPECT_TRUE(WIFEXITED(raw) && WEXITSTATUS(raw) == 0);
    const std::string printed = ReadAll(out);
    ASSERT_FALSE(printed.empty());
    const auto first = nlohmann::json::parse(printed.substr(0, printed.find('\n')));
    EXPECT_EQ(first["report"], "01 00 07 " + std::string(21, ' ') + "m:");
    fs::remove_all(dir);
}

}  // namespace
