// What stands around the drawing: title, grid, scale bar, north arrow.
#pragma once

#include "cli/plot/scene.h"
#include "cli/plot/view.h"

#include <string>
#include <vector>

namespace Cli {

/// Pixels of the whole picture.
struct TSize {
    int m_nWidth = 1200;
    int m_nHeight = 900;
};

constexpr double kGap = 12.0;    ///< between the parts of the sheet
constexpr double kBottom = 62.0; ///< beneath the drawing

double LegendWidth(const TSize& size);

/// How much room the sheet leaves to the drawing.
TBox BoxForDrawing(const TSize& size, double dLeftMargin);

/// Lines of the grid in one direction, and the texts of their coordinates.
struct TGridLines {
    std::vector<double> m_Pixels;
    std::vector<std::string> m_Texts;
};

/// A grid at steps of 1, 2 or 5 times a power of ten in the job's units, or in degrees. Each direction has a line.
class CGrid {
public:
    CGrid(const CView& view, EDIST_UNITS units);

    /// Pixels that the longest coordinate at the left takes.
    [[nodiscard]] double GetTextWidth() const;
    void Append(std::string& out) const;
    /// As "20 m".
    [[nodiscard]] const std::string& GetStepText() const { return m_strStep; }

private:
    void AddLines(TGridLines& lines, double dLeast, double dMost, double dStep, bool bNorth);
    /// In a direction where the step leaves no line, one at a finer step.
    void AddSingleLine(TGridLines& lines, double dLeast, double dMost, double dStep, bool bNorth);

    const CView& m_View;
    TGridLines m_North;
    TGridLines m_East;
    std::string m_strStep;
    double m_dFactor; ///< of metres to the units
};

void AppendTitle(std::string& out, const TSize& size, std::string_view title, std::string_view subtitle);
/// In the row beneath the drawing, with the grid's step. In degrees the scale is that of a sphere, and said to be
/// about.
void AppendScaleBar(std::string& out, const CView& view, EDIST_UNITS units, const std::string& strGridStep);
void AppendNorthArrow(std::string& out, const TSize& size);
/// The small line at the bottom.
void AppendFootLine(std::string& out, const TSize& size, double dLeft, std::string_view text);

} // namespace Cli
