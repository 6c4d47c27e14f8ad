#include "alidade/vellumlib/text_file.h"

#include "alidade/vellumlib/utils.h"
#include "vellumlib/encoding.h"

#include <algorithm>
#include <cstring>

using Encoding::AppendMended;
using Encoding::CConverter;
using Encoding::kReplacement;
using Encoding::UnfinishedTail;

namespace {

/// True for ASCII without the character that begins a switch to another set of characters.
bool IsUnswitchedAscii(std::string_view text)
{
    unsigned char all = 0;
    for (char c : text)
        all = static_cast<unsigned char>(all | static_cast<unsigned char>(c));
    return all < 0x80 && text.find('\x1B') == std::string_view::npos;
}

/// True if text in the encoding can be cut at the bytes of line ends and its ASCII characters are those of ASCII;
/// `bWhole` asks for all of them, otherwise the line ends are enough.
bool KeepsAscii(CConverter& converter, bool bWhole)
{
    CString ascii = "\r\n";
    if (bWhole) {
        ascii += '\t';
        for (char c = ' '; c <= '~'; ++c)
            ascii += c;
    }
    CString converted;
    const bool bAll = converter.Convert(converted, ascii).empty();
    converter.Restart();
    return bAll && converted == ascii;
}

/// Tells 16-bit text by its first bytes: most units lack one of their bytes, always the same one, as only characters
/// beyond U+00FF have both. Empty for a text of bytes, which a few stray zeros, or rows of them, don't make 16-bit.
CString FindUnits(std::string_view text)
{
    constexpr std::size_t kFewestUnits = 4;
    constexpr std::size_t kUnitsForOneStray = 16;
    const std::size_t nUnits = text.size() / 2;
    std::size_t nFirst = 0;
    std::size_t nSecond = 0;
    for (std::size_t i = 0; i < nUnits; ++i) {
        nFirst += text[2 * i] == '\0';
        nSecond += text[2 * i + 1] == '\0';
    }
    if (nUnits < kFewestUnits)
        return {};
    if (nSecond > nUnits / 2 && nFirst <= nUnits / kUnitsForOneStray)
        return "UTF-16LE";
    if (nFirst > nUnits / 2 && nSecond <= nUnits / kUnitsForOneStray)
        return "UTF-16BE";
    return {};
}

} // namespace

// The state holds a view of the reader's buffer and the index up to which its bytes are taken, so that a line costs no
// call into the reader.
struct CIETextFile::TState {
    enum class EKind {
        Plain,    ///< UTF-8 that was looked through from end to end
        Marked,   ///< UTF-8 by its mark alone
        CodePage, ///< bytes for iconv
        Units,    ///< 16-bit text
    };

    CIEFileReader m_File;
    CString m_strFileName;
    CString m_strEncoding;
    EKind m_eKind = EKind::Plain;
    bool m_bBigEndian = false;
    bool m_bAsciiPasses = false; ///< a line of ASCII needs no iconv
    CConverter m_Converter;
    std::uint64_t m_nStart = 0; ///< length of the mark
    std::int64_t m_nLine = 0;
    bool m_bCut = false;
    bool m_bMended = false;

    std::string_view m_Block;  ///< bytes that the reader shows
    std::size_t m_nAt = 0;     ///< of them, those taken
    std::size_t m_nNextLf = 0; ///< index in the block of the first LF from m_nAt on, the block's size if it has none
    CString m_strLong;         ///< a line that was too long
    CString m_strConverted;    ///< a line that had to be converted
    char16_t m_cHigh = 0;      ///< first half of a surrogate pair

    bool ShowMore(std::size_t count);
    void GoTo(std::uint64_t position);

    void FindEncoding(const CString& codePage);
    bool IsUtf8ToTheEnd();
    void OpenCodePage(const CString& codePage);

    std::size_t FindLineEnd(std::size_t from);
    bool TakeBytes(std::string_view& line);
    bool TakeLongLine(std::string_view& line);
    void TakeLineEnd(std::size_t end);
    void Convert(std::string_view& line);

    bool PeekUnit(char16_t& c);
    bool TakeUnits(std::string_view& line);
    void AppendUnit(char16_t c);
    void AppendReplacement();
};

/// Makes the block hold at least `count` bytes from m_nAt on. False if the file ends first.
bool CIETextFile::TState::ShowMore(std::size_t count)
{
    m_File.Skip(m_nAt);
    m_nAt = 0;
    m_Block = m_File.Peek(count);
    m_nNextLf = 0;
    return m_Block.size() >= count;
}

void CIETextFile::TState::GoTo(std::uint64_t position)
{
    m_Block = {};
    m_nAt = m_nNextLf = 0;
    // a file that broke while it was read may refuse; it has no bytes to show then
    (void)m_File.Seek(position);
}

