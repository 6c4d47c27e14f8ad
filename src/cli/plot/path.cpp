#include "cli/plot/path.h"

#include "cli/plot/thinning.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace {

using namespace Cli;

constexpr double kTenth = 10.0;
constexpr double kFine = 0.15;  ///< pixels; beneath what can be seen, and a little may be enlarged
constexpr double kCoarse = 0.5; ///< where there is very much, and cells are smaller than a pixel

TTenths ToTenths(const TPixel& pixel)
{
    return {static_cast<int>(std::lround(pixel.m_dX * kTenth)), static_cast<int>(std::lround(pixel.m_dY * kTenth))};
}

TPixel ToPixel(const TTenths& place)
{
    return {place.m_nX / kTenth, place.m_nY / kTenth};
}

void AppendTenths(std::string& out, int nTenths, bool bFirst)
{
    if (nTenths < 0)
        out += '-';
    else if (!bFirst)
        out += ' ';
    const int nSize = std::abs(nTenths);
    out += std::to_string(nSize / 10);
    if (nSize % 10 != 0)
        out.append({'.', static_cast<char>('0' + nSize % 10)});
}

} // namespace

namespace Cli {

void CSleeve::Start(const TPixel& anchor)
{
    m_Anchor = anchor;
    m_dFarthest = 0.0;
}

bool CSleeve::Take(const TPixel& here)
{
    constexpr double kTurn = 2.0 * std::numbers::pi;
    const double dX = here.m_dX - m_Anchor.m_dX, dY = here.m_dY - m_Anchor.m_dY;
    const double dDistance = std::hypot(dX, dY);
    if (dDistance < m_dFarthest - m_dTolerance)
        return false; // it turns back, and the place where it does counts
    if (dDistance <= m_dTolerance)
        return true;
    const double dDirection = std::atan2(dY, dX);
    const double dHalf = std::asin(m_dTolerance / dDistance);
    if (!HasMoved()) {
        m_dMiddle = dDirection;
        m_dLeast = -dHalf;
        m_dMost = dHalf;
    } else {
        const double dOff = std::remainder(dDirection - m_dMiddle, kTurn);
        if (dOff < m_dLeast || dOff > m_dMost)
            return false;
        m_dLeast = std::max(m_dLeast, dOff - dHalf);
        m_dMost = std::min(m_dMost, dOff + dHalf);
    }
    m_dFarthest = std::max(m_dFarthest, dDistance);
    return true;
}

CPathMaker::CPathMaker(const CView& view, double dMerge)
    : m_View(view),
      m_Coverage(view.GetBox(),
                 dMerge > 0.0 ? dMerge : FirstCell(1.0, view.GetBox().GetWidth() * view.GetBox().GetHeight())),
      m_Sleeve(dMerge > 0.0 ? std::max(dMerge / 2.0, kCoarse) : kFine),
      m_dMerge(dMerge)
{
}

void CPathMaker::BeginPath(bool bKeepCells)
{
    m_strPath.clear();
    m_nStraights = 0;
    if (m_bCovered && !bKeepCells) {
        m_Coverage.Clear();
        m_bCovered = false;
    }
}

void CPathMaker::Begin()
{
    m_bBegun = m_bMoved = m_bPen = m_bDrawn = false;
}

void CPathMaker::To(const TPlace& place)
{
    const TPixel here = m_View.ToPixel(place);
    if (!m_bBegun) {
        m_First = here;
        m_Last = ToTenths(here);
        m_Sleeve.Start(here);
        m_bBegun = true;
    } else if (!m_Sleeve.Take(here)) {
        Straight(m_Pending);
        m_Sleeve.Start(m_Pending);
        m_Sleeve.Take(here);
    }
    m_Pending = here;
}

void CPathMaker::Straight(const TPixel& to)
{
    const TTenths from = m_Last, end = ToTenths(to);
    m_bMoved = true;
    m_Last = end;
    if (from == end)
        return;
    if (m_dMerge > 0.0) {
        m_bCovered = true;
        if (!m_Coverage.TakeLine(ToPixel(from), ToPixel(end))) {
            m_bPen = false;
            return;
        }
    }
    if (!m_bPen) {
        m_strPath += 'M';
        AppendTenths(m_strPath, from.m_nX, true);
        AppendTenths(m_strPath, from.m_nY, false);
        m_strPath += 'l';
    }
    AppendTenths(m_strPath, end.m_nX - from.m_nX, !m_bPen);
    AppendTenths(m_strPath, end.m_nY - from.m_nY, false);
    m_bPen = m_bDrawn = true;
    ++m_nStraights;
}

void CPathMaker::Dot()
{
    m_bCovered = true;
    if (!m_Coverage.Take(m_First))
        return;
    const TTenths place = ToTenths(m_First);
    m_strPath += 'M';
    AppendTenths(m_strPath, place.m_nX, true);
    AppendTenths(m_strPath, place.m_nY, false);
    m_strPath += 'h';
    AppendTenths(m_strPath, ToTenths({std::max(m_dMerge, 1.0), 0.0}).m_nX, true);
    m_bDrawn = true;
    ++m_nStraights;
}

bool CPathMaker::End(bool bClose)
{
    if (!m_bBegun)
        return false;
    if (!m_bMoved && !m_Sleeve.HasMoved()) {
        Dot();
        return m_bDrawn;
    }
    Straight(m_Pending);
    if (bClose && m_dMerge > 0.0)
        Straight(m_First);
    else if (bClose && m_bPen)
        m_strPath += 'z';
    return m_bDrawn;
}

} // namespace Cli
