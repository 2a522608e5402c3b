#pragma once
// Stand-ins for the outside world that core tests share: a clock the test sets, files held in
// memory (with switches that make writing fail) and dialogs that record what they were shown.

#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/clock.h"
#include "base/file_system.h"
#include "base/user_dialogs.h"

namespace wakeline::testing {

// A clock standing still at `now` until the test moves it. The local date is the UTC date
// unless the test sets `localDate`.
class FakeClock : public Clock {
  public:
    CalendarFields UtcNow() const override { return now; }
    CalendarDate LocalDateAt(DateTime utc) const override {
        const CalendarFields fields = FieldsFromDateTime(utc);
        return localDate.value_or(CalendarDate{fields.year, fields.month, fields.day});
    }

    CalendarFields now{2026, 11, 15, 23, 42, 16};
    std::optional<CalendarDate> localDate;
};

// Files and directories in memory. A path is a file when `files` holds it and a directory
// when `directories` holds it; nothing else exists. Appends and writes to a path in
// `readOnlyPaths`, or any append or write while `failWrites` is set, fail and change nothing.
class FakeFileSystem : public FileSystem {
  public:
    bool FileExists(const std::string& path) const override { return files.count(path) > 0; }
    bool DirectoryExists(const std::string& path) const override {
        return directories.count(path) > 0;
    }
    std::optional<std::string> ReadFile(const std::string& path) const override {
        const auto found = files.find(path);
        return found == files.end() ? std::nullopt : std::optional(found->second);
    }
    bool AppendToFile(const std::string& path, std::string_view bytes) override {
        ++appendCalls;
        if (!Writable(path)) {
            return false;
        }
        files[path].append(bytes);
        return true;
    }
    bool WriteFile(const std::string& path, std::string_view bytes) override {
        if (!Writable(path)) {
            return false;
        }
        files[path] = std::string(bytes);
        return true;
    }

    std::map<std::string, std::string> files;
    std::set<std::string> directories;
    std::set<std::string> readOnlyPaths;
    bool failWrites = false;
    int appendCalls = 0;  // every call, failed or not

  private:
    bool Writable(const std::string& path) const {
        return !failWrites && readOnlyPaths.count(path) == 0;
    }
};

// Dialogs that record every text in the order shown and answer as the test says; no text is
// ever typed in.
class RecordingDialogs : public UserDialogs {
  public:
    void ShowMessage(const std::string& text) override { messages.push_back(text); }
    bool AskOkCancel(const std::string& text) override {
        messages.push_back(text);
        return okCancelAnswer;
    }
    std::optional<std::string> AskText(const std::string&, const std::string&) override {
        return std::nullopt;
    }

    std::vector<std::string> messages;  // ShowMessage and AskOkCancel texts
    bool okCancelAnswer = true;
};

}  // namespace wakeline::testing
