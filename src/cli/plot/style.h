// How objects are drawn: colour, line type and width, told by themselves, their code or their layer.
#pragma once

#include "alidade/vellumlib/objects.h"

#include <cstdint>
#include <unordered_map>
#include <vector>

namespace Cli {

/// What the picture draws of an object.
enum class EFigure : unsigned { Point = 0, Line = 1, Area = 2 };

struct TStyle {
    static constexpr int kAnyLayer = -1;

    int m_nLayer = kAnyLayer; ///< index among the scene's layers; what is of several layers has none
    EFigure m_eFigure = EFigure::Point;
    TIEColor m_Color = 0;
    CIEDrawLineProperties::EDashStyleType m_eDash = CIEDrawLineProperties::Solid;
    int m_nWidth = 1; ///< pixels
    bool m_bFlooded = false;

    bool operator==(const TStyle&) const = default;
};

/// The colour as it can be seen on a white sheet: white, which drawings use for whatever stands out from the sheet, is
/// dark, and what is too light is darkened.
TIEColor ColorForSheet(TIEColor color);

/// The style of an object. A part of a composite leaves to `pWhole`, null for others, what it doesn't say itself. The
/// layer is left to the caller.
TStyle StyleOf(const CIEObject& object, const CIEObject* pWhole, const CIELayer* pLayer);

/// Numbers for styles. A picture gathers what has one style into one path, so there mustn't be too many: once all are
/// told, Reduce joins those that differ least.
class CStyleTable {
public:
    static constexpr std::size_t kMost = 2000;

    int Take(const TStyle& style);
    /// The styles that Take was given and how often, unless Reduce was called.
    [[nodiscard]] const std::vector<int>& GetCounts() const { return m_Counts; }
    /// To be called once, behind the last Take.
    void Reduce();

    /// The style that is drawn for a number that Take gave, and its own number.
    [[nodiscard]] int GetDrawn(int nStyle) const { return m_Drawn[static_cast<std::size_t>(nStyle)]; }
    [[nodiscard]] const std::vector<TStyle>& GetStyles() const { return m_Styles; }

private:
    void Rebuild(TStyle (*simplify)(TStyle));
    int Enter(const TStyle& style);

    std::vector<TStyle> m_Styles;
    std::unordered_map<std::uint64_t, int> m_ByKey;
    std::vector<int> m_Drawn;
    std::vector<int> m_Counts;
};

} // namespace Cli
