#pragma once
// The wind history file "wakeline_wc.bin": one fixed record of 18020 little-endian bytes, no
// header, no padding. Count (int16) at 0, then for k = 0..1000 the 18-byte slot of Obs[k] at
// 2 + 18k: Speed (float32), Direction (float32), Time (float64, days), Samples (int16). All
// 1001 slots are written, stale ones too.

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "base/date_time.h"
#include "base/file_system.h"
#include "wind/wind_data.h"

namespace wakeline {

inline constexpr std::size_t kWindFileSize = 18020;
inline constexpr std::string_view kWindFileName = "wakeline_wc.bin";

// TrackDir + "/" + "wakeline_wc.bin".
std::string WindHistoryPath(const std::string& trackDir);

// The 18020 bytes of the file.
std::string EncodeWindData(const WindData& data);

// A decoded file. `problem` is empty for a usable file; otherwise it says why the history was
// cleared, for the caller's log.
struct WindDecode {
    WindData data;
    std::string problem;
};

// Reads the record by position: bytes missing from a short file read as 0, bytes after the
// first 18020 are ignored. A Count outside 0..1001, or a held observation whose Speed,
// Direction or Time is not a finite number, clears the history (Count 0; the slots keep what
// was read).
WindDecode DecodeWindData(std::string_view bytes);

// What start-up did with the saved history.
enum class WindLoadOutcome {
    Continued,  // the file's history is kept and continued
    Missing,    // no file: empty history
    TooOld,     // the newest observation is more than one hour old: cleared
    Damaged,    // the file cannot be read or its contents are unusable: cleared, `problem`
                // says why
};

struct WindHistoryLoad {
    WindData history;
    WindLoadOutcome outcome = WindLoadOutcome::Missing;
    std::string problem;
};

// Start-up's rule: the file's bytes (empty when there is no file) decoded, and cleared when
// the history holds an observation and the newest one is more than 1/24 day older than `now`.
// Exactly one hour old is kept; a newest time after `now` is kept too.
WindHistoryLoad LoadWindHistory(const std::optional<std::string>& fileBytes, DateTime now);

// Reads the first 18020 bytes of `path` through `files` (never more, whatever the file's size)
// and applies LoadWindHistory. A file that exists but cannot be read is Damaged, its problem
// the file system's reason.
WindHistoryLoad LoadWindHistoryFile(const FileSystem& files, const std::string& path, DateTime now);

// Rewrites the file whole through FileSystem::ReplaceFile, so that a failure part way leaves
// the previous history on disk. A failure says why the write failed.
Status SaveWindHistory(FileSystem& files, const std::string& path, const WindData& data);

}  // namespace wakeline
