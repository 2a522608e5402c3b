#include <filesystem>
#include <system_error>

#include "base/file_system.h"

namespace wakeline {

Status StdFileSystem::ReplaceFile(const std::string& path, std::string_view bytes) {
    // A rename within one directory is atomic: a reader, or the next start after a crash,
    // sees the old file or the new one, never a half-written one.
    const std::string temporary = path + ".tmp";
    Status status = StdFileSystem::WriteFile(temporary, bytes);
    std::error_code error;
    if (status.Ok()) {
        std::filesystem::rename(temporary, path, error);
        if (!error) {
            return status;
        }
        status = Status::Failure("rename " + temporary + " to", path, error.message());
    }
    std::filesystem::remove(temporary, error);
    return status;
}

}  // namespace wakeline
