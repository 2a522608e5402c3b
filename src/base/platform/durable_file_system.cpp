#include "base/platform/durable_file_system.h"

#include <fcntl.h>
#include <unistd.h>
#include <cerrno>

#include <string>

namespace wakeline {
namespace {

// Writes all bytes, going on after interrupted or partial writes.
bool WriteAll(int fd, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t written = ::write(fd, bytes.data(), bytes.size());
        if (written < 0) {
            if (errno == EINTR) {
                continue;
            }
            return false;
        }
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

bool WriteAndSync(const std::string& path, std::string_view bytes, int flags) {
    const int fd = ::open(path.c_str(), flags | O_WRONLY | O_CREAT | O_CLOEXEC, 0644);
    if (fd < 0) {
        return false;
    }
    bool ok = WriteAll(fd, bytes) && ::fdatasync(fd) == 0;
    ok = (::close(fd) == 0) && ok;
    return ok;
}

std::string DirectoryOf(const std::string& path) {
    const auto slash = path.rfind('/');
    if (slash == std::string::npos) {
        return ".";
    }
    return slash == 0 ? "/" : path.substr(0, slash);
}

}  // namespace

bool DurableFileSystem::AppendDurably(const std::string& path, std::string_view bytes) {
    return WriteAndSync(path, bytes, O_APPEND);
}

bool DurableFileSystem::ReplaceFile(const std::string& path, std::string_view bytes) {
    const std::string temporary = path + ".tmp";
    if (!WriteAndSync(temporary, bytes, O_TRUNC) ||
        ::rename(temporary.c_str(), path.c_str()) != 0) {
        ::unlink(temporary.c_str());
        return false;
    }
    // The rename itself lives in the directory: sync it too, or a power cut may undo it.
    const int dir = ::open(DirectoryOf(path).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (dir >= 0) {
        ::fsync(dir);
        ::close(dir);
    }
    return true;
}

}  // namespace wakeline
