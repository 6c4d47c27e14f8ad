// A file that a benchmark reads or writes.
#pragma once

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>
#include <system_error>

#include <unistd.h>

/// A file of this process, deleted with the object.
class CScratchFile {
public:
    CScratchFile() : m_Path(std::filesystem::temp_directory_path() / ("alidade-bench-" + std::to_string(::getpid()))) {}
    ~CScratchFile()
    {
        std::error_code error;
        std::filesystem::remove(m_Path, error);
    }
    CScratchFile(const CScratchFile&) = delete;
    CScratchFile& operator=(const CScratchFile&) = delete;
    [[nodiscard]] std::string GetPath() const { return m_Path.string(); }
    [[nodiscard]] std::int64_t GetSize() const { return static_cast<std::int64_t>(std::filesystem::file_size(m_Path)); }

private:
    std::filesystem::path m_Path;
};
