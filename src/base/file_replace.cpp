#include <filesystem>
#include <fstream>
#include <system_error>

#include "base/file_system.h"

namespace wakeline {

bool StdFileSystem::ReplaceFile(const std::string& path, std::string_view bytes) {
    // A rename within one directory is atomic: a reader, or the next start after a crash,
    // sees the old file or the new one, never a half-written one.
    const std::string temporary = path + ".tmp";
    bool written = false;
    {
        std::ofstream out(temporary, std::ios::trunc | std::ios::binary);
        if (out) {
            out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
            out.close();
            written = !out.fail();
        }
    }
    std::error_code error;
    if (written) {
        std::filesystem::rename(temporary, path, error);
        if (!error) {
            return true;
        }
    }
    std::filesystem::remove(temporary, error);
    return false;
}

}  // namespace wakeline
