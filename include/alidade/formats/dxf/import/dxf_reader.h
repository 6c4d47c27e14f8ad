// Reads the groups of a drawing file, in text or binary form.
#pragma once

#include "alidade/formats/dxf/import/dxf_token.h"
#include "alidade/platform/api.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

/// Turns a drawing file into groups. It knows which codes have which kind of value, and nothing of sections or
/// entities.
///
/// In text form a group is two lines, each ended by CR LF, LF or CR. A line of more than kLongestLine bytes is
/// read in pieces, and what is left of it counts as the next line, unless PassOverLongLines was called. In this
/// system's own binary form a group is a code of four bytes and a value: text ended by a zero for the codes 0 to 9,
/// eight bytes for 10 to 59, four for 60 to 78, none for all others. In the binary form of other programs a code has
/// two bytes, or in old drawings mostly one, and each code has a value.
///
/// A text comes in upper case (ASCII letters alone, and none that is half of another character, see SetBytes), but for
/// the codes 310 to 369. Nothing that isn't a number is told:
/// it reads as 0. A copy reads on in the same file, whose place both share; whichever closes it, closes it for both.
class ALIDADE_API CDXFReader {
public:
    /// Bytes of a line without its end: as many as a text of any release has.
    static constexpr std::size_t kLongestLine = 2049;

    CDXFReader();
    CDXFReader(const CDXFReader& other);
    CDXFReader& operator=(const CDXFReader& other);
    ~CDXFReader();

    /// False if the file can't be opened.
    [[nodiscard]] bool Open(const std::string& strName);
    /// The next group. Without an open file a new token; at the end of the file, which a group without all of its value
    /// is too, the code -1 with the word END_OF_FILE.
    TToken ReadToken();
    /// True in any case.
    bool Close();

    [[nodiscard]] bool IsBinary() const { return m_eForm != EForm::Text; }
    /// Whether a group always has a value. In this system's own binary form those above 78 have none.
    [[nodiscard]] bool HasAllValues() const { return m_eForm != EForm::OwnBinary; }
    /// True of a file in a binary form that isn't known, of which text form makes nothing.
    [[nodiscard]] bool IsForeignBinary() const { return m_bForeignBinary; }
    /// Line of the last token's code, from 1; 0 ahead of the first token and in binary form.
    [[nodiscard]] std::int64_t GetLineNumber() const;
    /// Byte at which the last token begins.
    [[nodiscard]] std::int64_t GetOffset() const;
    /// How a character stands in bytes. In a page of double bytes the second byte may look like a letter.
    enum class EBytes { Single, ShiftJis, Double };
    /// What texts are in from now on. With `bMayBeUtf8` a text that is valid UTF-8 is taken as that.
    void SetBytes(EBytes eBytes, bool bMayBeUtf8)
    {
        m_eBytes = eBytes;
        m_bMayBeUtf8 = bMayBeUtf8;
    }
    /// From now on the rest of a line, or of a binary text, of more than kLongestLine bytes is passed over, so that the
    /// groups behind it keep their codes.
    void PassOverLongLines() { m_bPassOver = true; }
    /// Whether that happened to the last token's value.
    [[nodiscard]] bool WasCut() const { return m_bCut && m_bPassOver; }
    /// How much is read of how many bytes.
    [[nodiscard]] std::int64_t GetPosition() const;
    [[nodiscard]] std::int64_t GetLength() const;
    /// True if the system refused a read; such a file seems to end there.
    [[nodiscard]] bool HasFailed() const;

    /// How the value of a code that has a number stood in the file.
    enum class ENumber { Read, InPart, NoNumber, NotFinite };
    /// About the last token.
    [[nodiscard]] ENumber GetNumberState() const { return m_eNumber; }

private:
    static constexpr std::size_t kBufferSize = kLongestLine + 1;
    enum class EForm { Text, OwnBinary, WideBinary, NarrowBinary };
    struct TFile;

    bool NeedBytes(std::size_t nCount);
    bool TakeLine(std::string_view& line);
    void PassOverRest();
    TToken ReadTextToken();
    TToken ReadBinaryToken();
    TToken ReadOtherBinaryToken();
    bool ReadOtherCode(std::int32_t& nCode);
    bool TakeBytes(std::size_t nCount, std::string_view& bytes);
    TToken EndToken();
    void SetText(TToken& token, std::string_view text, bool bWord);
    void RaiseText(TToken& token);
    double ReadNumber(std::string_view text);
    std::int32_t ReadInt(std::string_view text);

    bool ReadBinaryInt(std::int32_t& nValue);
    bool ReadBinaryDouble(double& dValue);
    bool ReadBinaryString(char* pText);

    EForm m_eForm = EForm::Text;
    bool m_bForeignBinary = false;
    bool m_bPassOver = false;
    bool m_bMayBeUtf8 = true;
    EBytes m_eBytes = EBytes::Single;
    bool m_bCut = false;            ///< a line of the last token was longer than the buffer
    std::shared_ptr<TFile> m_pFile; ///< null while none is open
    char m_szBuffer[kBufferSize] = {};
    ENumber m_eNumber = ENumber::Read;
};
