#pragma once
// Stand-ins for the outside world that core tests share: a clock the test sets, files held in
// memory (with switches that make writing fail) and dialogs that record what they were shown.

#include <cerrno>
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
// `readOnlyPaths` fail with EROFS, to a path in `fullPaths` or any while `failWrites` is set
// with ENOSPC, as a real disk says it; either way nothing changes.
class FakeFileSystem : public FileSystem {
  public:
    bool FileExists(const std::string& path) const override { return files.count(path) > 0; }
    bool DirectoryExists(const std::string& path) const override {
        return directories.count(path) > 0;
    }
    Result<std::string> ReadFile(const std::string& path) const override {
        const auto found = files.find(path);
        if (found == files.end()) {
            return Status::FromErrno("open", path, ENOENT);
        }
        return found->second;
    }
    Status AppendToFile(const std::string& path, std::string_view bytes) override {
        ++appendCalls;
        Status status = Writable("append to", path);
        if (status.Ok()) {
            files[path].append(bytes);
        }
        return status;
    }
    Status WriteFile(const std::string& path, std::string_view bytes) override {
        Status status = Writable("write", path);
        if (status.Ok()) {
            files[path] = std::string(bytes);
        }
        return status;
    }

    std::map<std::string, std::string> files;
    std::set<std::string> directories;
    std::set<std::string> readOnlyPaths;
    std::set<std::string> fullPaths;
    bool failWrites = false;
    int appendCalls = 0;  // every call, failed or not

  private:
    Status Writable(const char* action, const std::string& path) const {
        if (failWrites || fullPaths.count(path) > 0) {
            return Status::FromErrno(action, path, ENOSPC);
        }
        if (readOnlyPaths.count(path) > 0) {
            return Status::FromErrno(action, path, EROFS);
        }
        return {};
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
    std::optional<std::string> AskText(const std::string& prompt, const std::string&) override {
        prompts.push_back(prompt);
        return textAnswer;
    }

    std::vector<std::string> messages;  // ShowMessage and AskOkCancel texts
    bool okCancelAnswer = true;
    std::vector<std::string> prompts;       // AskText prompts
    std::optional<std::string> textAnswer;  // what AskText answers; empty is Cancel
};

}  // namespace wakeline::testing
