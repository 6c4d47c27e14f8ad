// Rows of places as the data of a path.
#pragma once

#include "cli/plot/coverage.h"
#include "cli/plot/view.h"

#include <cstddef>
#include <string>

namespace Cli {

/// A place of the sheet in tenths of a pixel, so that relative steps add up to where they should.
struct TTenths {
    int m_nX = 0;
    int m_nY = 0;

    bool operator==(const TTenths&) const = default;
};

/// Which places can be passed over: a straight from the anchor to the last place that was taken runs within the
/// tolerance of all those between.
class CSleeve {
public:
    explicit CSleeve(double dTolerance) : m_dTolerance(dTolerance) {}

    void Start(const TPixel& anchor);
    /// False if the straight has to end at the place before.
    bool Take(const TPixel& here);
    [[nodiscard]] bool HasMoved() const { return m_dFarthest > m_dTolerance; }

private:
    double m_dTolerance;
    TPixel m_Anchor;
    double m_dFarthest = 0.0;
    double m_dMiddle = 0.0; ///< direction of the first place that is out of tolerance
    double m_dLeast = 0.0;  ///< directions that are left, against the middle
    double m_dMost = 0.0;
};

/// Draws the rows of one style after the other. What is smaller than the tolerance is a dot, and only one dot stands in
/// a pixel.
class CPathMaker {
public:
    /// `dMerge` is the number of pixels within which straights of a style are merged; 0 draws all of them.
    CPathMaker(const CView& view, double dMerge);

    /// Begins another path. The cells that are taken stay so with `bKeepCells`.
    void BeginPath(bool bKeepCells);
    /// Begins a row.
    void Begin();
    void To(const TPlace& place);
    /// Gives whether anything was drawn of the row.
    bool End(bool bClose);

    /// Of the path.
    [[nodiscard]] std::size_t GetNumberOfStraights() const { return m_nStraights; }
    std::string TakePath() { return std::move(m_strPath); }

private:
    void Straight(const TPixel& to);
    void Dot();

    const CView& m_View;
    CCoverage m_Coverage;
    CSleeve m_Sleeve;
    double m_dMerge;
    std::string m_strPath;
    std::size_t m_nStraights = 0;
    TPixel m_First;
    TTenths m_Last;
    TPixel m_Pending;        ///< the last place that was passed over
    bool m_bCovered = false; ///< there are cells that are taken
    bool m_bBegun = false;
    bool m_bMoved = false; ///< there is a straight behind the first place
    bool m_bPen = false;   ///< the path's last place is m_Last
    bool m_bDrawn = false;
};

} // namespace Cli
