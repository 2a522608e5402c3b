#include "support/fakes.h"

namespace wakeline::testing {

CalendarDate FakeClock::LocalDateAt(DateTime utc) const {
    if (localDate) {
        return *localDate;
    }
    const CalendarFields fields = FieldsFromDateTime(utc);
    return CalendarDate{fields.year, fields.month, fields.day};
}

bool FakeFileSystem::FileExists(const std::string& path) const {
    return files.count(path) > 0;
}

bool FakeFileSystem::DirectoryExists(const std::string& path) const {
    return directories.count(path) > 0;
}

std::optional<std::string> FakeFileSystem::ReadFile(const std::string& path) const {
    auto found = files.find(path);
    if (found == files.end()) {
        return std::nullopt;
    }
    return found->second;
}

bool FakeFileSystem::AppendToFile(const std::string& path, std::string_view bytes) {
    ++appendCalls;
    if (failWrites || readOnlyPaths.count(path) > 0) {
        return false;
    }
    files[path].append(bytes);
    return true;
}

bool FakeFileSystem::WriteFile(const std::string& path, std::string_view bytes) {
    if (failWrites || readOnlyPaths.count(path) > 0) {
        return false;
    }
    files[path] = std::string(bytes);
    return true;
}

bool RecordingDialogs::AskOkCancel(const std::string& text) {
    messages.push_back(text);
    return okCancelAnswer;
}

std::optional<std::string> RecordingDialogs::AskText(const std::string& prompt,
                                                     const std::string& title) {
    prompts.push_back(title + ": " + prompt);
    return textAnswer;
}

}  // namespace wakeline::testing
