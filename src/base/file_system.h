#pragma once
// The core's access to files, behind an interface so that tests can fake a failing disk.
// StdFileSystem does it with the standard library; the platform may add durability.

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>

#include "base/status.h"

namespace wakeline {

class FileSystem {
  public:
    virtual ~FileSystem() = default;
    // Existence tests use the path exactly as given (file names are case-sensitive).
    virtual bool FileExists(const std::string& path) const = 0;
    virtual bool DirectoryExists(const std::string& path) const = 0;
    // The whole file as bytes, or why it cannot be opened or read (a directory is no file).
    virtual Result<std::string> ReadFile(const std::string& path) const = 0;
    // The first `maxBytes` bytes of the file (all of a shorter one), for a file of fixed
    // layout whose size on disk nobody vouches for. This default reads the whole file and
    // cuts it; StdFileSystem reads no further than asked (and sets aside `maxBytes` for it).
    virtual Result<std::string> ReadFileStart(const std::string& path, std::size_t maxBytes) const {
        Result<std::string> bytes = ReadFile(path);
        if (!bytes.Ok()) {
            return bytes;
        }
        std::string start = std::move(bytes).Value();
        start.resize(std::min(start.size(), maxBytes));
        return start;
    }
    // Opens for appending (creating the file), writes, closes. A failure says which step
    // failed and why; what was written before stays, and what this call wrote before it
    // failed is cut back, so that a retry of the same bytes never repeats or splits a record.
    virtual Status AppendToFile(const std::string& path, std::string_view bytes) = 0;
    // Creates or truncates the file and writes the bytes.
    virtual Status WriteFile(const std::string& path, std::string_view bytes) = 0;
    // Replaces the file's whole contents so that a failure part way leaves the previous
    // contents in place rather than a cut-off file. This default writes in place;
    // StdFileSystem writes a temporary file beside it and renames it over the file.
    virtual Status ReplaceFile(const std::string& path, std::string_view bytes) {
        return WriteFile(path, bytes);
    }
    // AppendToFile for records that must survive a power cut: ok only once the bytes are
    // on the disk, not merely handed to the system; a failure part way is cut back as above.
    // Costs a disk write, so only the track's flushes use it, never the diagnostic log.
    virtual Status AppendDurably(const std::string& path, std::string_view bytes) {
        return AppendToFile(path, bytes);
    }
};

// Files through <fstream> and <filesystem>.
class StdFileSystem : public FileSystem {
  public:
    bool FileExists(const std::string& path) const override;
    bool DirectoryExists(const std::string& path) const override;
    Result<std::string> ReadFile(const std::string& path) const override;
    Result<std::string> ReadFileStart(const std::string& path, std::size_t maxBytes) const override;
    Status AppendToFile(const std::string& path, std::string_view bytes) override;
    Status WriteFile(const std::string& path, std::string_view bytes) override;
    // Writes path + ".tmp" and renames it over `path` (the temporary is removed on failure).
    Status ReplaceFile(const std::string& path, std::string_view bytes) override;
};

}  // namespace wakeline
