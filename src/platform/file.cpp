#include "alidade/platform/file.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <utility>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>
#if defined(__linux__)
#include <sys/vfs.h>
#endif

static_assert(sizeof(off_t) == 8, "offsets beyond 2 GB need a 64-bit off_t");

namespace {

constexpr std::size_t kReadBuffer = std::size_t{1} << 20;
constexpr std::size_t kWriteBuffer = std::size_t{64} << 10; // a larger one gains no time
// what a single call may move differs between systems, and some refuse more than 2 GB outright
constexpr std::size_t kLargestTransfer = std::size_t{1} << 30;

std::atomic<IIEFileFaults*> g_pFaults{nullptr};

/// Owns a file descriptor; -1 stands for none.
class CDescriptor {
public:
    CDescriptor() = default;
    explicit CDescriptor(int nDescriptor) : m_nDescriptor(nDescriptor) {}
    CDescriptor(CDescriptor&& other) noexcept : m_nDescriptor(std::exchange(other.m_nDescriptor, -1)) {}
    CDescriptor& operator=(CDescriptor&& other) noexcept
    {
        std::swap(m_nDescriptor, other.m_nDescriptor);
        return *this;
    }
    ~CDescriptor() { Close(); }

    int Get() const { return m_nDescriptor; }
    bool IsOpen() const { return m_nDescriptor >= 0; }

    /// False if the system reports here that earlier writes got lost, as network disks and quotas do.
    bool Close()
    {
        const int nDescriptor = std::exchange(m_nDescriptor, -1);
        // an interrupted close has given the descriptor back all the same; closing again could hit somebody else's
        return nDescriptor < 0 || ::close(nDescriptor) == 0 || errno == EINTR;
    }

private:
    int m_nDescriptor = -1;
};

/// Repeats a system call that a signal interrupted.
template <typename TCall>
auto Persist(TCall call)
{
    auto result = call();
    while (result < 0 && errno == EINTR)
        result = call();
    return result;
}

/// The system would see only the part before a null byte: the name of another file.
bool IsCutByNull(const std::string& path)
{
    return path.find('\0') != std::string::npos;
}

/// Opens a plain file; anything else is refused, since a pipe or a device could block, has no length and can't be
/// sought. O_NONBLOCK keeps the open itself from hanging on such a thing; plain files don't care.
CDescriptor OpenPlainFile(const std::string& path, int nFlags, bool bWrite)
{
    IIEFileFaults* pFaults = g_pFaults.load();
    if (IsCutByNull(path) || (pFaults && !pFaults->AllowOpen(path, bWrite)))
        return {};
    CDescriptor file(Persist([&] { return ::open(path.c_str(), nFlags | O_CLOEXEC | O_NONBLOCK | O_NOCTTY, 0666); }));
    struct stat about = {};
    if (!file.IsOpen() || ::fstat(file.Get(), &about) != 0 || !S_ISREG(about.st_mode))
        return {};
    return file;
}

/// Takes an advisory lock without waiting. A file system that has no locks doesn't keep its files from being used.
bool Lock(const CDescriptor& file, int nKind)
{
    return Persist([&] { return ::flock(file.Get(), nKind | LOCK_NB); }) == 0 || errno != EWOULDBLOCK;
}

/// True if anybody has the file open for writing, programs that know nothing of our locks among them. Where the system
/// can't tell, nobody has.
bool IsBeingWritten([[maybe_unused]] const CDescriptor& file)
{
#if defined(__linux__)
    // Network file systems refuse a lease with the same error when their server merely hasn't granted one.
    constexpr std::uint32_t kNfs = 0x6969, kSmb = 0x517B, kCifs = 0xFF534D42, kSmb2 = 0xFE534D42;
    struct statfs about = {};
    if (::fstatfs(file.Get(), &about) == 0) {
        const auto nKind = static_cast<std::uint32_t>(about.f_type);
        if (nKind == kNfs || nKind == kSmb || nKind == kCifs || nKind == kSmb2)
            return false;
    }
    // A read lease is granted only while no writer exists. It is given back at once: whoever opens the file for writing
    // in that instant waits for it, and we are told by a signal. The usual one, SIGIO, would end a host that doesn't
    // handle it; SIGURG is ignored by default.
    if (::fcntl(file.Get(), F_SETSIG, SIGURG) != 0)
        return false;
    if (::fcntl(file.Get(), F_SETLEASE, F_RDLCK) != 0)
        return errno == EAGAIN || errno == EBUSY;
    ::fcntl(file.Get(), F_SETLEASE, F_UNLCK);
#endif
    return false;
}

/// Reads up to `count` bytes at an offset; 0 for the end of the file and for an error.
std::size_t ReadSome(const CDescriptor& file, char* out, std::size_t count, std::uint64_t offset)
{
    const auto got = Persist(
        [&] { return ::pread(file.Get(), out, std::min(count, kLargestTransfer), static_cast<off_t>(offset)); });
    return got > 0 ? static_cast<std::size_t>(got) : 0;
}

/// Writes all bytes; gives how many the system took before it refused.
std::size_t WriteAll(const CDescriptor& file, const char* bytes, std::size_t count, std::uint64_t offset)
{
    std::size_t done = 0;
    while (done < count) {
        const auto taken = Persist([&] {
            return ::pwrite(file.Get(), bytes + done, std::min(count - done, kLargestTransfer),
                            static_cast<off_t>(offset + done));
        });
        if (taken <= 0)
            break;
        done += static_cast<std::size_t>(taken);
    }
    return done;
}

std::size_t Lesser(std::size_t count, std::uint64_t limit)
{
    return static_cast<std::size_t>(std::min<std::uint64_t>(count, limit));
}

} // namespace