void CIETextFile::TState::FindEncoding(const CString& codePage)
{
    constexpr std::size_t kLookedAt = 4096;
    const std::string_view head = m_File.Peek(kLookedAt).substr(0, kLookedAt);
    m_strEncoding = head.starts_with("\xFF\xFE") ? "UTF-16LE" : head.starts_with("\xFE\xFF") ? "UTF-16BE" : "";
    m_nStart = m_strEncoding.empty() ? 0 : 2;
    if (m_strEncoding.empty())
        m_strEncoding = FindUnits(head);
    if (!m_strEncoding.empty()) {
        m_eKind = EKind::Units;
        m_bBigEndian = m_strEncoding == "UTF-16BE";
    } else if (head.starts_with("\xEF\xBB\xBF")) {
        m_eKind = EKind::Marked;
        m_strEncoding = "UTF-8";
        m_nStart = 3;
    } else if (IsUtf8ToTheEnd()) {
        m_eKind = EKind::Plain;
        m_strEncoding = "UTF-8";
    } else {
        m_eKind = EKind::CodePage;
        OpenCodePage(codePage);
    }
}

bool CIETextFile::TState::IsUtf8ToTheEnd()
{
    std::size_t nTail = 0;
    for (;;) {
        const std::string_view block = m_File.Peek(nTail + 1);
        if (block.size() <= nTail)
            return nTail == 0;
        nTail = UnfinishedTail(block);
        if (!IEUtils::IsValidUtf8(block.substr(0, block.size() - nTail)))
            return false;
        m_File.Skip(block.size() - nTail);
    }
}

void CIETextFile::TState::OpenCodePage(const CString& codePage)
{
    m_strEncoding = codePage;
    if (!m_Converter.Open("UTF-8", codePage) || !KeepsAscii(m_Converter, false)) {
        m_strEncoding = "CP1252";
        if (!m_Converter.Open("UTF-8", m_strEncoding))
            return;
    }
    m_bAsciiPasses = KeepsAscii(m_Converter, true);
}

/// Index in the block of the first LF or CR from `from` on, the block's size if there is none. The LF ahead is
/// remembered: else a file with CR alone would be searched for it again and again.
std::size_t CIETextFile::TState::FindLineEnd(std::size_t from)
{
    const char* const pBlock = m_Block.data();
    if (m_nNextLf < from || m_nNextLf == 0) {
        const std::size_t lf = m_Block.find('\n', from);
        m_nNextLf = std::min(lf, m_Block.size());
    }
    const void* const pCr = from < m_nNextLf ? std::memchr(pBlock + from, '\r', m_nNextLf - from) : nullptr;
    return pCr ? static_cast<std::size_t>(static_cast<const char*>(pCr) - pBlock) : m_nNextLf;
}

bool CIETextFile::TState::TakeBytes(std::string_view& line)
{
    std::size_t end = FindLineEnd(m_nAt);
    // a CR at the end of the block may have its LF in the next one
    while (end + 1 >= m_Block.size() && (end == m_Block.size() || m_Block[end] == '\r') &&
           end - m_nAt <= kLongestLine) {
        const std::size_t nSearched = end - m_nAt;
        const std::size_t nHeld = m_Block.size() - m_nAt;
        const bool bMore = ShowMore(nHeld + 1);
        end = FindLineEnd(nSearched);
        if (bMore)
            continue;
        if (nHeld == 0)
            return false;
        break;
    }
    if (end - m_nAt > kLongestLine)
        return TakeLongLine(line);
    line = std::string_view(m_Block.data() + m_nAt, end - m_nAt);
    TakeLineEnd(end);
    return true;
}

/// Takes the line end that begins at that index of the block, if the file doesn't end there.
void CIETextFile::TState::TakeLineEnd(std::size_t end)
{
    const bool bCr = end < m_Block.size() && m_Block[end] == '\r';
    const bool bCrLf = bCr && end + 1 < m_Block.size() && m_Block[end + 1] == '\n';
    m_nAt = std::min(end + (bCrLf ? 2 : 1), m_Block.size());
}

/// Keeps the front of a line that is too long, up to a whole character, and passes over the rest.
bool CIETextFile::TState::TakeLongLine(std::string_view& line)
{
    m_strLong.assign(m_Block.substr(m_nAt, kLongestLine));
    if (m_eKind == EKind::Plain || m_eKind == EKind::Marked)
        m_strLong.resize(m_strLong.size() - UnfinishedTail(m_strLong));
    line = m_strLong;
    m_bCut = true;
    m_nAt += kLongestLine;
    std::size_t end = FindLineEnd(m_nAt);
    while (end == m_Block.size()) {
        m_nAt = end;
        if (!ShowMore(1))
            return true;
        end = FindLineEnd(0);
    }
    m_nAt = end;
    if (m_Block.size() - end < 2) {
        (void)ShowMore(2);
        end = 0;
    }
    TakeLineEnd(end);
    return true;
}

/// Makes a line of bytes UTF-8.
void CIETextFile::TState::Convert(std::string_view& line)
{
    const bool bHasConverter = m_Converter.IsOpen();
    if (bHasConverter ? m_bAsciiPasses && IsUnswitchedAscii(line) : IEUtils::IsValidUtf8(line))
        return;
    m_strConverted.clear();
    if (!bHasConverter) {
        AppendMended(m_strConverted, line);
        m_bMended = true;
    } else {
        line = m_Converter.Convert(m_strConverted, line);
        while (!line.empty()) {
            AppendReplacement();
            line = m_Converter.Convert(m_strConverted, line.substr(1));
        }
        m_Converter.Restart();
        // the UTF-8 that iconv reads reaches beyond U+10FFFF
        if (!IEUtils::IsValidUtf8(m_strConverted)) {
            CString mended;
            AppendMended(mended, m_strConverted);
            m_strConverted = std::move(mended);
            m_bMended = true;
        }
    }
    line = m_strConverted;
}

