// From the ground to the sheet.
#pragma once

#include "cli/plot/scene.h"
#include "cli/plot/svg.h"

namespace Cli {

/// North is up, and a metre is as long to the east as to the north.
class CView {
public:
    /// Fits an extent into a box of the sheet, with a little air around. An extent without width or height is given
    /// some. With `bGeographic` places are degrees, and one of longitude is as wide as it is at the middle latitude.
    CView(const TExtent& extent, const TBox& box, bool bGeographic);
    /// The same without air: the box shrinks to the window.
    static CView OfWindow(const TExtent& window, const TBox& box, bool bGeographic);

    [[nodiscard]] TPixel ToPixel(const TPlace& place) const
    {
        return {m_MiddlePixel.m_dX + (place.m_dEast - m_Middle.m_dEast) * m_dEastScale,
                m_MiddlePixel.m_dY - (place.m_dNorth - m_Middle.m_dNorth) * m_dNorthScale};
    }
    [[nodiscard]] TPlace ToPlace(const TPixel& pixel) const
    {
        return {m_Middle.m_dNorth - (pixel.m_dY - m_MiddlePixel.m_dY) / m_dNorthScale,
                m_Middle.m_dEast + (pixel.m_dX - m_MiddlePixel.m_dX) / m_dEastScale};
    }
    [[nodiscard]] const TBox& GetBox() const { return m_Box; }
    [[nodiscard]] bool IsGeographic() const { return m_bGeographic; }
    /// Pixels of a metre on the ground, or of a degree of latitude; of a degree of longitude.
    [[nodiscard]] double GetNorthScale() const { return m_dNorthScale; }
    [[nodiscard]] double GetEastScale() const { return m_dEastScale; }
    /// Pixels of a metre on the ground; about, in a geographic job.
    [[nodiscard]] double GetMeterScale() const
    {
        return m_bGeographic ? m_dNorthScale / kMetersOfDegree : m_dNorthScale;
    }

private:
    CView(const TExtent& extent, const TBox& box, bool bGeographic, double dAir);

    TBox m_Box;
    TPlace m_Middle;
    TPixel m_MiddlePixel;
    double m_dNorthScale = 1.0;
    double m_dEastScale = 1.0;
    bool m_bGeographic;
};

/// The largest of 1, 2 and 5 times a power of ten that isn't above the value, which must be above 0.
double RoundDown125(double dValue);

} // namespace Cli
