#include "base/file_system.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <system_error>

namespace wakeline {
namespace {

bool WriteWithMode(const std::string& path, std::string_view bytes, std::ios::openmode mode) {
    std::ofstream out(path, mode | std::ios::binary);
    if (!out) {
        return false;
    }
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    out.close();
    return !out.fail();
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

std::optional<std::string> StdFileSystem::ReadFile(const std::string& path) const {
    // A directory opens like a file on Linux and then reads as empty; it is no file.
    std::error_code error;
    if (std::filesystem::is_directory(path, error)) {
        return std::nullopt;
    }
    std::ifstream in(path, std::ios::binary);
    if (!in) {
        return std::nullopt;
    }
    std::string bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    if (in.bad()) {
        return std::nullopt;
    }
    return bytes;
}

bool StdFileSystem::AppendToFile(const std::string& path, std::string_view bytes) {
    return WriteWithMode(path, bytes, std::ios::app);
}

bool StdFileSystem::WriteFile(const std::string& path, std::string_view bytes) {
    return WriteWithMode(path, bytes, std::ios::trunc);
}

}  // namespace wakeline