void CIETextFile::TState::AppendReplacement()
{
    m_strConverted += kReplacement;
    m_bMended = true;
}

/// Looks at the next unit of 16-bit text. False at the end of the file, or one byte ahead of it.
bool CIETextFile::TState::PeekUnit(char16_t& c)
{
    if (m_Block.size() - m_nAt < 2 && !ShowMore(2))
        return false;
    const auto first = static_cast<unsigned char>(m_Block[m_nAt]);
    const auto second = static_cast<unsigned char>(m_Block[m_nAt + 1]);
    c = static_cast<char16_t>(m_bBigEndian ? first << 8U | second : second << 8U | first);
    return true;
}

bool CIETextFile::TState::TakeUnits(std::string_view& line)
{
    m_strConverted.clear();
    m_cHigh = 0;
    std::size_t nBytes = 0;
    char16_t c = 0;
    bool bEnd = false;
    while (!bEnd && PeekUnit(c)) {
        m_nAt += 2;
        nBytes += 2;
        bEnd = c == u'\n' || c == u'\r';
        if (!bEnd && nBytes <= kLongestLine)
            AppendUnit(c);
        else if (!bEnd)
            m_bCut = true;
    }
    if (m_cHigh != 0)
        AppendReplacement();
    if (bEnd) {
        if (c == u'\r' && PeekUnit(c) && c == u'\n')
            m_nAt += 2;
    } else if (m_nAt < m_Block.size()) {
        // half a unit is left at the end of the file
        ++m_nAt;
        AppendReplacement();
    } else if (nBytes == 0) {
        return false;
    }
    line = m_strConverted;
    return true;
}

void CIETextFile::TState::AppendUnit(char16_t c)
{
    const bool bLow = c >= 0xDC00 && c <= 0xDFFF;
    if (m_cHigh != 0 && bLow) {
        IEUtils::AppendCharacter(m_strConverted, 0x10000U + ((m_cHigh - 0xD800U) << 10U) + (c - 0xDC00U));
        m_cHigh = 0;
        return;
    }
    if (m_cHigh != 0)
        AppendReplacement();
    m_cHigh = c >= 0xD800 && c <= 0xDBFF ? c : u'\0';
    if (c < 0x80)
        m_strConverted += static_cast<char>(c);
    else if (bLow)
        AppendReplacement();
    else if (m_cHigh == 0)
        IEUtils::AppendCharacter(m_strConverted, c);
}

CIETextFile::CIETextFile() : m_pState(std::make_unique<TState>()) {}

CIETextFile::~CIETextFile() = default;

bool CIETextFile::Open(const CString& strFileName, const CString& codePage)
{
    m_pState = std::make_unique<TState>();
    m_pState->m_strFileName = strFileName;
    if (!m_pState->m_File.Open(strFileName))
        return false;
    m_pState->FindEncoding(codePage);
    Rewind();
    return true;
}

void CIETextFile::Close()
{
    m_pState->m_Block = {};
    m_pState->m_nAt = m_pState->m_nNextLf = 0;
    m_pState->m_File.Close();
}

const CString& CIETextFile::GetFileName() const
{
    return m_pState->m_strFileName;
}

bool CIETextFile::ReadLine(std::string_view& line)
{
    TState& state = *m_pState;
    line = {};
    state.m_bCut = state.m_bMended = false;
    const bool bUnits = state.m_eKind == TState::EKind::Units;
    if (!(bUnits ? state.TakeUnits(line) : state.TakeBytes(line)))
        return false;
    if (!bUnits && state.m_eKind != TState::EKind::Plain)
        state.Convert(line);
    ++state.m_nLine;
    return true;
}

std::int64_t CIETextFile::GetLineNumber() const
{
    return m_pState->m_nLine;
}

bool CIETextFile::WasCut() const
{
    return m_pState->m_bCut;
}

bool CIETextFile::WasMended() const
{
    return m_pState->m_bMended;
}

std::uint64_t CIETextFile::GetLength() const
{
    return m_pState->m_File.GetLength();
}

std::uint64_t CIETextFile::GetPosition() const
{
    return m_pState->m_File.GetPosition() + m_pState->m_nAt;
}

void CIETextFile::Rewind()
{
    TState& state = *m_pState;
    state.GoTo(state.m_nStart);
    state.m_nLine = 0;
    state.m_bCut = state.m_bMended = false;
}

bool CIETextFile::IsUnicode() const
{
    return m_pState->m_eKind == TState::EKind::Units;
}

const CString& CIETextFile::GetEncoding() const
{
    return m_pState->m_strEncoding;
}

bool CIETextFile::HasFailed() const
{
    return m_pState->m_File.HasFailed();
}
