#include "alidade/formats/dxf/import/dxf_reader.h"

#include "alidade/platform/file.h"
#include "alidade/vellumlib/utils.h"
#include "platform/dxf_groups.h"
#include "vellumlib/little_endian.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstring>
#include <limits>

namespace {

/// What a binary file begins with; its last zero counts.
constexpr std::string_view kSentinel("AutoCAD Binary DXF\r\n\x16\0", 22);
/// What the binary form of other programs begins with.
constexpr std::string_view kOtherSentinel("AutoCAD Binary DXF\r\n\x1A\0", 22);
static_assert(kOtherSentinel.size() == kSentinel.size());
/// So much of it all binary forms have.
constexpr std::size_t kSharedSentinel = 20;
constexpr unsigned char kWideCode = 0xFF; ///< of a code that has two bytes more, where codes have one
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

/// Two lines with their ends.
constexpr std::size_t kLongestGroup = 2 * (CDXFReader::kLongestLine + 2);

/// What this reader makes of a value: not all that a drawing can hold, and words of what isn't known.
enum class EValue : std::uint8_t { None, Word, Text, Double, Int };

struct TCodes {
    int m_nFirst;
    int m_nLast;
    EValue m_eValue;
};
constexpr TCodes kCodes[] = {
    {0, 9, EValue::Word},         {10, 59, EValue::Double},   {60, 79, EValue::Int},      {90, 99, EValue::Int},
    {100, 100, EValue::Word},     {102, 102, EValue::Word},   {105, 105, EValue::Word},   {110, 149, EValue::Double},
    {170, 179, EValue::Int},      {210, 210, EValue::Double}, {220, 220, EValue::Double}, {230, 230, EValue::Double},
    {250, 259, EValue::Int},      {270, 299, EValue::Int},    {300, 309, EValue::Word},   {310, 369, EValue::Text},
    {370, 389, EValue::Int},      {390, 399, EValue::Word},   {400, 409, EValue::Int},    {410, 419, EValue::Word},
    {420, 429, EValue::Int},      {430, 439, EValue::Word},   {450, 459, EValue::Int},    {460, 469, EValue::Double},
    {470, 479, EValue::Word},     {760, 769, EValue::Int},    {780, 789, EValue::Int},    {999, 1009, EValue::Word},
    {1010, 1059, EValue::Double}, {1060, 1071, EValue::Int},
};
constexpr std::size_t kFirstFreeCode = 1100; ///< from here on all values are words

constexpr auto kValues = [] {
    std::array<EValue, kFirstFreeCode> values{};
    for (const TCodes& codes : kCodes) {
        for (int i = codes.m_nFirst; i <= codes.m_nLast; ++i)
            values[static_cast<std::size_t>(i)] = codes.m_eValue;
    }
    return values;
}();

EValue ValueOf(std::int32_t nCode)
{
    const auto nIndex = static_cast<std::size_t>(nCode);
    return nIndex < kFirstFreeCode ? kValues[nIndex] : EValue::Word;
}

// codes of the binary form that have a value
constexpr int kLastBinaryText = 9;
constexpr int kLastBinaryDouble = 59;
constexpr int kLastBinaryInt = 78;

bool IsBlank(char c)
{
    return c == ' ' || (c >= '\t' && c <= '\r');
}

bool IsDigit(char c)
{
    return c >= '0' && c <= '9';
}

/// The text behind its blanks and its sign.
std::string_view TakeSign(std::string_view text, bool& bNegative)
{
    while (!text.empty() && IsBlank(text[0]))
        text.remove_prefix(1);
    bNegative = text.starts_with('-');
    if (bNegative || text.starts_with('+'))
        text.remove_prefix(1);
    return text;
}

bool HasHighByte(std::string_view text)
{
    return std::any_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) >= 0x80; });
}

/// ASCII letters in upper case, but for those that are the second byte of a character.
void RaiseLetters(char* pText, bool bShiftJis)
{
    const auto isFirst = [bShiftJis](unsigned char c) {
        return bShiftJis ? (c >= 0x81 && c <= 0x9F) || (c >= 0xE0 && c <= 0xFC) : c >= 0x81 && c <= 0xFE;
    };
    for (; *pText; ++pText) {
        if (isFirst(static_cast<unsigned char>(*pText)) && pText[1])
            ++pText;
        else if (*pText >= 'a' && *pText <= 'z')
            *pText = static_cast<char>(*pText - ('a' - 'A'));
    }
}

