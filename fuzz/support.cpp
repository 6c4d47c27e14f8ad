#include "support.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <system_error>

#include <fcntl.h>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;

struct TScratchFolder {
    fs::path m_Path;

    TScratchFolder()
    {
        std::error_code error;
        const fs::path memory = "/dev/shm";
        const fs::path parent = fs::is_directory(memory, error) ? memory : fs::temp_directory_path();
        m_Path = parent / ("alidade-fuzz-" + std::to_string(::getpid()));
        fs::create_directories(m_Path);
    }
    ~TScratchFolder()
    {
        std::error_code error;
        fs::remove_all(m_Path, error);
    }
    TScratchFolder(const TScratchFolder&) = delete;
    TScratchFolder& operator=(const TScratchFolder&) = delete;
};

void Show(const char* pWhat, std::string_view text)
{
    std::fprintf(stderr, "%s (%zu bytes): %.*s\n", pWhat, text.size(), static_cast<int>(text.size()), text.data());
}

} // namespace

void Require(bool bHolds, const char* pWhat)
{
    if (bHolds)
        return;
    std::fprintf(stderr, "doesn't hold: %s\n", pWhat);
    std::abort();
}

void RequireEqual(std::string_view left, std::string_view right, const char* pWhat)
{
    if (left == right)
        return;
    Show("left", left);
    Show("right", right);
    Require(false, pWhat);
}

namespace Scratch {

std::string MakePath(const std::string& name)
{
    static const TScratchFolder folder;
    return folder.m_Path / name;
}

void Write(const std::string& path, std::string_view bytes)
{
    const int file = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    const bool bWritten = file >= 0 && ::write(file, bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size());
    if (file < 0 || ::close(file) != 0 || !bWritten) {
        std::perror(path.c_str());
        std::exit(1); // the disk's fault, not the library's
    }
}

std::string Read(const std::string& path)
{
    std::string bytes;
    const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (file < 0)
        return bytes;
    char block[4096];
    for (ssize_t nGot = 0; (nGot = ::read(file, block, sizeof block)) > 0;)
        bytes.append(block, static_cast<std::size_t>(nGot));
    ::close(file);
    return bytes;
}

} // namespace Scratch
