#include "shell/help_content.h"

#include "base/line_reader.h"
#include "base/number_format.h"

namespace wakeline {
namespace {

constexpr const char* kBuiltInHelp[] = {
    "THIS IS A BRIEF HELP, SINCE I CANNOT FIND FILE \"Wakeline.txt\" ",
    "",
    "this is a Navigation centre, to be used in conjunction with",
    nullptr,  // the chart plotter and where to find it
    "",
    "it should work on Windows PCs",
    "",
    "To enable it, add the following line to the [Program Setup] section in the seaclear_2.ini "
    "file:",
    "DDE = 1",
    "",
    "There are several sections in the .ini file;",
    "Check that you use the correct section.",
    "",
    "wakeline will start displaying and logging data if available",
    "",
};

std::string BuiltInHelp(const std::string& homepage) {
    std::string text;
    for (const char* line : kBuiltInHelp) {
        text += line != nullptr ? std::string(line)
                                : "the SeaClear II chart plotter, see " + homepage + "/seaclear. ";
        text += "\r\n";
    }
    return text + "author: " + homepage;
}

std::string HelpFileText(const std::string& bytes) {
    std::string text;
    for (const std::string& line : SplitLines(bytes)) {
        text += line + "\r\n";
    }
    return text;
}

}  // namespace

std::string ThresholdText(float value) {
    std::string text = FormatMask(value, "0.#######");
    // Optional decimals drop their zeros but keep the point.
    if (!text.empty() && text.back() == '.') {
        text.pop_back();
    }
    return text;
}

HelpContent MakeHelpContent(const HelpInput& input, const FileSystem& files) {
    HelpContent help;
    help.title =
        input.title + "  " + input.version + "\r\n" + input.programDir + "/" + input.programName;
    help.information = {
        ".ini file used:\r\n" + input.iniPath,
        "directory where track file will be stored:\r\n" +
            (input.traceOn ? input.trackDir : std::string("no tracefile will be made")),
        "SeaClear_2.exe which will be started from Wakeline\r\n" + input.seaClearExe,
        "command line arguments:\r\n" + input.commandLine,
    };
    help.thresholds = {
        "Time " + ThresholdText(input.trackTime),
        "CompDev " + ThresholdText(input.trackCompDev),
        "Distance " + ThresholdText(input.trackDistance),
        "Disk write interval (sec.) " + std::to_string(input.diskWriteInterval),
    };

    for (const std::string& dir : {input.programDir, input.dataDir}) {
        if (dir.empty()) {
            continue;
        }
        const std::string path = dir + "/Wakeline.txt";
        if (!files.FileExists(path)) {
            continue;
        }
        Result<std::string> bytes = files.ReadFile(path);
        if (bytes.Ok()) {
            help.text = HelpFileText(bytes.Value());
            help.textSource = path;
            return help;
        }
    }
    help.text = BuiltInHelp(input.homepage);
    return help;
}

}  // namespace wakeline
