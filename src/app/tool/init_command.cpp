// wakeline-tool init [DIR]: a starter settings file and its track directory, for a sailor who
// has no chart plotter's SeaClear_2.ini to point the navigation centre at. It never replaces a
// file that is there: that file may hold a season's thresholds.

#include <fcntl.h>
#include <unistd.h>

#include <QCommandLineParser>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <optional>
#include <string>
#include <system_error>

#include "app/command_line_options.h"
#include "app/tool/commands.h"
#include "base/status.h"
#include "shell/platform/run_platform.h"
#include "shell/starter_settings.h"

namespace wakeline::tool {
namespace {

constexpr const char* kUsage =
    "usage: wakeline-tool init [DIR]\n"
    "Writes a starter settings file SeaClear_2.ini, each setting explained in it, and creates\n"
    "the track directory it names:\n"
    "  without DIR  $XDG_CONFIG_HOME/Wakeline/SeaClear_2.ini (default ~/.config/...), where\n"
    "               wakeline looks when started without a command line, and the tracks in\n"
    "               $XDG_DATA_HOME/wakeline/traces (default ~/.local/share/...)\n"
    "  with DIR     DIR/SeaClear_2.ini and DIR/traces (DIR is created)\n"
    "A settings file that is there already is never replaced.\n\n"
    "  -h, --help     this text\n"
    "  -v, --version  the program's name and version\n\n"
    "Exit status: 0 written, 1 the file is there already or could not be written, 2 usage\n"
    "error.\n";

int Fail(const std::string& why) {
    std::fprintf(stderr, "wakeline-tool init: %s\n", why.c_str());
    return kExitFailed;
}

Status MakeDirectory(const std::string& path) {
    std::error_code error;
    std::filesystem::create_directories(path, error);
    if (error) {
        return Status::Failure("create the directory", path, error.message());
    }
    return {};
}

// Creates the file only when it is not there (O_EXCL), so a file that appeared since the
// check is not replaced either; a file left half-written is removed again.
Status WriteNewFile(const std::string& path, const std::string& text) {
    const int fd = ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644);
    if (fd < 0) {
        return Status::FromErrno("create", path, errno);
    }
    std::size_t done = 0;
    while (done < text.size()) {
        const ssize_t n = ::write(fd, text.data() + done, text.size() - done);
        if (n < 0 && errno == EINTR) {
            continue;
        }
        if (n <= 0) {
            const int error = n < 0 ? errno : EIO;
            ::close(fd);
            ::unlink(path.c_str());
            return Status::FromErrno("write", path, error);
        }
        done += static_cast<std::size_t>(n);
    }
    if (::fsync(fd) != 0 || ::close(fd) != 0) {
        const int error = errno;
        ::unlink(path.c_str());
        return Status::FromErrno("write", path, error);
    }
    return {};
}

}  // namespace

int RunInit(const Arguments& args) {
    QCommandLineParser parser;
    if (const auto status = ParseSubcommand(parser, args, "init", kUsage)) {
        return *status;
    }
    const QStringList words = parser.positionalArguments();
    if (words.size() > 1) {
        return ReportUsageError(SubcommandProgram("init"),
                                "unexpected argument '" + Bytes(words[1]) + "'");
    }
    std::optional<std::string> dir;
    if (!words.isEmpty()) {
        dir = Bytes(words.front());
        if (dir->empty()) {
            return ReportUsageError(SubcommandProgram("init"), "DIR is empty");
        }
    }
    std::error_code error;
    const std::string current = std::filesystem::current_path(error).string();
    const Result<StarterPlace> chosen =
        ChooseStarterPlace(dir, UserHomesFromEnvironment(), current);
    if (!chosen.Ok()) {
        return Fail(chosen.GetStatus().Message());
    }
    const StarterPlace& place = chosen.Value();
    if (std::filesystem::exists(std::filesystem::symlink_status(place.settingsPath))) {
        return Fail(place.settingsPath + " is there already and is left as it is; edit it, or " +
                    "move it away to write a new one");
    }
    const std::string settingsDir = std::filesystem::path(place.settingsPath).parent_path();
    for (const std::string& path : {settingsDir, place.trackDir}) {
        if (const Status made = MakeDirectory(path); !made.Ok()) {
            return Fail(made.Message());
        }
    }
    if (const Status written =
            WriteNewFile(place.settingsPath, StarterSettingsText(place.trackDir));
        !written.Ok()) {
        return Fail(written.Message());
    }
    std::fputs(StarterReport(place).c_str(), stdout);
    return std::fflush(stdout) == 0 ? kExitOk : kExitFailed;
}

}  // namespace wakeline::tool
