#include "alidade/platform/file.h"

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>

#include <gtest/gtest.h>

#include <sys/resource.h>
#include <sys/stat.h>

namespace {

constexpr std::size_t kWriteBuffer = 256 << 10;
constexpr std::size_t kReadBuffer = 1 << 20;

/// Bytes without a period that a buffer size could hide behind.
std::string Bytes(std::size_t count)
{
    std::minstd_rand random(17);
    std::string bytes(count, '\0');
    std::generate(bytes.begin(), bytes.end(), [&random] { return static_cast<char>(random() >> 8); });
    return bytes;
}

std::string Slurp(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

void Put(const std::string& path, const std::string& bytes)
{
    std::ofstream(path, std::ios::binary) << bytes;
}

void WriteInChunks(CIEFileWriter& writer, std::string_view bytes, std::size_t chunk)
{
    for (; !bytes.empty(); bytes.remove_prefix(std::min(chunk, bytes.size())))
        writer.Write(bytes.substr(0, chunk));
}

/// Reads from the position until nothing more comes.
std::string ReadInChunks(CIEFileReader& reader, std::size_t chunk)
{
    std::string bytes(reader.GetLength() + 1, '\0');
    std::size_t done = 0;
    while (const std::size_t got = reader.Read(bytes.data() + done, std::min(chunk, bytes.size() - done)))
        done += got;
    bytes.resize(done);
    return bytes;
}

bool CanRead(const std::string& path)
{
    return CIEFileReader().Open(path);
}

bool CanCreate(const std::string& path)
{
    return CIEFileWriter().Create(path);
}

class CFileTest : public testing::Test, protected IIEFileFaults {
protected:
    CFileTest()
    {
        std::string name = testing::TempDir() + "alidade-file-XXXXXX";
        m_Folder = mkdtemp(name.data());
    }
    ~CFileTest() override
    {
        Platform::SetFileFaults(nullptr);
        std::filesystem::remove_all(m_Folder);
    }

    bool AllowOpen(const std::string&, bool bWrite) override { return bWrite || ++m_nOpens != m_nRefusedOpen; }
    std::size_t AllowWrite(std::size_t wanted) override
    {
        const std::size_t given = std::min(wanted, m_nDiskSpace);
        m_nDiskSpace -= given;
        return given;
    }

    std::string Path(const std::string& name) const { return (m_Folder / name).string(); }

    std::filesystem::path m_Folder;
    int m_nOpens = 0;
    int m_nRefusedOpen = 0;
    std::size_t m_nDiskSpace = SIZE_MAX;
};

// With room for everything a round trip; with less, the disk is full at that very byte.
TEST_F(CFileTest, WritesAndReadsWhatTheDiskTakes)
{
    const std::string source = Bytes(5 * kReadBuffer + 3);
    const std::size_t edges[] = {0,
                                 1,
                                 kWriteBuffer - 1,
                                 kWriteBuffer,
                                 kWriteBuffer + 1,
                                 3 * kWriteBuffer,
                                 kReadBuffer - 1,
                                 kReadBuffer,
                                 kReadBuffer + 1,
                                 source.size() - 1,
                                 source.size()};
    Platform::SetFileFaults(this);
    for (const std::size_t chunk : {std::size_t{4000}, kWriteBuffer, kReadBuffer, SIZE_MAX}) {
        for (const std::size_t edge : edges) {
            for (const bool bFits : {true, false}) {
                SCOPED_TRACE(testing::Message() << edge << " bytes in chunks of " << chunk << ", fits " << bFits);
                m_nDiskSpace = edge;
                const std::string bytes = source.substr(0, edge) + (bFits ? "" : "more");
                CIEFileWriter writer;
                ASSERT_TRUE(writer.Create(Path("data")));
                WriteInChunks(writer, bytes, chunk);
                EXPECT_EQ(bFits, writer.Flush());
                m_nDiskSpace = SIZE_MAX; // room that comes back doesn't mend the hole
                EXPECT_EQ(bFits, writer.Write("") && writer.Seek(0));
                EXPECT_EQ(bFits, writer.Close());
                EXPECT_EQ(bFits, writer.Close() && !writer.HasFailed());

                CIEFileReader reader;
                ASSERT_TRUE(reader.Open(Path("data")));
                EXPECT_EQ(edge, reader.GetLength());
                EXPECT_TRUE(ReadInChunks(reader, chunk) == bytes.substr(0, edge) && !reader.HasFailed());
            }
        }
    }
}

// Every operation of the writer, in an order that no case would think of, against a string that does the same.
TEST_F(CFileTest, WriterFollowsAString)
{
    const std::string source = Bytes(2 * kReadBuffer);
    std::minstd_rand random(5);
    const auto below = [&random](std::size_t limit) { return std::size_t{random()} % limit; };
    std::string model;
    std::size_t position = 0;
    CIEFileWriter writer;
    ASSERT_TRUE(writer.Create(Path("data")));
    for (int i = 0; i < 3000; ++i) {
        const std::size_t count = below(10) == 0 ? below(2 * kWriteBuffer) : below(5000);
        const std::size_t nBack = below(std::min(model.size() + 1, std::size_t{9000}));
        const std::size_t place = below(2) == 0 ? below(model.size() + 1) : model.size() - nBack;
        const std::size_t nOperation = below(6);
        if (nOperation == 0) {
            ASSERT_TRUE(writer.Seek(place) && !writer.Seek(model.size() + 1));
            position = place;
        } else if (nOperation == 1) {
            std::string back(count, '\0');
            back.resize(writer.ReadAt(place, back.data(), count));
            ASSERT_TRUE(back == model.substr(place, count)) << "step " << i;
        } else if (nOperation == 2) {
            ASSERT_TRUE(writer.Flush());
            ASSERT_EQ(model.size(), std::filesystem::file_size(Path("data")));
        } else {
            const auto bytes = std::string_view(source).substr(below(kReadBuffer), count);
            ASSERT_TRUE(writer.Write(bytes));
            model.replace(position, count, bytes);
            position += count;
        }
        ASSERT_EQ(position, writer.GetPosition());
    }
    EXPECT_TRUE(writer.Close());
    EXPECT_TRUE(Slurp(Path("data")) == model);
}

TEST_F(CFileTest, ReaderFollowsAString)
{
    const std::string bytes = Bytes(9 * kReadBuffer + 11);
    Put(Path("data"), bytes);
    std::minstd_rand random(9);
    const auto below = [&random](std::size_t limit) { return std::size_t{random()} % limit; };
    CIEFileReader reader;
    for (int i = 0; i < 2000; ++i) {
        if (i % 200 == 0) { // the buffer, which only grows, starts small again
            ASSERT_TRUE(reader.Open(Path("data")));
        }
        const std::size_t position = reader.GetPosition();
        const std::size_t count = below(50) == 0 ? below(6 * kReadBuffer) : below(kReadBuffer);
        const std::string_view rest = std::string_view(bytes).substr(position);
        const std::size_t nOperation = below(5);
        if (nOperation == 0) {
            const std::size_t place = below(2) == 0 ? position - below(position + 1) / 4 : below(bytes.size() + 1);
            ASSERT_TRUE(reader.Seek(place) && !reader.Seek(bytes.size() + 1));
            ASSERT_EQ(place, reader.GetPosition());
        } else if (nOperation == 1) {
            std::string back(count, '\0');
            back.resize(reader.Read(back.data(), count));
            ASSERT_TRUE(back == rest.substr(0, count)) << "step " << i;
        } else {
            const std::string_view seen = reader.Peek(count);
            ASSERT_GE(seen.size(), std::min(count, rest.size()));
            ASSERT_TRUE(seen == rest.substr(0, seen.size())) << "step " << i;
            reader.Skip(count);
            ASSERT_EQ(position + std::min(count, seen.size()), reader.GetPosition());
        }
    }
    ASSERT_TRUE(reader.Seek(0));
    EXPECT_EQ(bytes.size(), reader.Peek(SIZE_MAX).size());
    reader.Skip(SIZE_MAX);
    EXPECT_TRUE(reader.Peek(1).empty() && !reader.HasFailed());
}

TEST_F(CFileTest, DeniesWhoeverWouldDisturb)
{
    const std::string path = Path("data");
    const auto allows = [&path](bool bRead, bool bWrite) {
        EXPECT_EQ(bRead, CanRead(path));
        EXPECT_EQ(bWrite, CanCreate(path));
        EXPECT_EQ(bWrite ? "" : "kept", Slurp(path)) << "a refused writer must leave the file as it is";
    };
    {
        SCOPED_TRACE("a stranger that writes");
        std::ofstream stranger(path);
        allows(false, true);
    }
    {
        SCOPED_TRACE("our writer");
        CIEFileWriter writer;
        ASSERT_TRUE(writer.Create(path) && writer.Write("kept") && writer.Flush());
        allows(false, false);
    }
    {
        SCOPED_TRACE("our reader");
        CIEFileReader reader;
        ASSERT_TRUE(reader.Open(path));
        allows(true, false);
    }
    SCOPED_TRACE("a stranger that reads");
    std::ifstream stranger(path);
    allows(true, true);
}

TEST_F(CFileTest, RefusesWhatIsNoPlainFile)
{
    std::filesystem::create_directory(Path("folder"));
    ASSERT_EQ(0, mkfifo(Path("pipe").c_str(), 0600));
    Put(Path("plain"), "1");
    std::filesystem::create_symlink("nowhere", Path("dangling"));
    const struct {
        std::string m_strPath;
        bool m_bReads, m_bWrites, m_bExists, m_bRemoves;
    } rows[] = {
        {Path("folder"), false, false, true, false},
        {Path("pipe"), false, false, true, true},
        {Path("plain") + std::string("\0.txt", 5), false, false, false, true},
        {Path("plain") + "/below", false, false, false, true},
        {Path("plain"), true, true, true, true},
        {Path("plain"), false, true, false, true},
        {Path("none/below"), false, false, false, true},
        {Path("dangling"), false, true, true, true},
        {"/dev/null", false, false, true, true},
        {"", false, false, false, true},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.m_strPath);
        EXPECT_EQ(row.m_bExists, Platform::FileExists(row.m_strPath));
        EXPECT_EQ(row.m_bReads, CanRead(row.m_strPath));
        EXPECT_EQ(row.m_bWrites, CanCreate(row.m_strPath));
        if (row.m_strPath.starts_with("/dev"))
            continue;
        EXPECT_EQ(row.m_bRemoves, Platform::RemoveFile(row.m_strPath));
        EXPECT_NE(row.m_bRemoves, Platform::FileExists(row.m_strPath));
    }
}

// The system itself takes a part of a write and refuses the rest, as a disk does that fills up.
TEST_F(CFileTest, SeesTheSystemRefuseTheRest)
{
    const std::string bytes = Bytes(kWriteBuffer + 1000);
    struct rlimit old = {};
    ASSERT_EQ(0, getrlimit(RLIMIT_FSIZE, &old));
    const auto oldHandler = std::signal(SIGXFSZ, SIG_IGN);
    for (const std::size_t chunk : {std::size_t{1000}, bytes.size()}) {
        CIEFileWriter writer;
        ASSERT_TRUE(writer.Create(Path("data")));
        struct rlimit limit = {kWriteBuffer + 10, old.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
        WriteInChunks(writer, bytes, chunk);
        const bool bClosed = writer.Close();
        setrlimit(RLIMIT_FSIZE, &old);
        EXPECT_FALSE(bClosed);
        EXPECT_TRUE(Slurp(Path("data")) == bytes.substr(0, kWriteBuffer + 10));
    }
    std::signal(SIGXFSZ, oldHandler);
}

TEST_F(CFileTest, RefusesTheOpenThatATestAsksFor)
{
    Put(Path("data"), "bytes");
    m_nRefusedOpen = 2;
    Platform::SetFileFaults(this);
    CIEFileReader reader;
    EXPECT_TRUE(reader.Open(Path("data")));
    EXPECT_FALSE(reader.Open(Path("data")));
    EXPECT_TRUE(!reader.IsOpen() && reader.Peek(1).empty() && reader.GetLength() == 0);
    EXPECT_TRUE(reader.Open(Path("data")));
    EXPECT_EQ("bytes", reader.Peek(1));
}

TEST_F(CFileTest, TellsThatAFileWasCutWhileItWasRead)
{
    const std::string bytes = Bytes(3 * kReadBuffer);
    for (const std::size_t chunk : {std::size_t{100}, 2 * kReadBuffer}) {
        Put(Path("data"), bytes);
        CIEFileReader reader;
        ASSERT_TRUE(reader.Open(Path("data")));
        std::filesystem::resize_file(Path("data"), kReadBuffer + 50);
        EXPECT_TRUE(ReadInChunks(reader, chunk) == bytes.substr(0, kReadBuffer + 50));
        EXPECT_TRUE(reader.HasFailed());
        reader.Close();
        EXPECT_TRUE(reader.Open(Path("data")) && !reader.HasFailed());
    }
}

} // namespace
