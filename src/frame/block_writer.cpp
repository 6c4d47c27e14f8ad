#include "frame/block_writer.h"

#include "alidade/platform/file.h"
#include "alidade/vellumlib/utils.h"

#include <algorithm>
#include <cstdint>

namespace {

constexpr int kBlockNumbers = 10;
constexpr int kCheckDigits = 3;

std::uint32_t XorOfBytes(std::string_view bytes)
{
    std::uint32_t nCheck = 0;
    for (const char c : bytes)
        nCheck ^= static_cast<unsigned char>(c);
    return nCheck;
}

/// XOR of the 16-bit values of a UTF-8 text; a character beyond them has two.
std::uint32_t XorOfUnits(std::string_view text)
{
    std::uint32_t nCheck = 0;
    while (!text.empty()) {
        const std::string_view character = IEUtils::Left(text, 1);
        text.remove_prefix(character.size());
        nCheck ^= IEUtils::StringToChar(character);
        if (character.size() != 4)
            continue;
        std::uint32_t nPoint = static_cast<unsigned char>(character[0]) & 0x07U;
        for (const char c : character.substr(1))
            nPoint = nPoint << 6U | (static_cast<unsigned char>(c) & 0x3FU);
        nPoint -= 0x10000U;
        nCheck ^= (0xD800U | (nPoint >> 10U & 0x3FFU)) ^ (0xDC00U | (nPoint & 0x3FFU));
    }
    return nCheck;
}

} // namespace

void CIEBlockFramer::Add(std::string_view text)
{
    m_Buffer.Add(text);
    m_nLength += m_eUnit == EUnit::Byte ? text.size() : static_cast<std::size_t>(IEUtils::Length(text));
}

bool CIEBlockFramer::Take(CString& out, bool bFlush)
{
    if (m_nLength < kTextLength && !bFlush)
        return false;
    const std::size_t nTaken = std::min(m_nLength, kTextLength);
    const std::size_t nBytes =
        m_eUnit == EUnit::Byte ? nTaken : IEUtils::Left(m_Buffer.data(), static_cast<int>(nTaken)).size();
    IEUtils::TStringA block;
    m_Buffer.Extract(block, nBytes);
    m_nLength -= nTaken;
    block.FillWith(nBytes + kTextLength - nTaken, ' ');
    block.Add(IEUtils::IntToString(m_nBlockNumber));
    m_nBlockNumber = (m_nBlockNumber + 1) % kBlockNumbers;

    const bool bBytes = m_eUnit == EUnit::Byte || nBytes == nTaken; // ASCII is the same either way
    const std::uint32_t nCheck = bBytes ? XorOfBytes(block.data()) : XorOfUnits(block.data());
    out += kStart;
    out += block.data();
    out += IEUtils::GetReportString('0', kCheckDigits, true, IEUtils::IntToString(nCheck));
    out += kEnd;
    out += "\r\n";
    return true;
}

bool CIEBlockWriter::WriteBlock(CIEFileWriter& file, std::string_view text, bool bLast)
{
    Add(text);
    m_strBlock.clear();
    while (m_Framer.Take(m_strBlock, false)) {
    }
    if (bLast) {
        // a block that was filled just now is the last one
        if (m_strBlock.empty() || m_Framer.GetLength() > 0)
            m_Framer.Take(m_strBlock, true);
        m_strBlock += CIEBlockFramer::kStreamEnd;
        m_strBlock += "\r\n";
    }
    (void)file.Write(m_strBlock);
    return true;
}