namespace Platform {

void SetFileFaults(IIEFileFaults* pFaults)
{
    g_pFaults.store(pFaults);
}

bool RemoveFile(const std::string& path)
{
    return IsCutByNull(path) || ::unlink(path.c_str()) == 0 || errno == ENOENT || errno == ENOTDIR;
}

bool FileExists(const std::string& path)
{
    struct stat about = {};
    return !IsCutByNull(path) && ::lstat(path.c_str(), &about) == 0;
}

} // namespace Platform

// The buffer is a window of the file: it holds the bytes from m_nBufferOffset on, of which those before m_nBegin are
// taken but kept for a Seek back. Nothing beyond the length found at the open is ever read, so that length minus
// position never underflows for a caller, not even for a file that grows in spite of the lock.
struct CIEFileReader::TState {
    CDescriptor m_File;
    std::uint64_t m_nLength = 0;
    std::unique_ptr<char[]> m_pBuffer;
    std::size_t m_nCapacity = 0;
    std::uint64_t m_nBufferOffset = 0; ///< offset in the file of the buffer's first byte
    std::size_t m_nBegin = 0;          ///< index in the buffer of the next byte to take
    std::size_t m_nEnd = 0;            ///< index behind the last byte in the buffer
    bool m_bFailed = false;

    std::uint64_t Position() const { return m_nBufferOffset + m_nBegin; }
    std::size_t Held() const { return m_nEnd - m_nBegin; }

    void EmptyAt(std::uint64_t position)
    {
        m_nBufferOffset = position;
        m_nBegin = m_nEnd = 0;
    }

    void MakeRoom(std::size_t count);
    void Fill(std::size_t count);
    std::size_t Take(char* out, std::size_t count);
};

/// Makes room for `count` bytes from the position on. The buffer is twice as large as any look into it, unless it takes
/// the whole file: so a move of the tail is paid for by at least as many bytes taken since the last one.
void CIEFileReader::TState::MakeRoom(std::size_t count)
{
    if (count > m_nCapacity / 2 && m_nCapacity < m_nLength - Position()) {
        const std::size_t nCapacity = Lesser(std::max(kReadBuffer, 2 * count), m_nLength);
        auto pBuffer = std::make_unique_for_overwrite<char[]>(nCapacity);
        if (Held() > 0)
            std::memcpy(pBuffer.get(), m_pBuffer.get() + m_nBegin, Held());
        m_pBuffer = std::move(pBuffer);
        m_nCapacity = nCapacity;
    } else if (m_nBegin + count > m_nCapacity) {
        std::memmove(m_pBuffer.get(), m_pBuffer.get() + m_nBegin, Held());
    } else {
        return;
    }
    m_nBufferOffset += m_nBegin;
    m_nEnd -= m_nBegin;
    m_nBegin = 0;
}

/// Reads until the buffer holds `count` bytes or the file ends. A count from a hostile file costs no more than the file
/// has.
void CIEFileReader::TState::Fill(std::size_t count)
{
    count = Lesser(count, m_nLength - Position());
    if (m_bFailed || count <= Held())
        return;
    if (Held() == 0)
        EmptyAt(Position());
    MakeRoom(count);
    while (Held() < count) {
        const std::uint64_t offset = m_nBufferOffset + m_nEnd;
        const std::size_t wanted = Lesser(m_nCapacity - m_nEnd, m_nLength - offset);
        const std::size_t got = ReadSome(m_File, m_pBuffer.get() + m_nEnd, wanted, offset);
        m_nEnd += got;
        if (got == 0) {
            // an end before the length is a failure too: somebody cut the file short beneath us
            m_bFailed = true;
            return;
        }
    }
}

