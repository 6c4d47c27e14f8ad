#include "alidade/vellumlib/gps_position.h"

#include <chrono>
#include <iterator>

namespace {

bool IsDateTime(const TIEDateTime& time)
{
    constexpr int kLastYear = 9999;
    const auto isWithin = [](int nValue, int nFirst, int nLast) { return nValue >= nFirst && nValue <= nLast; };
    if (!isWithin(time.m_nYear, 1, kLastYear) || !isWithin(time.m_nMonth, 1, 12) || !isWithin(time.m_nDay, 1, 31))
        return false;
    const std::chrono::year_month_day date{std::chrono::year(time.m_nYear),
                                           std::chrono::month(static_cast<unsigned>(time.m_nMonth)),
                                           std::chrono::day(static_cast<unsigned>(time.m_nDay))};
    return date.ok() && isWithin(time.m_nHour, 0, 23) && isWithin(time.m_nMinute, 0, 59) &&
           isWithin(time.m_nSecond, 0, 60) && isWithin(time.m_nMillisecond, 0, 999);
}

} // namespace

CIEGPSPosition::CIEGPSPosition(const CIEGPSPosition& other)
    : CIEDesignPoint(other), m_pGPSData(other.m_pGPSData ? std::make_unique<TGPSData>(*other.m_pGPSData) : nullptr)
{
}

CIEGPSPosition& CIEGPSPosition::operator=(const CIEGPSPosition& other)
{
    if (this == &other)
        return *this;
    auto pGPSData = other.m_pGPSData ? std::make_unique<TGPSData>(*other.m_pGPSData) : nullptr;
    CIEDesignPoint::operator=(other);
    m_pGPSData = std::move(pGPSData);
    return *this;
}

const CIEGPSPosition::TGPSData& CIEGPSPosition::GPSData() const
{
    static const TGPSData kNone;
    return m_pGPSData ? *m_pGPSData : kNone;
}

CIEGPSPosition::TGPSData& CIEGPSPosition::NeedGPSData()
{
    if (!m_pGPSData)
        m_pGPSData = std::make_unique<TGPSData>();
    return *m_pGPSData;
}

CIEGPSPosition::TGPSData& CIEGPSPosition::NeedSatellites()
{
    TGPSData& data = NeedGPSData();
    data.m_nRawDataType = SatelliteData;
    return data;
}

void CIEGPSPosition::SetCV(const TGPSCoordCovMatrix& cv)
{
    NeedGPSData().m_CV = cv;
    m_pGPSData->m_bCV = true;
}

bool CIEGPSPosition::SetTime(const TIEDateTime& time)
{
    if (!IsDateTime(time))
        return false;
    NeedGPSData().m_Time = time;
    return true;
}

void CIEGPSPosition::SetRawDataType(int nType)
{
    if (nType == SatelliteData) {
        NeedSatellites();
    } else if (m_pGPSData) {
        TGPSData kept;
        kept.m_CV = m_pGPSData->m_CV;
        kept.m_bCV = m_pGPSData->m_bCV;
        kept.m_Time = m_pGPSData->m_Time;
        if (kept == TGPSData())
            m_pGPSData.reset();
        else
            *m_pGPSData = kept;
    }
}

void CIEGPSPosition::SetDOP(const TGPSDOP& dop)
{
    NeedSatellites().m_DOP = dop;
}

void CIEGPSPosition::SetSolutionType(int nType)
{
    NeedSatellites().m_nSolutionType = nType;
}

CString CIEGPSPosition::GetSolutionTypeAsString() const
{
    const int nType = GetSolutionType();
    return nType >= 0 && nType < static_cast<int>(std::size(kSolutionWords)) ? kSolutionWords[nType] : "unknown";
}

void CIEGPSPosition::SetNumberOfGpsSats(int nCount)
{
    NeedSatellites().m_nGpsSats = nCount;
}

void CIEGPSPosition::SetNumberOfGlonassSats(int nCount)
{
    NeedSatellites().m_nGlonassSats = nCount;
}