/// Whether codes have one byte, by the bytes of the first group, which is of a section or a comment.
bool IsNarrow(std::string_view bytes)
{
    return bytes.size() > 1 &&
           (static_cast<unsigned char>(bytes[0]) == kWideCode || (bytes[0] == '\0' && bytes[1] != '\0'));
}

std::size_t SizeOf(DXFGroup::EValue eValue)
{
    switch (eValue) {
    case DXFGroup::EValue::Bool:
        return 1;
    case DXFGroup::EValue::Int16:
        return 2;
    case DXFGroup::EValue::Int32:
        return 4;
    default:
        return 8;
    }
}

/// A whole number, its lowest byte first.
std::int64_t ReadSigned(std::string_view bytes)
{
    const std::size_t nFree = 64 - 8 * bytes.size(); // bits
    return static_cast<std::int64_t>(LittleEndian::Read(bytes) << nFree) >> nFree;
}

/// "inf" and "nan" in any case.
bool IsNumberWord(std::string_view text)
{
    const CString start = IEUtils::ToLower(text.substr(0, 3));
    return start == "inf" || start == "nan";
}

} // namespace

/// The file and the part of its bytes at hand, which all copies of a reader share.
struct CDXFReader::TFile {
    CIEFileReader m_Reader;
    bool m_bOpen = true;
    const char* m_pAt = nullptr; ///< the next byte
    const char* m_pEnd = nullptr;
    std::uint64_t m_nEndOffset = 0; ///< of m_pEnd in the file
    std::uint64_t m_nTokenOffset = 0;
    std::int64_t m_nLinesRead = 0;
    std::int64_t m_nTokenLine = 0;

    std::size_t Held() const { return static_cast<std::size_t>(m_pEnd - m_pAt); }
    std::uint64_t Position() const { return m_nEndOffset - Held(); }
    void GoTo(std::uint64_t nPosition)
    {
        (void)m_Reader.Seek(nPosition);
        m_pAt = m_pEnd = nullptr;
        m_nEndOffset = m_Reader.GetPosition();
    }
    void Fill(std::size_t nCount)
    {
        (void)m_Reader.Seek(Position());
        const std::string_view bytes = m_Reader.Peek(nCount);
        m_nEndOffset = m_Reader.GetPosition() + bytes.size();
        m_pAt = bytes.data();
        m_pEnd = m_pAt + bytes.size();
    }
};

CDXFReader::CDXFReader() = default;
CDXFReader::CDXFReader(const CDXFReader& other) = default;
CDXFReader& CDXFReader::operator=(const CDXFReader& other) = default;
CDXFReader::~CDXFReader() = default;

bool CDXFReader::Open(const std::string& strName)
{
    Close();
    auto pFile = std::make_shared<TFile>();
    if (!pFile->m_Reader.Open(strName))
        return false;
    const std::string_view head = pFile->m_Reader.Peek(kSentinel.size() + 2);
    m_bForeignBinary = false;
    if (head.starts_with(kSentinel))
        m_eForm = EForm::OwnBinary;
    else if (head.starts_with(kOtherSentinel))
        m_eForm = IsNarrow(head.substr(kSentinel.size())) ? EForm::NarrowBinary : EForm::WideBinary;
    else
        m_bForeignBinary = head.starts_with(kSentinel.substr(0, kSharedSentinel));
    if (m_eForm != EForm::Text)
        pFile->GoTo(kSentinel.size());
    else
        pFile->GoTo(head.starts_with(kByteOrderMark) ? kByteOrderMark.size() : 0);
    m_pFile = std::move(pFile);
    return true;
}

bool CDXFReader::Close()
{
    if (m_pFile) {
        m_pFile->m_Reader.Close();
        m_pFile->m_bOpen = false;
    }
    m_pFile.reset();
    m_eForm = EForm::Text;
    m_bForeignBinary = false;
    return true;
}

TToken CDXFReader::ReadToken()
{
    m_eNumber = ENumber::Read;
    m_bCut = false;
    if (!m_pFile || !m_pFile->m_bOpen)
        return {};
    m_pFile->m_nTokenOffset = m_pFile->Position();
    switch (m_eForm) {
    case EForm::OwnBinary:
        return ReadBinaryToken();
    case EForm::WideBinary:
    case EForm::NarrowBinary:
        return ReadOtherBinaryToken();
    case EForm::Text:
        break;
    }
    return ReadTextToken();
}

