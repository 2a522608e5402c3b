#include "base/file_system.h"

#include <cerrno>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <system_error>
#include <utility>

namespace wakeline {
namespace {

// The reason a stream operation just failed. The library's streams keep no error of their
// own, but on this platform they leave the system's errno behind; a failure without one
// still gets a reason.
Status StreamFailure(std::string action, const std::string& path) {
    const int error = errno;
    if (error == 0) {
        return Status::Failure(std::move(action), path, "the stream reported a failure");
    }
    return Status::FromErrno(std::move(action), path, error);
}

Status WriteWithMode(const std::string& path, std::string_view bytes, std::ios::openmode mode,
                     const char* action) {
    errno = 0;
    std::ofstream out(path, mode | std::ios::binary);
    if (!out) {
        return StreamFailure("open", path);
    }
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    out.close();
    if (out.fail()) {
        return StreamFailure(action, path);
    }
    return {};
}

Result<std::string> ReadUpTo(const std::string& path, std::optional<std::size_t> maxBytes) {
    // A directory opens like a file on Linux and then reads as empty; it is no file.
    std::error_code error;
    if (std::filesystem::is_directory(path, error)) {
        return Status::FromErrno("read", path, EISDIR);
    }
    errno = 0;
    std::ifstream in(path, std::ios::binary);
    if (!in) {
        return StreamFailure("open", path);
    }
    std::string bytes;
    if (maxBytes) {
        bytes.resize(*maxBytes);
        in.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
        bytes.resize(static_cast<std::size_t>(in.gcount()));
    } else {
        bytes.assign(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
    }
    if (in.bad()) {
        return StreamFailure("read", path);
    }
    return bytes;
}

}  // namespace

bool StdFileSystem::FileExists(const std::string& path) const {
    std::error_code error;
    return !path.empty() && std::filesystem::is_regular_file(path, error);
}

bool StdFileSystem::DirectoryExists(const std::string& path) const {
    std::error_code error;
    return !path.empty() && std::filesystem::is_directory(path, error);
}

Result<std::string> StdFileSystem::ReadFile(const std::string& path) const {
    return ReadUpTo(path, std::nullopt);
}

Result<std::string> StdFileSystem::ReadFileStart(const std::string& path,
                                                 std::size_t maxBytes) const {
    return ReadUpTo(path, maxBytes);
}

Status StdFileSystem::AppendToFile(const std::string& path, std::string_view bytes) {
    // An append that fails part way is cut back to the size before it, so that a retry of the
    // same bytes neither repeats nor splits a line.
    std::error_code error;
    std::uintmax_t before = std::filesystem::file_size(path, error);
    if (error) {
        before = 0;  // a new file
    }
    Status status = WriteWithMode(path, bytes, std::ios::app, "append to");
    if (!status.Ok() && status.Action() != "open") {
        std::filesystem::resize_file(path, before, error);
    }
    return status;
}

Status StdFileSystem::WriteFile(const std::string& path, std::string_view bytes) {
    return WriteWithMode(path, bytes, std::ios::trunc, "write");
}

}  // namespace wakeline
