#include "app/command_line_options.h"

#include <cstdio>

namespace wakeline {

CommandLineRequest ParseCommandLine(QCommandLineParser& parser,
                                    const std::vector<std::string>& words) {
    const QCommandLineOption help({QStringLiteral("h"), QStringLiteral("help")},
                                  QStringLiteral("this text"));
    const QCommandLineOption version({QStringLiteral("v"), QStringLiteral("version")},
                                     QStringLiteral("the version"));
    parser.addOption(help);
    parser.addOption(version);
    // parse() takes the first word for the program's name.
    QStringList arguments{QStringLiteral("program")};
    for (const std::string& word : words) {
        arguments.append(QString::fromLatin1(word.data(), static_cast<qsizetype>(word.size())));
    }
    // An unknown option does not stop Qt's parser, so a later -h is still seen.
    const bool understood = parser.parse(arguments);
    if (parser.isSet(help)) {
        return {CommandLineRequest::Kind::Help, {}};
    }
    if (parser.isSet(version)) {
        return {CommandLineRequest::Kind::Version, {}};
    }
    if (!understood) {
        // Qt names a missing value with its dashes but an unknown option without them; the
        // option is named here as it was typed (a one-letter name came as "-x", since a single
        // dash groups short options).
        const QStringList unknown = parser.unknownOptionNames();
        if (unknown.isEmpty()) {
            return {CommandLineRequest::Kind::UsageError, Bytes(parser.errorText())};
        }
        const std::string dashes = unknown.front().size() == 1 ? "-" : "--";
        return {CommandLineRequest::Kind::UsageError,
                "Unknown option '" + dashes + Bytes(unknown.front()) + "'."};
    }
    return {};
}

std::string Bytes(const QString& text) {
    return text.toLatin1().toStdString();
}

std::string UsageErrorText(std::string_view program, std::string_view problem) {
    std::string text(program);
    text += ": ";
    text += problem;
    text += "\nTry '";
    text += program;
    text += " --help' for more information.\n";
    return text;
}

int ReportUsageError(std::string_view program, std::string_view problem) {
    std::fputs(UsageErrorText(program, problem).c_str(), stderr);
    return kExitUsageError;
}

}  // namespace wakeline
