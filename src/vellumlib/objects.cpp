#include "alidade/vellumlib/objects.h"

#include "alidade/vellumlib/dataset.h"

#include <algorithm>
#include <cmath>

CIEObject::CIEObject(const CIEObject& other)
    : CIECodesDataInterface(other),
      m_pLayer(other.m_pLayer),
      m_DrawProperties(other.m_DrawProperties),
      m_nState(other.m_nState)
{
}

CIEObject& CIEObject::operator=(const CIEObject& other)
{
    if (m_pOwner)
        m_pOwner->DropIndex(); // the class of the object gives it the other's name behind this
    CIECodesDataInterface::operator=(other);
    m_pLayer = other.m_pLayer;
    m_DrawProperties = other.m_DrawProperties;
    m_nState = other.m_nState;
    return *this;
}

void CIEObject::SetName(CString name)
{
    if (m_pOwner)
        m_pOwner->LeaveIndex(this);
    DoSetName(std::move(name));
    if (m_pOwner)
        m_pOwner->EnterIndex(this);
}

void CIEDesignPoint::SetStation(CIEStation station)
{
    SetName(station.GetName());
    m_Station = std::move(station);
}

void CIEDesignPoint::SetCoords(double dNorth, double dEast, double dHeight, double dGeoidHeight)
{
    m_Station.m_dNorth = dNorth;
    m_Station.m_dEast = dEast;
    m_Station.SetHeight(dHeight);
    m_Station.SetGeoidHeight(dGeoidHeight);
}

void CIEPTLPoint::SetPTLParams(CString first, CString second, int nCoordType)
{
    m_strFirst = std::move(first);
    m_strSecond = std::move(second);
    m_nCoordType = nCoordType;
}

const CIEStation* CIEPolyLine::GetStation(int i) const
{
    return i >= 0 && i < GetNumberOfStations() ? &m_Stations[static_cast<std::size_t>(i)] : nullptr;
}

bool CIEPolyLine::IsClosed() const
{
    return m_Stations.size() > 1 && m_Stations.front() == m_Stations.back();
}

void CIEArc::SetStation(CIEStation center)
{
    SetName(center.GetName());
    m_Center = std::move(center);
}

double CIEArc::GetData(int nKey) const
{
    return nKey >= 0 && nKey < kDataTypes ? m_Data[static_cast<std::size_t>(nKey)] : 0.0;
}

void CIEArc::SetData(int nKey, double dValue)
{
    if (nKey >= 0 && nKey < kDataTypes)
        m_Data[static_cast<std::size_t>(nKey)] = dValue;
}

void CIEDesignPoint::ShiftCoords(const CIEStation& shift, double dNorthScale, double dEastScale, double dHeightScale)
{
    m_Station.ShiftCoords(shift, dNorthScale, dEastScale, dHeightScale);
}

void CIEPolyLine::ShiftCoords(const CIEStation& shift, double dNorthScale, double dEastScale, double dHeightScale)
{
    for (CIEStation& station : m_Stations)
        station.ShiftCoords(shift, dNorthScale, dEastScale, dHeightScale);
}

void CIEArc::ShiftCoords(const CIEStation& shift, double dNorthScale, double dEastScale, double dHeightScale)
{
    constexpr double kCircle = 360.0;
    const bool bNorthMirrored = dNorthScale < 0;
    const bool bEastMirrored = dEastScale < 0;
    m_Center.ShiftCoords(shift, dNorthScale, dEastScale, dHeightScale);
    SetData(Radius, GetData(Radius) * std::abs(dEastScale));
    if (!bNorthMirrored && !bEastMirrored)
        return;
    const auto mirror = [&](double dAngle) {
        if (bEastMirrored)
            dAngle = kCircle / 2 - dAngle;
        if (bNorthMirrored)
            dAngle = -dAngle;
        dAngle = std::fmod(dAngle, kCircle);
        return dAngle < 0 ? dAngle + kCircle : dAngle + 0.0; // of the two zeros the one without a sign
    };
    const bool bTurned = bNorthMirrored != bEastMirrored;
    const double dSweep = GetData(EndAngle) - GetData(StartAngle);
    const double dStart = mirror(GetData(bTurned ? EndAngle : StartAngle));
    const double dEnd = mirror(GetData(bTurned ? StartAngle : EndAngle));
    SetData(StartAngle, dStart);
    SetData(EndAngle, std::abs(dSweep) >= kCircle ? dStart + dSweep : dEnd);
}

CIECompositeObject::CIECompositeObject(const CIECompositeObject& other)
    : CIEObject(other), m_strName(other.m_strName), m_Ends(other.m_Ends)
{
    m_Parts.reserve(other.m_Parts.size());
    for (const auto& pPart : other.m_Parts)
        m_Parts.push_back(pPart->clone());
}

CIECompositeObject& CIECompositeObject::operator=(const CIECompositeObject& other)
{
    if (this == &other)
        return *this;
    CIECompositeObject copy(other);
    CIEObject::operator=(other);
    SetName(std::move(copy.m_strName));
    m_Parts = std::move(copy.m_Parts);
    m_Ends = std::move(copy.m_Ends);
    return *this;
}

const CIEStation* CIECompositeObject::GetStation(int i) const
{
    if (i < 0 || i >= GetNumberOfStations())
        return nullptr;
    const auto nPart = static_cast<std::size_t>(std::upper_bound(m_Ends.begin(), m_Ends.end(), i) - m_Ends.begin());
    return m_Parts[nPart]->GetStation(nPart == 0 ? i : i - m_Ends[nPart - 1]);
}

void CIECompositeObject::ShiftCoords(const CIEStation& shift, double dNorthScale, double dEastScale,
                                     double dHeightScale)
{
    for (const auto& pPart : m_Parts)
        pPart->ShiftCoords(shift, dNorthScale, dEastScale, dHeightScale);
}

const CIEObject* CIECompositeObject::GetPartAt(int i) const
{
    return i >= 0 && i < GetNumberOfParts() ? m_Parts[static_cast<std::size_t>(i)].get() : nullptr;
}

bool CIECompositeObject::AddPart(std::unique_ptr<CIEObject> pPart)
{
    if (!pPart || pPart->GetType() == EIEObjectsType::Composite)
        return false;
    m_Ends.push_back(GetNumberOfStations() + pPart->GetNumberOfStations());
    m_Parts.push_back(std::move(pPart));
    return true;
}