/// What is left isn't enough for a group.
TToken CDXFReader::EndToken()
{
    m_pFile->m_pAt = m_pFile->m_pEnd;
    TToken token;
    token.m_eToken = TToken::END_OF_FILE;
    return token;
}

/// Sees to it that so many bytes are at hand. False if the file ends first.
bool CDXFReader::NeedBytes(std::size_t nCount)
{
    TFile& file = *m_pFile;
    if (file.Held() < nCount && file.m_nEndOffset < file.m_Reader.GetLength() && !file.m_Reader.HasFailed())
        file.Fill(nCount);
    return file.Held() >= nCount;
}

/// The next line, or the next piece of a long one. The view lives until more bytes are needed.
bool CDXFReader::TakeLine(std::string_view& line)
{
    TFile& file = *m_pFile;
    const char* const pFirst = file.m_pAt;
    if (pFirst == file.m_pEnd)
        return false;
    const char* const pLimit = pFirst + std::min(file.Held(), kLongestLine);
    const char* p = pFirst;
    while (p != pLimit && *p != '\n' && *p != '\r')
        ++p;
    line = {pFirst, static_cast<std::size_t>(p - pFirst)};
    if (p != file.m_pEnd && (*p == '\n' || *p == '\r')) {
        p += *p == '\r' && p + 1 != file.m_pEnd && p[1] == '\n' ? 2 : 1;
        ++file.m_nLinesRead;
    } else if (p != file.m_pEnd) {
        m_bCut = true;
    }
    file.m_pAt = p;
    return true;
}

/// To the end of a line of which a piece was taken.
void CDXFReader::PassOverRest()
{
    TFile& file = *m_pFile;
    while (NeedBytes(1)) {
        const char* const p = std::find_if(file.m_pAt, file.m_pEnd, [](char c) { return c == '\n' || c == '\r'; });
        const bool bEnd = p != file.m_pEnd;
        file.m_pAt = p;
        if (!bEnd)
            continue;
        std::string_view end;
        NeedBytes(2); // a CR may be the last byte at hand, with its LF behind
        TakeLine(end);
        return;
    }
}

TToken CDXFReader::ReadTextToken()
{
    NeedBytes(kLongestGroup);
    m_pFile->m_nTokenLine = m_pFile->m_nLinesRead + 1;
    std::string_view line;
    TToken token;
    if (!TakeLine(line))
        return EndToken();
    token.m_nCode = ReadInt(line);
    if (m_bCut && m_bPassOver) {
        PassOverRest();
        NeedBytes(kLongestGroup);
        m_bCut = false;
    }
    if (!TakeLine(line))
        return EndToken();
    m_eNumber = ENumber::Read; // a code may be any text
    if (token.m_nCode < 0)
        token.m_nCode =
            token.m_nCode == std::numeric_limits<std::int32_t>::min() ? -(token.m_nCode + 1) : -token.m_nCode;
    switch (ValueOf(token.m_nCode)) {
    case EValue::Word:
        SetText(token, line, true);
        break;
    case EValue::Text:
        SetText(token, line, false);
        break;
    case EValue::Double:
        token.m_Value.m_dValue = ReadNumber(line);
        break;
    case EValue::Int:
        token.m_Value.m_nValue = ReadInt(line);
        break;
    case EValue::None:
        break;
    }
    if (m_bCut && m_bPassOver)
        PassOverRest();
    return token;
}

/// `text` has at most kLongestLine bytes.
void CDXFReader::SetText(TToken& token, std::string_view text, bool bWord)
{
    std::memcpy(m_szBuffer, text.data(), text.size());
    m_szBuffer[text.size()] = '\0';
    token.m_Value.m_pText = m_szBuffer;
    if (bWord)
        RaiseText(token);
}

/// Brings the text in the buffer into upper case, and looks whether it is a word of the form.
void CDXFReader::RaiseText(TToken& token)
{
    const std::string_view text = m_eBytes != EBytes::Single ? std::string_view(m_szBuffer) : std::string_view();
    if (HasHighByte(text) && !(m_bMayBeUtf8 && IEUtils::IsValidUtf8(text)))
        RaiseLetters(m_szBuffer, m_eBytes == EBytes::ShiftJis); // no word of the form has such bytes
    else
        token.m_eToken = TToken::FindToken(m_szBuffer);
}