std::size_t CIEFileReader::TState::Take(char* out, std::size_t count)
{
    const std::size_t taken = std::min(count, Held());
    if (taken > 0)
        std::memcpy(out, m_pBuffer.get() + m_nBegin, taken);
    m_nBegin += taken;
    return taken;
}

CIEFileReader::CIEFileReader() : m_pState(std::make_unique<TState>()) {}

CIEFileReader::~CIEFileReader() = default;

bool CIEFileReader::Open(const std::string& path)
{
    Close();
    m_pState->m_bFailed = false;
    CDescriptor file = OpenPlainFile(path, O_RDONLY, false);
    if (!file.IsOpen() || !Lock(file, LOCK_SH) || IsBeingWritten(file))
        return false;
    // the length counts only from here on: before the lock a writer could still have been at work
    struct stat about = {};
    if (::fstat(file.Get(), &about) != 0)
        return false;
    m_pState->m_nLength = static_cast<std::uint64_t>(about.st_size);
    m_pState->m_File = std::move(file);
    return true;
}

void CIEFileReader::Close()
{
    const bool bFailed = m_pState->m_bFailed;
    *m_pState = TState();
    m_pState->m_bFailed = bFailed;
}

bool CIEFileReader::IsOpen() const
{
    return m_pState->m_File.IsOpen();
}

std::uint64_t CIEFileReader::GetLength() const
{
    return m_pState->m_nLength;
}

std::uint64_t CIEFileReader::GetPosition() const
{
    return m_pState->Position();
}

bool CIEFileReader::Seek(std::uint64_t position)
{
    TState& state = *m_pState;
    if (position > state.m_nLength)
        return false;
    if (position >= state.m_nBufferOffset && position - state.m_nBufferOffset <= state.m_nEnd)
        state.m_nBegin = static_cast<std::size_t>(position - state.m_nBufferOffset);
    else
        state.EmptyAt(position);
    return true;
}

std::size_t CIEFileReader::Read(void* out, std::size_t count)
{
    TState& state = *m_pState;
    char* pOut = static_cast<char*>(out);
    count = Lesser(count, state.m_nLength - state.Position());
    std::size_t done = state.Take(pOut, count);
    while (done < count && !state.m_bFailed) {
        const std::size_t rest = count - done;
        if (rest < kReadBuffer) {
            state.Fill(1);
            done += state.Take(pOut + done, rest);
            continue;
        }
        const std::size_t got = ReadSome(state.m_File, pOut + done, rest, state.Position());
        state.EmptyAt(state.Position() + got);
        state.m_bFailed = got == 0;
        done += got;
    }
    return done;
}

std::string_view CIEFileReader::Peek(std::size_t count)
{
    TState& state = *m_pState;
    if (state.Held() < count)
        state.Fill(count);
    return {state.m_pBuffer.get() + state.m_nBegin, state.Held()};
}

void CIEFileReader::Skip(std::size_t count)
{
    m_pState->m_nBegin += std::min(count, m_pState->Held());
}

bool CIEFileReader::HasFailed() const
{
    return m_pState->m_bFailed;
}

// The buffer stands for the bytes of the file from m_nBufferOffset on that the system hasn't got yet. The position can
// go back within it, so a count mended shortly after it was written costs no system call.
struct CIEFileWriter::TState {
    CDescriptor m_File;
    std::unique_ptr<char[]> m_pBuffer;
    std::uint64_t m_nBufferOffset = 0; ///< offset in the file of the buffer's first byte
    std::size_t m_nAt = 0;             ///< index in the buffer at which the next byte lands
    std::size_t m_nUsed = 0;           ///< bytes in the buffer
    std::uint64_t m_nSentLength = 0;   ///< length of the file as the system knows it
    bool m_bFailed = false;

    bool CanWrite() const { return m_File.IsOpen() && !m_bFailed; }
    std::uint64_t Position() const { return m_nBufferOffset + m_nAt; }
    std::uint64_t Length() const { return std::max(m_nSentLength, m_nBufferOffset + m_nUsed); }

    bool Send(const char* bytes, std::size_t count);
    bool SendBuffer();
    bool Create(const std::string& path);
};

/// Hands bytes to the system, to stand where the buffer begins.
bool CIEFileWriter::TState::Send(const char* bytes, std::size_t count)
{
    IIEFileFaults* pFaults = g_pFaults.load();
    const std::size_t allowed = pFaults ? std::min(count, pFaults->AllowWrite(count)) : count;
    const std::size_t done = WriteAll(m_File, bytes, allowed, m_nBufferOffset);
    m_nSentLength = std::max(m_nSentLength, m_nBufferOffset + done);
    m_bFailed = done < count;
    return !m_bFailed;
}

