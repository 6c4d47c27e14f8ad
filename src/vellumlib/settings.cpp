#include "alidade/vellumlib/settings.h"

#include <utility>

TIESettings::TIESettings(const TIESettings& other)
    : m_bSingleFile(other.m_bSingleFile),
      m_pMessageBox(other.m_pMessageBox),
      m_eCoordsStyle(other.m_eCoordsStyle),
      m_nNorthDecimals(other.m_nNorthDecimals),
      m_nEastDecimals(other.m_nEastDecimals),
      m_nHeightDecimals(other.m_nHeightDecimals),
      m_bAttrTypes(other.m_bAttrTypes),
      m_bAttrQuotes(other.m_bAttrQuotes),
      m_pAsciiFormat(other.m_pAsciiFormat ? std::make_unique<TIEAsciiFormat>(*other.m_pAsciiFormat) : nullptr),
      m_cHistoryOptions(other.m_cHistoryOptions),
      m_hWnd(other.m_hWnd),
      m_strCodePage(other.m_strCodePage),
      m_nMostBlockCopies(other.m_nMostBlockCopies),
      m_strWriteEncoding(other.m_strWriteEncoding),
      m_nDataTypes(other.m_nDataTypes)
{
}

TIESettings& TIESettings::operator=(const TIESettings& other)
{
    TIESettings copy(other);
    *this = std::move(copy);
    return *this;
}

void TIESettings::SetDataType(EIEDataType type, bool bWanted)
{
    const std::uint32_t nBit = 1U << static_cast<unsigned>(type);
    m_nDataTypes = bWanted ? m_nDataTypes | nBit : m_nDataTypes & ~nBit;
}

const TIEAsciiFormat& TIESettings::GetAsciiFormat() const
{
    static const TIEAsciiFormat kNewFormat;
    return m_pAsciiFormat ? *m_pAsciiFormat : kNewFormat;
}