/// As much of the text as makes a number.
double CDXFReader::ReadNumber(std::string_view text)
{
    double dValue = 0.0;
    if (IEUtils::StringToDouble(text, dValue, false)) // nearly every value is a number and nothing else
        return dValue;
    bool bNegative = false;
    const std::string_view digits = TakeSign(text, bNegative);
    if (digits.empty() || (!IsDigit(digits[0]) && digits[0] != '.')) {
        m_eNumber = IsNumberWord(digits) ? ENumber::NotFinite : ENumber::NoNumber;
        return 0.0;
    }
    const auto read = std::from_chars(digits.data(), digits.data() + digits.size(), dValue);
    if (read.ec == std::errc::invalid_argument) {
        m_eNumber = ENumber::NoNumber;
        return 0.0;
    }
    if (read.ec == std::errc::result_out_of_range) {
        const std::string_view number = digits.substr(0, static_cast<std::size_t>(read.ptr - digits.data()));
        if (!IEUtils::StringToDouble(number, dValue, false)) // it takes a number that is too small, as 0
            m_eNumber = ENumber::NotFinite;
        return 0.0;
    }
    if (read.ptr != digits.data() + digits.size())
        m_eNumber = ENumber::InPart;
    return bNegative ? -dValue : dValue;
}

std::int32_t CDXFReader::ReadInt(std::string_view text)
{
    constexpr std::int64_t kMost = std::numeric_limits<std::int32_t>::max();
    bool bNegative = false;
    text = TakeSign(text, bNegative);
    if (text.empty() || !IsDigit(text[0]))
        m_eNumber = ENumber::NoNumber;
    std::int64_t nValue = 0;
    std::size_t i = 0;
    for (; i < text.size() && IsDigit(text[i]); ++i)
        nValue = std::min(nValue * 10 + (text[i] - '0'), kMost + 1);
    if (i > 0 && !std::all_of(text.begin() + static_cast<std::ptrdiff_t>(i), text.end(), IsBlank))
        m_eNumber = ENumber::InPart;
    return static_cast<std::int32_t>(bNegative ? -nValue : std::min(nValue, kMost));
}

TToken CDXFReader::ReadBinaryToken()
{
    TToken token;
    std::int32_t nCode = 0;
    if (!ReadBinaryInt(nCode))
        return EndToken();
    token.m_nCode = nCode;
    bool bRead = true;
    if (nCode < 0 || nCode > kLastBinaryInt) {
        // no value
    } else if (nCode <= kLastBinaryText) {
        bRead = ReadBinaryString(m_szBuffer);
        token.m_Value.m_pText = m_szBuffer;
        if (bRead)
            RaiseText(token);
    } else if (nCode <= kLastBinaryDouble) {
        double dValue = 0.0;
        bRead = ReadBinaryDouble(dValue);
        m_eNumber = std::isfinite(dValue) ? ENumber::Read : ENumber::NotFinite;
        token.m_Value.m_dValue = std::isfinite(dValue) ? dValue : 0.0;
    } else {
        std::int32_t nValue = 0;
        bRead = ReadBinaryInt(nValue);
        token.m_Value.m_nValue = nValue;
    }
    return bRead ? token : EndToken();
}

bool CDXFReader::TakeBytes(std::size_t nCount, std::string_view& bytes)
{
    if (!NeedBytes(nCount))
        return false;
    bytes = {m_pFile->m_pAt, nCount};
    m_pFile->m_pAt += nCount;
    return true;
}

bool CDXFReader::ReadOtherCode(std::int32_t& nCode)
{
    std::string_view bytes;
    if (m_eForm == EForm::NarrowBinary) {
        if (!TakeBytes(1, bytes))
            return false;
        nCode = static_cast<unsigned char>(bytes[0]);
        if (nCode != kWideCode)
            return true;
    }
    if (!TakeBytes(2, bytes))
        return false;
    nCode = static_cast<std::int32_t>(ReadSigned(bytes)) & 0xFFFF;
    return true;
}