bool CIEFileWriter::TState::SendBuffer()
{
    const bool bSent = m_nUsed == 0 || Send(m_pBuffer.get(), m_nUsed);
    m_nBufferOffset += m_nAt;
    m_nAt = m_nUsed = 0;
    return bSent;
}

/// Truncates only once the lock is held: an open with O_TRUNC would empty the file under whoever reads it.
bool CIEFileWriter::TState::Create(const std::string& path)
{
    CDescriptor file = OpenPlainFile(path, O_RDWR | O_CREAT, true);
    if (!file.IsOpen() || !Lock(file, LOCK_EX) || Persist([&] { return ::ftruncate(file.Get(), 0); }) != 0)
        return false;
    m_pBuffer = std::make_unique_for_overwrite<char[]>(kWriteBuffer);
    m_File = std::move(file);
    return true;
}

CIEFileWriter::CIEFileWriter() : m_pState(std::make_unique<TState>()) {}

CIEFileWriter::~CIEFileWriter()
{
    Close();
}

bool CIEFileWriter::Create(const std::string& path)
{
    Close();
    *m_pState = TState();
    m_pState->m_bFailed = !m_pState->Create(path);
    return !m_pState->m_bFailed;
}

bool CIEFileWriter::IsOpen() const
{
    return m_pState->m_File.IsOpen();
}

bool CIEFileWriter::Write(std::string_view bytes)
{
    TState& state = *m_pState;
    if (!state.CanWrite())
        return false;
    while (!bytes.empty()) {
        if (state.m_nAt == kWriteBuffer && !state.SendBuffer())
            return false;
        if (state.m_nUsed == 0 && bytes.size() >= kWriteBuffer) {
            const bool bSent = state.Send(bytes.data(), bytes.size());
            state.m_nBufferOffset += bytes.size();
            return bSent;
        }
        const std::size_t count = std::min(bytes.size(), kWriteBuffer - state.m_nAt);
        std::memcpy(state.m_pBuffer.get() + state.m_nAt, bytes.data(), count);
        state.m_nAt += count;
        state.m_nUsed = std::max(state.m_nUsed, state.m_nAt);
        bytes.remove_prefix(count);
    }
    return true;
}

std::uint64_t CIEFileWriter::GetPosition() const
{
    return m_pState->Position();
}

bool CIEFileWriter::Seek(std::uint64_t position)
{
    TState& state = *m_pState;
    if (!state.CanWrite() || position > state.Length())
        return false;
    if (position >= state.m_nBufferOffset && position - state.m_nBufferOffset <= state.m_nUsed) {
        state.m_nAt = static_cast<std::size_t>(position - state.m_nBufferOffset);
        return true;
    }
    if (!state.SendBuffer())
        return false;
    state.m_nBufferOffset = position;
    return true;
}

std::size_t CIEFileWriter::ReadAt(std::uint64_t position, void* out, std::size_t count)
{
    TState& state = *m_pState;
    if (!state.CanWrite() || position >= state.Length())
        return 0;
    count = Lesser(count, state.Length() - position);
    const std::uint64_t nBufferEnd = state.m_nBufferOffset + state.m_nUsed;
    if (count > 0 && position >= state.m_nBufferOffset && position + count <= nBufferEnd) {
        std::memcpy(out, state.m_pBuffer.get() + (position - state.m_nBufferOffset), count);
        return count;
    }
    // bytes that the system has can be read past the buffer, unless the buffer is about to change some of them
    if (position < nBufferEnd && position + count > state.m_nBufferOffset && !state.SendBuffer())
        return 0;
    std::size_t done = 0;
    while (done < count) {
        const std::size_t got = ReadSome(state.m_File, static_cast<char*>(out) + done, count - done, position + done);
        if (got == 0)
            break;
        done += got;
    }
    return done;
}

bool CIEFileWriter::Flush()
{
    return m_pState->CanWrite() && m_pState->SendBuffer();
}

bool CIEFileWriter::Close()
{
    TState& state = *m_pState;
    if (state.m_File.IsOpen()) {
        const bool bSent = !state.m_bFailed && state.SendBuffer();
        state.m_bFailed = !state.m_File.Close() || !bSent;
        state.m_pBuffer.reset();
    }
    return !state.m_bFailed;
}

bool CIEFileWriter::HasFailed() const
{
    return m_pState->m_bFailed;
}
