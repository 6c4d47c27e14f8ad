// Binary files: a buffered reader that denies writers, and a buffered writer whose failed writes are seen.
#pragma once

#include "alidade/platform/api.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

/// Lets a test refuse an open or fill the disk. Installed with Platform::SetFileFaults; asked by every reader and
/// writer.
class ALIDADE_API IIEFileFaults {
public:
    virtual ~IIEFileFaults() = default;
    /// False refuses the open of this file.
    virtual bool AllowOpen(const std::string& path, bool bWrite) = 0;
    /// How many of the `wanted` bytes that are about to go to the disk it still takes. Less than wanted is a full disk.
    virtual std::size_t AllowWrite(std::size_t wanted) = 0;
};

namespace Platform {

/// Installs `pFaults` (not owned, null takes it away). For tests: not to be changed while a file is being opened or
/// written on another thread.
ALIDADE_API void SetFileFaults(IIEFileFaults* pFaults);

/// Deletes a file. False if it is still there afterwards; a file that isn't there is true.
ALIDADE_API bool RemoveFile(const std::string& path);
/// True if a file, folder or anything else of that name exists.
ALIDADE_API bool FileExists(const std::string& path);

} // namespace Platform

/// Reads a file from one large buffer. Paths are UTF-8.
/// While it is open the file is locked against writers, and an open fails when somebody holds the file for writing.
/// One thread at a time uses a reader.
class ALIDADE_API CIEFileReader {
public:
    CIEFileReader();
    ~CIEFileReader();
    CIEFileReader(const CIEFileReader&) = delete;
    CIEFileReader& operator=(const CIEFileReader&) = delete;

    /// Opens for reading. False if there is no such file, it is a folder, it may not be read, or somebody writes it.
    [[nodiscard]] bool Open(const std::string& path);
    void Close();
    [[nodiscard]] bool IsOpen() const;

    /// Length in bytes as found when the file was opened.
    [[nodiscard]] std::uint64_t GetLength() const;
    /// Offset of the next byte that Read, Peek or Skip gives.
    [[nodiscard]] std::uint64_t GetPosition() const;
    /// Goes to a byte offset, at most the length. False beyond it.
    bool Seek(std::uint64_t position);

    /// Copies up to `count` bytes; gives how many. Less than asked is the end of the file or a read error.
    std::size_t Read(void* out, std::size_t count);
    /// A look at the bytes from the position on without taking them: at least `count` bytes unless the file ends first,
    /// and whatever else the buffer holds behind them. Valid until the next call. The buffer grows to `count`.
    std::string_view Peek(std::size_t count);
    /// Takes `count` bytes that Peek has shown.
    void Skip(std::size_t count);
    /// True once the system refused a read (a broken disk, a folder); such a file seems to end there.
    [[nodiscard]] bool HasFailed() const;

private:
    struct TState;
    std::unique_ptr<TState> m_pState;
};

/// Writes a file with the meaning of mode "wb+": created, or truncated if it exists, and readable back.
/// Bytes gather in a buffer and go out in large chunks. A write that fails, a full disk among them, makes this and
/// every later call false, at the latest Close. One thread at a time uses a writer.
class ALIDADE_API CIEFileWriter {
public:
    CIEFileWriter();
    /// Closes; a failure seen only here is lost, so call Close where it matters.
    ~CIEFileWriter();
    CIEFileWriter(const CIEFileWriter&) = delete;
    CIEFileWriter& operator=(const CIEFileWriter&) = delete;

    /// False if the file can't be created or truncated, or somebody reads it with writers denied.
    [[nodiscard]] bool Create(const std::string& path);
    [[nodiscard]] bool IsOpen() const;

    /// Appends at the position. False once anything failed.
    bool Write(std::string_view bytes);
    /// Offset at which the next Write lands.
    [[nodiscard]] std::uint64_t GetPosition() const;
    /// Goes to an offset within what was written, to mend a count or an offset there. False beyond the end.
    bool Seek(std::uint64_t position);
    /// Reads back up to `count` bytes at an offset; gives how many. The position doesn't move.
    std::size_t ReadAt(std::uint64_t position, void* out, std::size_t count);
    /// Sends the buffer to the system. False once anything failed.
    bool Flush();
    /// Sends the buffer and closes. False if any write since Create failed. A second call gives the same answer.
    bool Close();
    [[nodiscard]] bool HasFailed() const;

private:
    struct TState;
    std::unique_ptr<TState> m_pState;
};
