#include "formats/dxf/export/dxf_output.h"

#include "alidade/vellumlib/utils.h"
#include "vellumlib/encoding.h"
#include "vellumlib/little_endian.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace {

constexpr std::size_t kChunk = std::size_t{32} << 10;
constexpr std::string_view kLineEnd = "\r\n";

bool IsControl(char c)
{
    return (c >= 0 && c < ' ') || c == '\x7F';
}

/// Whether a text goes out as it stands.
bool IsPlain(std::string_view text)
{
    return text.size() <= TDXFOutput::kLongestText &&
           std::all_of(text.begin(), text.end(), [](char c) { return c >= ' ' && c < '\x7F' && c != '\\'; });
}

/// \U+XXXX
CString EscapeUnit(unsigned nUnit)
{
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    CString text = "\\U+";
    for (const unsigned nShift : {12U, 8U, 4U, 0U})
        text += kDigits[nUnit >> nShift & 0xFU];
    return text;
}

/// A valid character beyond ASCII.
CString EscapeCharacter(std::string_view bytes)
{
    constexpr unsigned kFirstOfPairs = 0x10000;
    unsigned nCode = static_cast<unsigned char>(bytes[0]) & (0xFFU >> (bytes.size() + 1));
    for (const char c : bytes.substr(1))
        nCode = nCode << 6U | (static_cast<unsigned char>(c) & 0x3FU);
    if (nCode < kFirstOfPairs)
        return EscapeUnit(nCode);
    nCode -= kFirstOfPairs;
    return EscapeUnit(0xD800 + (nCode >> 10U)) + EscapeUnit(0xDC00 + (nCode & 0x3FFU));
}

/// Whether a reader would take what begins here for the escape of a character, of this form or of the one for bytes of
/// East Asian pages.
bool BeginsEscape(std::string_view text)
{
    return text.size() > 2 && text[0] == '\\' &&
           (text[1] == 'U' || text[1] == 'u' || text[1] == 'M' || text[1] == 'm') && text[2] == '+';
}

/// Appends a text character by character until its written form is too long: that form, or what a reader makes of it.
void AppendMended(CString& out, std::string_view text, bool bWritten)
{
    CString strValid;
    if (!IEUtils::IsValidUtf8(text)) {
        Encoding::AppendMended(strValid, text);
        text = strValid;
    }
    CString strEscaped;
    for (std::size_t nWritten = 0; !text.empty();) {
        const std::string_view character = IEUtils::Left(text, 1);
        std::string_view read = character;
        std::string_view written = character;
        if (character.size() > 1 || BeginsEscape(text)) {
            strEscaped = character.size() > 1 ? EscapeCharacter(character) : EscapeUnit('\\');
            written = strEscaped;
        } else if (IsControl(character[0])) {
            read = written = " ";
        }
        nWritten += written.size();
        if (nWritten > TDXFOutput::kLongestText)
            return;
        out += bWritten ? written : read;
        text.remove_prefix(character.size());
    }
}

void AppendInt(CString& out, int nValue)
{
    char text[16];
    const auto written = std::to_chars(text, text + sizeof text, nValue);
    out.append(text, written.ptr);
}

} // namespace

bool TDXFOutput::IsBinaryName(std::string_view fileName)
{
    const std::size_t nPoint = fileName.rfind('.');
    return nPoint != std::string_view::npos && IEUtils::ToLower(fileName.substr(nPoint + 1)) == "dxb";
}

CString TDXFOutput::AsRead(std::string_view text)
{
    if (IsPlain(text))
        return CString(text);
    CString read;
    AppendMended(read, text, false);
    return read;
}

bool TDXFOutput::Create(const CString& strFileName)
{
    m_bBinary = IsBinaryName(strFileName);
    m_strBuffer.clear();
    m_strBuffer.reserve(kChunk + kChunk / 8);
    m_bFailed = !m_File.Create(strFileName);
    return !m_bFailed;
}

void TDXFOutput::AppendCode(int nCode)
{
    if (m_bBinary) {
        LittleEndian::AppendInt32(m_strBuffer, nCode);
    } else {
        AppendInt(m_strBuffer, nCode);
        m_strBuffer += kLineEnd;
    }
}

bool TDXFOutput::WriteCode(int nCode)
{
    AppendCode(nCode);
    return m_strBuffer.size() < kChunk ? !m_bFailed : Send();
}

bool TDXFOutput::WriteInt(int nCode, int nValue)
{
    AppendCode(nCode);
    return WriteCode(nValue); // whole numbers have the form of codes
}

bool TDXFOutput::WriteDouble(int nCode, double dValue)
{
    AppendCode(nCode);
    if (m_bBinary) {
        LittleEndian::AppendDouble(m_strBuffer, dValue);
    } else {
        if (std::fabs(dValue) < kNumberLimit)
            IEUtils::AppendDouble(m_strBuffer, dValue, kDecimals);
        else
            m_strBuffer += "0 NAN";
        m_strBuffer += kLineEnd;
    }
    return m_strBuffer.size() < kChunk ? !m_bFailed : Send();
}

bool TDXFOutput::WriteString(int nCode, std::string_view text)
{
    AppendCode(nCode);
    if (IsPlain(text))
        m_strBuffer += text;
    else
        AppendMended(m_strBuffer, text, true);
    if (m_bBinary)
        m_strBuffer += '\0';
    else
        m_strBuffer += kLineEnd;
    return m_strBuffer.size() < kChunk ? !m_bFailed : Send();
}

bool TDXFOutput::Send()
{
    m_bFailed = !m_File.Write(m_strBuffer) || m_bFailed;
    m_strBuffer.clear();
    return !m_bFailed;
}

bool TDXFOutput::Close()
{
    (void)Send();
    return m_File.Close() && !m_bFailed;
}
