#include "alidade/vellumlib/text_file.h"
#include "alidade/vellumlib/utils.h"
#include "vellumlib/encoding.h"

#include <algorithm>

using Encoding::CConverter;
using Encoding::UnfinishedTail;

namespace {

/// An encoding's name without the marks that its spellings differ in.
CString PlainName(const CString& encoding)
{
    CString name = IEUtils::ToLower(encoding);
    std::erase_if(name, [](char c) { return c == '-' || c == '_'; });
    return name;
}

} // namespace

struct CIETextWriter::TState {
    CIEFileWriter m_File;
    CString m_strFileName;
    CConverter m_Converter; ///< closed for UTF-8
    CString m_strWaiting;   ///< text that may end within a character
    CString m_strConverted;
    std::int64_t m_nReplaced = 0;

    bool OpenEncoding(const CString& encoding);
    void Replace();
    void Convert(std::string_view text);
    bool Write(std::string_view text);
    bool Close();
};

/// Sets the encoding and the mark that it begins with.
bool CIETextWriter::TState::OpenEncoding(const CString& encoding)
{
    const CString name = PlainName(encoding);
    if (name == "utf8")
        return true;
    // iconv would choose the order of "UTF-16" by the machine
    if (name == "utf16" || name == "utf16le") {
        m_strConverted = "\xFF\xFE";
        return m_Converter.Open("UTF-16LE", "UTF-8");
    }
    if (name == "utf16be") {
        m_strConverted = "\xFE\xFF";
        return m_Converter.Open("UTF-16BE", "UTF-8");
    }
    return m_Converter.Open(encoding, "UTF-8");
}

void CIETextWriter::TState::Replace()
{
    m_Converter.Convert(m_strConverted, "?");
    ++m_nReplaced;
}

/// Converts whole characters.
void CIETextWriter::TState::Convert(std::string_view text)
{
    text = m_Converter.Convert(m_strConverted, text);
    while (!text.empty()) {
        Replace();
        text.remove_prefix(IEUtils::Left(text, 1).size());
        text = m_Converter.Convert(m_strConverted, text);
    }
}

bool CIETextWriter::TState::Write(std::string_view text)
{
    if (!m_Converter.IsOpen() || !m_File.IsOpen())
        return m_File.Write(text);
    m_strWaiting.append(text);
    const std::size_t nWhole = m_strWaiting.size() - UnfinishedTail(m_strWaiting);
    m_strConverted.clear();
    Convert(std::string_view(m_strWaiting).substr(0, nWhole));
    m_strWaiting.erase(0, nWhole);
    return m_File.Write(m_strConverted);
}

bool CIETextWriter::TState::Close()
{
    if (m_Converter.IsOpen() && m_File.IsOpen()) {
        m_strConverted.clear();
        if (!m_strWaiting.empty())
            Replace();
        m_strWaiting.clear();
        m_Converter.Finish(m_strConverted);
        // the file keeps a failure in mind until it is closed
        (void)m_File.Write(m_strConverted);
    }
    return m_File.Close();
}

CIETextWriter::CIETextWriter() : m_pState(std::make_unique<TState>()) {}

CIETextWriter::~CIETextWriter()
{
    m_pState->Close();
}

bool CIETextWriter::Create(const CString& strFileName, const CString& encoding)
{
    m_pState->Close();
    m_pState = std::make_unique<TState>();
    m_pState->m_strFileName = strFileName;
    // an unknown encoding must not cost the file that is there
    return m_pState->OpenEncoding(encoding) && m_pState->m_File.Create(strFileName) &&
           m_pState->m_File.Write(m_pState->m_strConverted);
}

bool CIETextWriter::IsEncoding(const CString& encoding)
{
    return TState().OpenEncoding(encoding);
}

bool CIETextWriter::IsOpen() const
{
    return m_pState->m_File.IsOpen();
}

const CString& CIETextWriter::GetFileName() const
{
    return m_pState->m_strFileName;
}

bool CIETextWriter::Write(std::string_view text)
{
    return m_pState->Write(text);
}

bool CIETextWriter::Close()
{
    return m_pState->Close();
}

std::int64_t CIETextWriter::GetReplacedCharacters() const
{
    return m_pState->m_nReplaced;
}

CIEFileWriter& CIETextWriter::GetFile()
{
    return m_pState->m_File;
}

CIETextLine& CIETextLine::AddInt(std::int64_t nValue)
{
    return Add(IEUtils::IntToString(nValue));
}

CIETextLine& CIETextLine::AddFixed(double dValue, int nDecimals)
{
    IEUtils::AppendDouble(m_strText, dValue, nDecimals);
    return *this;
}

bool CIETextLine::EndTo(CIETextWriter& file)
{
    m_strText += "\r\n";
    const bool bWritten = file.Write(m_strText);
    m_strText.clear();
    return bWritten;
}
