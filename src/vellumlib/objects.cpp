#include "vellumlib/objects.h"

#include "vellumlib/dataset.h"

CIEObject::CIEObject(const CIEObject& other)
    : CIECodesDataInterface(other), m_pLayer(other.m_pLayer), m_nState(other.m_nState)
{
}

CIEObject& CIEObject::operator=(const CIEObject& other)
{
    CIECodesDataInterface::operator=(other);
    m_pLayer = other.m_pLayer;
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
