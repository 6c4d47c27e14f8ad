// What a drawing of a dataset says ahead of its objects.
// Any number of threads may read such a thing while none changes it.
#pragma once

#include "alidade/platform/api.h"
#include "alidade/vellumlib/station.h"

#include <array>

/// Extent of a dataset and the sizes of what is drawn at its points. The extent, and sizes that suit it, are in the
/// unit of the coordinates: metres, or decimal degrees in a job of latitude and longitude. Sizes that are set are in
/// the units of the drawing that is written.
class ALIDADE_API CHeaderInfo {
public:
    enum EBorder : int { Minimum = 0, Maximum = 1 };
    static constexpr int kBorders = 2;
    static constexpr int kCross = 3; ///< a point mode of drawings: an X at each point

    /// False while nothing with coordinates was met.
    [[nodiscard]] bool IsMinMaxDefined() const { return m_bMinMaxDefined; }
    /// The smallest or largest north, east and height; height 0 where none is defined. Null for any other border.
    [[nodiscard]] const CIEStation* GetBorder(int nBorder) const;
    void SetBorders(CIEStation minimum, CIEStation maximum);
    void ForgetBorders();
    /// Widens the borders so that they take in a station.
    void Extend(const CIEStation& station);

    /// How drawings show points, by the numbers of their variable PDMODE.
    [[nodiscard]] int GetPointMode() const { return m_nPointMode; }
    void SetPointMode(int nMode) { m_nPointMode = nMode; }
    /// Size of a point's symbol; 0 asks for CalcAutoSymbolSize. Height of text likewise.
    [[nodiscard]] double GetSymbolSize() const { return m_dSymbolSize; }
    void SetSymbolSize(double dSize) { m_dSymbolSize = dSize; }
    [[nodiscard]] double GetTextHeight() const { return m_dTextHeight; }
    void SetTextHeight(double dHeight) { m_dTextHeight = dHeight; }
    /// Width of a character against that of the drawing's font.
    [[nodiscard]] double GetTextWidthFactor() const { return m_dTextWidthFactor; }
    void SetTextWidthFactor(double dFactor) { m_dTextWidthFactor = dFactor; }

    /// Sizes that suit the extent: text a 150th of its longer side, symbols half of that. 1 and 0.5 where there is no
    /// extent.
    [[nodiscard]] double CalcAutoTextSize() const;
    [[nodiscard]] double CalcAutoSymbolSize() const;
    /// Sets a dash to a 100th of the longer side, the gap, which is negative, to half of that, and the total to what
    /// both take. Nothing is set where there is no extent.
    void CalcAutoDashSize(double& dTotal, double& dDash, double& dGap) const;

private:
    [[nodiscard]] double GetLongerSide() const;

    std::array<CIEStation, kBorders> m_Borders;
    double m_dSymbolSize = 0.0;
    double m_dTextHeight = 0.0;
    double m_dTextWidthFactor = 1.0;
    int m_nPointMode = kCross;
    bool m_bMinMaxDefined = false;
};
