#include "formats/points/blocks/block_reader.h"

#include "alidade/vellumlib/utils.h"
#include "frame/block_writer.h"

#include <algorithm>

namespace {

constexpr auto npos = std::string_view::npos;
constexpr std::size_t kText = CIEBlockFramer::kTextLength;
constexpr std::size_t kFrame = kText + 4;                       ///< with the digit and a check of bytes
constexpr std::size_t kWidestFrame = kFrame + 2;                ///< with a check of 16-bit values
constexpr std::size_t kMostFrameBytes = 4 * kText + 6;          ///< all that such a block can take in UTF-8
constexpr std::size_t kLongestLine = CIETextFile::kLongestLine; ///< of a file without blocks

bool IsPassedOver(char c)
{
    return c == '\r' || c == CIEBlockFramer::kEnd;
}

bool MayBeUnicode(std::string_view head)
{
    return head.starts_with("\xFF\xFE") || head.starts_with("\xFE\xFF") || head.find('\0') != npos;
}

} // namespace

namespace Blocks {

bool CReader::Open(const CString& strFileName, CIECodePage& codePage)
{
    constexpr std::size_t kHead = 4096;
    constexpr std::string_view kMark = "\xEF\xBB\xBF";
    m_pCodePage = &codePage;
    if (!m_File.Open(strFileName))
        return false;
    if (MayBeUnicode(m_File.Peek(kHead).substr(0, kHead)))
        m_bUnicode = m_TextFile.Open(strFileName) && m_TextFile.IsUnicode();
    if (m_File.Peek(kMark.size()).starts_with(kMark))
        m_File.Skip(kMark.size());
    return true;
}

std::uint64_t CReader::GetPosition() const
{
    return m_bUnicode ? m_TextFile.GetPosition() : m_File.GetPosition();
}

bool CReader::Read(CString& text)
{
    bool bMore = ReadBlock(text);
    // the mark behind a stream of bytes is no text
    while (bMore && !m_bBlockFramed && text.size() == 1 && text[0] == CIEBlockFramer::kStreamEnd)
        bMore = ReadBlock(text);
    return bMore;
}

bool CReader::ReadBlock(CString& text)
{
    text.clear();
    m_strBlock.clear();
    m_bBlockFramed = m_bCut = false;
    if (m_bUnicode) {
        std::string_view line;
        if (!m_TextFile.ReadLine(line))
            return false;
        Add(line);
        Finish(text);
        return true;
    }
    for (;;) {
        const std::string_view bytes = m_File.Peek(1);
        if (bytes.empty()) {
            if (m_bLines && !m_bFramed && !m_strBlock.empty() && !m_File.HasFailed()) {
                Finish(text); // a line that lacks its end is one all the same
                return true;
            }
            m_bUnfinished = m_bUnfinished || m_bBlockFramed || !m_strBlock.empty();
            return false;
        }
        const std::size_t nEnd = bytes.find('\n');
        Add(bytes.substr(0, nEnd));
        m_File.Skip(std::min(nEnd, bytes.size() - 1) + 1);
        if (nEnd != npos) {
            Finish(text);
            return true;
        }
    }
}

void CReader::Add(std::string_view bytes)
{
    if (const std::size_t nStart = bytes.rfind(CIEBlockFramer::kStart); nStart != npos) {
        bytes.remove_prefix(nStart + 1);
        m_strBlock.clear();
        m_bCut = false;
        m_bFramed = m_bBlockFramed = true;
    }
    const std::size_t nMost = m_bLines && !m_bFramed ? kLongestLine : kMostFrameBytes;
    while (!bytes.empty() && IsPassedOver(bytes.back())) // as every block of ours ends
        bytes.remove_suffix(1);
    const bool bPlain = bytes.find('\r') == npos && bytes.find(CIEBlockFramer::kEnd) == npos;
    if (bPlain && m_strBlock.size() + bytes.size() <= nMost) {
        m_strBlock.append(bytes);
        return;
    }
    while (!bytes.empty()) {
        const auto* const pPassedOver = std::find_if(bytes.begin(), bytes.end(), IsPassedOver);
        const std::string_view part = bytes.substr(0, static_cast<std::size_t>(pPassedOver - bytes.begin()));
        m_bCut = m_bCut || m_strBlock.size() + part.size() > nMost;
        m_strBlock.append(part.substr(0, nMost - std::min(nMost, m_strBlock.size())));
        bytes.remove_prefix(std::min(part.size() + 1, bytes.size()));
    }
}

void CReader::Finish(CString& text)
{
    ++m_nLine;
    if (m_bLines && !m_bFramed) {
        text.swap(m_strBlock);
        return;
    }
    std::size_t nLength = m_strBlock.size();
    std::size_t nText = std::min(nLength, kText);
    if (m_bUnicode || (m_bLines && nLength > kFrame)) {
        if (!IEUtils::IsValidUtf8(m_strBlock))
            m_strBlock = m_pCodePage->ToText(m_strBlock);
        nLength = static_cast<std::size_t>(IEUtils::Length(m_strBlock));
        nText = IEUtils::Left(m_strBlock, static_cast<int>(kText)).size();
    }
    m_bCut = m_bCut || nLength > (m_bBlockFramed ? kWidestFrame : kText);
    text.assign(m_strBlock, 0, nText);
}

} // namespace Blocks