/// The binary form of other programs. A value is what it is in text form.
TToken CDXFReader::ReadOtherBinaryToken()
{
    TToken token;
    if (!ReadOtherCode(token.m_nCode))
        return EndToken();
    const DXFGroup::EValue eStored = DXFGroup::ValueOf(token.m_nCode);
    const EValue eValue = ValueOf(token.m_nCode);
    std::string_view bytes;
    std::int64_t nValue = 0;
    double dValue = 0.0;
    bool bRead = false;
    m_szBuffer[0] = '\0';
    switch (eStored) {
    case DXFGroup::EValue::Text:
    case DXFGroup::EValue::Handle:
        bRead = ReadBinaryString(m_szBuffer);
        if (eValue == EValue::Int)
            nValue = ReadInt(m_szBuffer);
        break;
    case DXFGroup::EValue::Bytes:
        bRead = TakeBytes(1, bytes) && TakeBytes(static_cast<unsigned char>(bytes[0]), bytes);
        break;
    case DXFGroup::EValue::Double:
        bRead = ReadBinaryDouble(dValue);
        break;
    case DXFGroup::EValue::Bool:
    case DXFGroup::EValue::Int16:
    case DXFGroup::EValue::Int32:
    case DXFGroup::EValue::Int64:
        bRead = TakeBytes(SizeOf(eStored), bytes);
        nValue = bRead ? ReadSigned(bytes) : 0;
        break;
    }
    if (!bRead)
        return EndToken();
    if (eValue == EValue::Word || eValue == EValue::Text)
        token.m_Value.m_pText = m_szBuffer;
    if (eValue == EValue::Word)
        RaiseText(token);
    if (eValue == EValue::Int)
        token.m_Value.m_nValue = static_cast<std::int32_t>(nValue);
    if (eValue == EValue::Double) {
        m_eNumber = std::isfinite(dValue) ? ENumber::Read : ENumber::NotFinite;
        token.m_Value.m_dValue = std::isfinite(dValue) ? dValue : 0.0;
    }
    return token;
}

bool CDXFReader::ReadBinaryInt(std::int32_t& nValue)
{
    if (!NeedBytes(sizeof nValue))
        return false;
    nValue = LittleEndian::ReadInt32({m_pFile->m_pAt, sizeof nValue}, 0);
    m_pFile->m_pAt += sizeof nValue;
    return true;
}

bool CDXFReader::ReadBinaryDouble(double& dValue)
{
    if (!NeedBytes(sizeof dValue))
        return false;
    dValue = LittleEndian::ReadDouble({m_pFile->m_pAt, sizeof dValue}, 0);
    m_pFile->m_pAt += sizeof dValue;
    return true;
}

/// Up to the zero, or a piece that fills the buffer, of which the rest may be passed over.
bool CDXFReader::ReadBinaryString(char* pText)
{
    NeedBytes(kBufferSize);
    TFile& file = *m_pFile;
    const std::string_view bytes(file.m_pAt, std::min(file.Held(), kBufferSize));
    const std::size_t nZero = bytes.find('\0');
    if (nZero == bytes.npos && bytes.size() < kBufferSize)
        return false; // cut
    const std::size_t nLength = std::min(nZero, kBufferSize - 1);
    std::memcpy(pText, bytes.data(), nLength);
    pText[nLength] = '\0';
    file.m_pAt += nZero == bytes.npos ? nLength : nLength + 1;
    m_bCut = nZero == bytes.npos;
    if (!m_bCut || !m_bPassOver)
        return true;
    while (NeedBytes(1)) {
        const char* const p = std::find(file.m_pAt, file.m_pEnd, '\0');
        file.m_pAt = p == file.m_pEnd ? p : p + 1;
        if (p != file.m_pEnd)
            return true;
    }
    return false; // cut
}

std::int64_t CDXFReader::GetLineNumber() const
{
    return m_pFile && m_eForm == EForm::Text ? m_pFile->m_nTokenLine : 0;
}

std::int64_t CDXFReader::GetOffset() const
{
    return m_pFile ? static_cast<std::int64_t>(m_pFile->m_nTokenOffset) : 0;
}

std::int64_t CDXFReader::GetPosition() const
{
    return m_pFile ? static_cast<std::int64_t>(m_pFile->Position()) : 0;
}

std::int64_t CDXFReader::GetLength() const
{
    return m_pFile ? static_cast<std::int64_t>(m_pFile->m_Reader.GetLength()) : 0;
}

bool CDXFReader::HasFailed() const
{
    return m_pFile && m_pFile->m_Reader.HasFailed();
}
