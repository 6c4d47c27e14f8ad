// Text files: lines in, lines out, whatever their encoding.
#pragma once

#include "alidade/platform/api.h"
#include "alidade/platform/file.h"
#include "alidade/vellumlib/types.h"

#include <cstdint>
#include <string_view>

/// Hands out the lines of a file as UTF-8. A byte order mark decides the encoding (UTF-8, UTF-16 of either order);
/// without one, 16-bit text is known by its zero bytes, a file that is valid UTF-8 throughout stays as it is, and any
/// other is in the code page. CR LF, LF and CR each end a line; the last line may lack an end. One thread at a time.
class ALIDADE_API CIETextFile {
public:
    /// A line of more bytes than this is cut here, and the rest of it is passed over; WasCut tells.
    static constexpr std::size_t kLongestLine = std::size_t{256} << 20;

    CIETextFile();
    ~CIETextFile();
    CIETextFile(const CIETextFile&) = delete;
    CIETextFile& operator=(const CIETextFile&) = delete;

    /// Opens with writers denied (see CIEFileReader). `codePage` is a name known to iconv; an unknown one is taken as
    /// CP1252.
    [[nodiscard]] bool Open(const CString& strFileName, const CString& codePage = "CP1252");
    void Close();
    [[nodiscard]] const CString& GetFileName() const;

    /// Next line without its end. False at the end of the file. The view lives until the next call.
    bool ReadLine(std::string_view& line);
    /// Number of the line last read, from 1; 0 before the first.
    [[nodiscard]] std::int64_t GetLineNumber() const;
    /// True if the line last read was longer than kLongestLine.
    [[nodiscard]] bool WasCut() const;
    /// True if bytes of the line last read have no meaning in the file's encoding; each stands as U+FFFD.
    [[nodiscard]] bool WasMended() const;

    /// Bytes, the mark among them.
    [[nodiscard]] std::uint64_t GetLength() const;
    /// Offset of the byte behind the line last read and its end.
    [[nodiscard]] std::uint64_t GetPosition() const;
    /// Back to the first line, behind the mark if there is one.
    void Rewind();
    /// True for 16-bit text.
    [[nodiscard]] bool IsUnicode() const;
    /// "UTF-8", "UTF-16LE", "UTF-16BE" or the code page.
    [[nodiscard]] const CString& GetEncoding() const;
    /// True once the system refused a read; the file seems to end there.
    [[nodiscard]] bool HasFailed() const;

private:
    struct TState;
    std::unique_ptr<TState> m_pState;
};

/// A text file for writing, in UTF-8 without a mark or in another encoding. One thread at a time.
class ALIDADE_API CIETextWriter {
public:
    CIETextWriter();
    ~CIETextWriter();
    CIETextWriter(const CIETextWriter&) = delete;
    CIETextWriter& operator=(const CIETextWriter&) = delete;

    /// Creates or truncates the file (see CIEFileWriter). `encoding` is a name known to iconv; UTF-16 gets a mark.
    /// False also for an encoding that iconv doesn't know.
    [[nodiscard]] bool Create(const CString& strFileName, const CString& encoding = "UTF-8");
    /// Whether Create knows the encoding.
    static bool IsEncoding(const CString& encoding);
    [[nodiscard]] bool IsOpen() const;
    [[nodiscard]] const CString& GetFileName() const;
    /// Appends text, turned from UTF-8 into the file's encoding; a character that it lacks becomes "?" and is counted.
    /// False once a write has failed.
    bool Write(std::string_view text);
    /// Sends all to the disk. False if any write failed.
    bool Close();
    /// Characters that became "?".
    [[nodiscard]] std::int64_t GetReplacedCharacters() const;
    /// The bytes below, for forms that go back to mend a count.
    [[nodiscard]] CIEFileWriter& GetFile();

private:
    struct TState;
    std::unique_ptr<TState> m_pState;
};

/// A line under construction; keeps its memory from one line to the next.
class ALIDADE_API CIETextLine {
public:
    CIETextLine& Add(std::string_view text)
    {
        m_strText.append(text);
        return *this;
    }
    CIETextLine& Add(char c)
    {
        m_strText.push_back(c);
        return *this;
    }
    CIETextLine& AddInt(std::int64_t nValue);
    /// The value with that many decimals, as IEUtils::DoubleToString writes it.
    CIETextLine& AddFixed(double dValue, int nDecimals);
    [[nodiscard]] const CString& GetText() const { return m_strText; }
    [[nodiscard]] bool IsEmpty() const { return m_strText.empty(); }
    void Clear() { m_strText.clear(); }
    /// Writes the line with CR LF behind it and clears it. True if written.
    bool EndTo(CIETextWriter& file);

private:
    CString m_strText;
};
