#include "base/platform/durable_file_system.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <cerrno>
#include <cstring>

#include <string>

namespace wakeline {
namespace {

// Writes all bytes, going on after interrupted or partial writes. False with errno set when
// a write failed.
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

// `action` names the write in a failure ("append to", "write"); the reason is the step's errno.
// With O_APPEND, a write or sync that fails part way is cut back to the file's size before it,
// so that the caller's retry of the whole batch neither repeats nor splits a record.
Status WriteAndSync(const std::string& path, std::string_view bytes, int flags,
                    const char* action) {
    const int fd = ::open(path.c_str(), flags | O_WRONLY | O_CREAT | O_CLOEXEC, 0644);
    if (fd < 0) {
        return Status::FromErrno("open", path, errno);
    }
    struct stat before {};
    if ((flags & O_APPEND) != 0 && ::fstat(fd, &before) != 0) {
        const Status status = Status::FromErrno("open", path, errno);
        ::close(fd);
        return status;
    }
    Status status;
    if (!WriteAll(fd, bytes)) {
        status = Status::FromErrno(action, path, errno);
    } else if (::fdatasync(fd) != 0) {
        status = Status::FromErrno("sync", path, errno);
    }
    if (!status.Ok() && (flags & O_APPEND) != 0 && ::ftruncate(fd, before.st_size) != 0) {
        status = Status::Failure(status.Action(), path,
                                 status.Reason() +
                                     "; the part written stays, as it cannot be "
                                     "cut back (" +
                                     std::strerror(errno) + ")");
    }
    // A delayed write error may show only at close (on network file systems, for one).
    if (::close(fd) != 0 && status.Ok()) {
        status = Status::FromErrno("close", path, errno);
    }
    return status;
}

std::string DirectoryOf(const std::string& path) {
    const auto slash = path.rfind('/');
    if (slash == std::string::npos) {
        return ".";
    }
    return slash == 0 ? "/" : path.substr(0, slash);
}

}  // namespace

Status DurableFileSystem::AppendDurably(const std::string& path, std::string_view bytes) {
    return WriteAndSync(path, bytes, O_APPEND, "append to");
}

Status DurableFileSystem::ReplaceFile(const std::string& path, std::string_view bytes) {
    const std::string temporary = path + ".tmp";
    Status status = WriteAndSync(temporary, bytes, O_TRUNC, "write");
    if (status.Ok() && ::rename(temporary.c_str(), path.c_str()) != 0) {
        status = Status::FromErrno("rename " + temporary + " to", path, errno);
    }
    if (!status.Ok()) {
        ::unlink(temporary.c_str());
        return status;
    }
    // The rename itself lives in the directory: sync it too, or a power cut may undo it.
    const int dir = ::open(DirectoryOf(path).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (dir >= 0) {
        ::fsync(dir);
        ::close(dir);
    }
    return status;
}

}  // namespace wakeline
