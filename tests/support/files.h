// Files for tests: a folder that vanishes, bytes in and out, golden files, disks and openings that fail.
#pragma once

#include "alidade/platform/file.h"
#include "support/places.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <string>

#include <gtest/gtest.h>

#include <unistd.h>

/// A folder of its own for each test, deleted with all that is in it.
class CTempFolder {
public:
    CTempFolder()
    {
        std::string name = (std::filesystem::temp_directory_path() / "alidade-XXXXXX").string();
        m_strPath = mkdtemp(name.data());
    }
    ~CTempFolder()
    {
        std::error_code ignored;
        std::filesystem::remove_all(m_strPath, ignored);
    }
    CTempFolder(const CTempFolder&) = delete;
    CTempFolder& operator=(const CTempFolder&) = delete;

    [[nodiscard]] std::string operator/(const std::string& name) const { return m_strPath + "/" + name; }
    /// Names of the files in it, in order, each with a blank behind it.
    [[nodiscard]] std::string List() const
    {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(m_strPath))
            names.push_back(entry.path().filename().string() + " ");
        std::sort(names.begin(), names.end());
        std::string all;
        for (const std::string& name : names)
            all += name;
        return all;
    }

private:
    std::string m_strPath;
};

inline std::string ReadFile(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

inline void WriteFile(const std::string& path, std::string_view bytes)
{
    std::error_code ignored;
    std::filesystem::remove(path, ignored); // a file system may wait for the disk when a file is truncated
    std::ofstream(path, std::ios::binary).write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

/// Compares bytes with tests/data/<name>, which ALIDADE_REWRITE_GOLDEN=1 writes anew. A rewritten file is to be read by
/// somebody who knows the form before it is kept.
inline void ExpectGolden(const std::string& name, const std::string& bytes)
{
    const std::string path = DataPath(name);
    if (const char* rewrite = std::getenv("ALIDADE_REWRITE_GOLDEN"); rewrite && *rewrite == '1') {
        std::filesystem::create_directories(std::filesystem::path(path).parent_path());
        WriteFile(path, bytes);
    }
    ASSERT_TRUE(std::filesystem::exists(path)) << path;
    EXPECT_EQ(bytes, ReadFile(path)) << path;
}

/// Stands between the library and the disk as long as it lives.
class CFileFaults : public IIEFileFaults {
public:
    CFileFaults() { Platform::SetFileFaults(this); }
    ~CFileFaults() override { Platform::SetFileFaults(nullptr); }
    CFileFaults(const CFileFaults&) = delete;
    CFileFaults& operator=(const CFileFaults&) = delete;

    std::function<bool(const std::string& path, bool bWrite)> m_AllowOpen;
    std::size_t m_nDiskSpace = ~std::size_t{0}; ///< bytes that the disk still takes

    bool AllowOpen(const std::string& path, bool bWrite) override { return !m_AllowOpen || m_AllowOpen(path, bWrite); }
    std::size_t AllowWrite(std::size_t wanted) override
    {
        const std::size_t taken = std::min(wanted, m_nDiskSpace);
        m_nDiskSpace -= taken;
        return taken;
    }
};
