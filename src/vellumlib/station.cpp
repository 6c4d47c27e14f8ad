#include "alidade/vellumlib/station.h"

namespace {
const CString kEmpty;
}

CIEStation::CIEStation(const CIEStation& other)
    : m_dNorth(other.m_dNorth),
      m_dEast(other.m_dEast),
      m_dHeight(other.m_dHeight),
      m_strName(other.m_strName),
      m_pExtras(other.m_pExtras ? std::make_unique<TExtras>(*other.m_pExtras) : nullptr),
      m_nStationType(other.m_nStationType),
      m_bHeightDefined(other.m_bHeightDefined)
{
}

CIEStation& CIEStation::operator=(const CIEStation& other)
{
    if (this != &other)
        *this = CIEStation(other);
    return *this;
}

CIEStation::TExtras& CIEStation::Extras()
{
    if (!m_pExtras)
        m_pExtras = std::make_unique<TExtras>();
    return *m_pExtras;
}

const CString& CIEStation::GetNotes() const
{
    return m_pExtras ? m_pExtras->m_strNotes : kEmpty;
}

void CIEStation::SetNotes(CString notes)
{
    if (m_pExtras || !notes.empty())
        Extras().m_strNotes = std::move(notes);
}

double CIEStation::GetGeoidHeight() const
{
    return m_pExtras ? m_pExtras->m_dGeoidHeight : 0.0;
}

void CIEStation::SetGeoidHeight(double dHeight)
{
    if (m_pExtras || dHeight != 0.0)
        Extras().m_dGeoidHeight = dHeight;
}

const CString& CIEStation::GetTimeStamps() const
{
    return m_pExtras ? m_pExtras->m_strTimeStamps : kEmpty;
}

void CIEStation::SetTimeStamps(CString stamps)
{
    if (m_pExtras || !stamps.empty())
        Extras().m_strTimeStamps = std::move(stamps);
}

void CIEStation::ShiftCoords(const CIEStation& shift, double dNorthScale, double dEastScale, double dHeightScale)
{
    m_dNorth = m_dNorth * dNorthScale + shift.m_dNorth;
    m_dEast = m_dEast * dEastScale + shift.m_dEast;
    if (m_bHeightDefined)
        m_dHeight = m_dHeight * dHeightScale + shift.m_dHeight;
}
