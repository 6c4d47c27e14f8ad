#include "alidade/vellumlib/header_info.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double kTextsInSide = 150.0;
constexpr double kDashesInSide = 100.0;

/// Takes in a height where there is one.
void ExtendHeight(CIEStation& border, const CIEStation& station, bool bMaximum)
{
    if (!station.IsHeightDefined())
        return;
    if (!border.IsHeightDefined())
        border.SetHeight(station.GetHeight());
    else
        border.SetHeight(bMaximum ? std::max(border.GetHeight(), station.GetHeight())
                                  : std::min(border.GetHeight(), station.GetHeight()));
}

} // namespace

const CIEStation* CHeaderInfo::GetBorder(int nBorder) const
{
    return nBorder >= 0 && nBorder < kBorders ? &m_Borders[static_cast<std::size_t>(nBorder)] : nullptr;
}

void CHeaderInfo::SetBorders(CIEStation minimum, CIEStation maximum)
{
    m_Borders = {std::move(minimum), std::move(maximum)};
    m_bMinMaxDefined = true;
}

void CHeaderInfo::ForgetBorders()
{
    m_Borders = {};
    m_bMinMaxDefined = false;
}

void CHeaderInfo::Extend(const CIEStation& station)
{
    CIEStation& minimum = m_Borders[Minimum];
    CIEStation& maximum = m_Borders[Maximum];
    if (!m_bMinMaxDefined) {
        minimum = CIEStation(station.m_dNorth, station.m_dEast, 0.0);
        minimum.SetHeightUndefined();
        maximum = minimum;
        m_bMinMaxDefined = true;
    }
    minimum.m_dNorth = std::min(minimum.m_dNorth, station.m_dNorth);
    minimum.m_dEast = std::min(minimum.m_dEast, station.m_dEast);
    maximum.m_dNorth = std::max(maximum.m_dNorth, station.m_dNorth);
    maximum.m_dEast = std::max(maximum.m_dEast, station.m_dEast);
    ExtendHeight(minimum, station, false);
    ExtendHeight(maximum, station, true);
}

double CHeaderInfo::GetLongerSide() const
{
    const double dSide = std::max(m_Borders[Maximum].m_dNorth - m_Borders[Minimum].m_dNorth,
                                  m_Borders[Maximum].m_dEast - m_Borders[Minimum].m_dEast);
    return m_bMinMaxDefined && std::isfinite(dSide) && dSide > 0 ? dSide : 0.0;
}

double CHeaderInfo::CalcAutoTextSize() const
{
    const double dSide = GetLongerSide();
    return dSide > 0 ? dSide / kTextsInSide : 1.0;
}

double CHeaderInfo::CalcAutoSymbolSize() const
{
    return CalcAutoTextSize() / 2;
}

void CHeaderInfo::CalcAutoDashSize(double& dTotal, double& dDash, double& dGap) const
{
    const double dSide = GetLongerSide();
    if (dSide <= 0)
        return;
    dDash = dSide / kDashesInSide;
    dGap = -dDash / 2;
    dTotal = dDash - dGap;
}
