#include "alidade/vellumlib/sheet_point.h"

int CIESheetPoint::GetNumberOfStations() const
{
    return m_Design ? 1 + static_cast<int>(m_Measurements.size()) : 0;
}

const CIEStation* CIESheetPoint::GetStation(int i) const
{
    return i == 0 && m_Design ? &*m_Design : GetOffsetStation(i);
}

const CIEOffsetStation* CIESheetPoint::GetOffsetStation(int i) const
{
    return i >= 1 && i < GetNumberOfStations() ? &m_Measurements[static_cast<std::size_t>(i) - 1] : nullptr;
}

bool CIESheetPoint::AddOffsetStation(CIEOffsetStation measurement)
{
    if (!m_Design)
        return false;
    m_Measurements.push_back(std::move(measurement));
    return true;
}

void CIESheetPoint::ShiftCoords(const CIEStation& shift, double dNorthScale, double dEastScale, double dHeightScale)
{
    if (m_Design)
        m_Design->ShiftCoords(shift, dNorthScale, dEastScale, dHeightScale);
    for (CIEOffsetStation& measurement : m_Measurements)
        measurement.ShiftCoords(shift, dNorthScale, dEastScale, dHeightScale);
}
