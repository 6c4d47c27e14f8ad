#include "cli/plot/sheet.h"

#include "alidade/vellumlib/utils.h"

#include <algorithm>
#include <cmath>
#include <fmt/format.h>

namespace {

using namespace Cli;

constexpr double kTop = 54.0;
constexpr double kTickSize = 10.0;

const char* SuffixOf(EDIST_UNITS units)
{
    switch (units) {
    case EDIST_UNITS::Meters:
        return " m";
    case EDIST_UNITS::USSurveyFeet:
        return " ft (US)";
    case EDIST_UNITS::InternationalFeet:
        return " ft";
    case EDIST_UNITS::USInches:
        return " in (US)";
    case EDIST_UNITS::InternationalInches:
        return " in";
    case EDIST_UNITS::USMiles:
        return " mi (US)";
    case EDIST_UNITS::None:
        break;
    }
    return "";
}

/// Digits behind the point that a step of 1, 2 or 5 needs.
int DecimalsFor(double dStep)
{
    constexpr double kNearly = 1e-9, kMost = 15.0;
    return static_cast<int>(std::clamp(-std::floor(std::log10(dStep) + kNearly), 0.0, kMost));
}

double NextSmallerStep(double dStep)
{
    constexpr double kBelow = 0.9;
    return RoundDown125(dStep * kBelow);
}

double WidestOf(const TGridLines& lines)
{
    double dWidest = 0.0;
    for (const std::string& text : lines.m_Texts)
        dWidest = std::max(dWidest, EstimateWidth(text, kTickSize));
    return dWidest;
}

std::string ShowLength(double dLength, EDIST_UNITS units)
{
    constexpr double kKilometer = 1000.0;
    if (units == EDIST_UNITS::Meters && dLength >= kKilometer)
        return IEUtils::DoubleToString(dLength / kKilometer, DecimalsFor(dLength / kKilometer)) + " km";
    return IEUtils::DoubleToString(dLength, DecimalsFor(dLength)) + SuffixOf(units);
}

std::string ShowCoordinate(double dValue, int nDecimals, bool bNorth, bool bDegrees)
{
    if (!bDegrees)
        return IEUtils::DoubleToString(dValue, nDecimals) + (bNorth ? " N" : " E");
    const char* const pSide = bNorth ? (dValue < 0 ? " S" : " N") : (dValue < 0 ? " W" : " E");
    return IEUtils::DoubleToString(std::abs(dValue), nDecimals) + "\xC2\xB0" + pSide;
}

} // namespace

namespace Cli {

TBox BoxForDrawing(const TSize& size, double dLeftMargin)
{
    return {dLeftMargin, kTop, size.m_nWidth - LegendWidth(size) - 2 * kGap, size.m_nHeight - kBottom};
}

double LegendWidth(const TSize& size)
{
    constexpr double kShare = 0.2, kLeast = 120.0, kMost = 260.0;
    return std::clamp(size.m_nWidth * kShare, kLeast, kMost);
}

// ---- grid

CGrid::CGrid(const CView& view, EDIST_UNITS units)
    : m_View(view), m_dFactor(view.IsGeographic() ? 1.0 : IEUtils::FromMetersFactor(1.0, units))
{
    constexpr double kApart = 90.0;     // pixels at least
    constexpr double kNextLarger = 2.5; // so many times the value, and a round step isn't below it
    const auto stepFor = [&](double dApart) {
        return RoundDown125(dApart / std::min(view.GetEastScale(), view.GetNorthScale()) * m_dFactor * kNextLarger);
    };
    const TPlace least = view.ToPlace({view.GetBox().m_dLeft, view.GetBox().m_dBottom});
    const TPlace most = view.ToPlace({view.GetBox().m_dRight, view.GetBox().m_dTop});
    double dStep = stepFor(kApart);
    const auto addLines = [&] {
        AddLines(m_North, least.m_dNorth, most.m_dNorth, dStep, true);
        AddLines(m_East, least.m_dEast, most.m_dEast, dStep, false);
    };
    addLines();
    if (const double dWidest = WidestOf(m_East); dWidest + kGap > kApart) { // long coordinates stand further apart
        dStep = stepFor(dWidest + kGap);
        addLines();
    }
    while (m_North.m_Pixels.empty() && m_East.m_Pixels.empty() && dStep > 0.0) {
        dStep = NextSmallerStep(dStep);
        addLines();
    }
    AddSingleLine(m_North, least.m_dNorth, most.m_dNorth, dStep, true);
    AddSingleLine(m_East, least.m_dEast, most.m_dEast, dStep, false);
    const int nDecimals = DecimalsFor(dStep);
    m_strStep = view.IsGeographic() ? IEUtils::DoubleToString(dStep, nDecimals) + "\xC2\xB0" : ShowLength(dStep, units);
}

void CGrid::AddLines(TGridLines& lines, double dLeast, double dMost, double dStep, bool bNorth)
{
    constexpr int kMost = 400;
    lines = {};
    const int nDecimals = DecimalsFor(dStep);
    const double dFirst = std::ceil(dLeast * m_dFactor / dStep);
    for (int i = 0; i < kMost; ++i) {
        const double dValue = (dFirst + i) * dStep;
        if (dValue > dMost * m_dFactor)
            break;
        const double dPlace = dValue / m_dFactor;
        const TPixel pixel = m_View.ToPixel({dPlace, dPlace});
        lines.m_Pixels.push_back(bNorth ? pixel.m_dY : pixel.m_dX);
        lines.m_Texts.push_back(ShowCoordinate(dValue, nDecimals, bNorth, m_View.IsGeographic()));
    }
}

void CGrid::AddSingleLine(TGridLines& lines, double dLeast, double dMost, double dStep, bool bNorth)
{
    if (!lines.m_Pixels.empty())
        return;
    while (lines.m_Pixels.empty() && dStep > 0.0) {
        dStep = NextSmallerStep(dStep);
        AddLines(lines, dLeast, dMost, dStep, bNorth);
    }
    // a second one would tell of another step than the sheet does
    lines.m_Pixels.resize(std::min(lines.m_Pixels.size(), std::size_t{1}));
    lines.m_Texts.resize(lines.m_Pixels.size());
}

double CGrid::GetTextWidth() const
{
    return WidestOf(m_North);
}

void CGrid::Append(std::string& out) const
{
    constexpr double kBaseline = 3.5, kBeneath = 13.0, kBeside = 5.0;
    const TBox& box = m_View.GetBox();
    out += "<g id=\"grid\">\n";
    for (std::size_t i = 0; i < m_North.m_Pixels.size(); ++i) {
        const double dY = m_North.m_Pixels[i];
        AppendLine(out, {box.m_dLeft, dY}, {box.m_dRight, dY}, "grid");
        AppendText(out, {box.m_dLeft - kBeside, dY + kBaseline}, "tick", EAnchor::End, m_North.m_Texts[i]);
    }
    for (std::size_t i = 0; i < m_East.m_Pixels.size(); ++i) {
        const double dX = m_East.m_Pixels[i];
        AppendLine(out, {dX, box.m_dTop}, {dX, box.m_dBottom}, "grid");
        AppendText(out, {dX, box.m_dBottom + kBeneath}, "tick", EAnchor::Middle, m_East.m_Texts[i]);
    }
    out += "</g>\n";
}

// ---- around it

void AppendTitle(std::string& out, const TSize& size, std::string_view title, std::string_view subtitle)
{
    constexpr double kTitleSize = 17.0, kSubtitleSize = 11.0, kTitleLine = 24.0, kSubtitleLine = 42.0;
    const double dWidth = size.m_nWidth - 2 * kGap;
    AppendText(out, {kGap, kTitleLine}, "title", EAnchor::Start, FitWidth(title, kTitleSize, dWidth));
    AppendText(out, {kGap, kSubtitleLine}, "subtitle", EAnchor::Start, FitWidth(subtitle, kSubtitleSize, dWidth));
}

void AppendScaleBar(std::string& out, const CView& view, EDIST_UNITS units, const std::string& strGridStep)
{
    constexpr double kLongest = 200.0, kShare = 0.4, kBeneath = 22.0, kThick = 5.0, kTextRoom = 8.0;
    if (view.IsGeographic())
        units = EDIST_UNITS::Meters;
    const TBox& box = view.GetBox();
    const double dScale = view.GetMeterScale() / IEUtils::FromMetersFactor(1.0, units); // pixels of a unit
    const double dLength = RoundDown125(std::min(kLongest, std::max(box.GetWidth() * kShare, 1.0)) / dScale);
    const double dPixels = dLength * dScale;
    const double dTop = box.m_dBottom + kBeneath;
    out += "<g id=\"scale\">\n";
    AppendBox(out, {box.m_dLeft, dTop, box.m_dLeft + dPixels / 2, dTop + kThick}, "fill=\"#222\" stroke=\"#222\"");
    AppendBox(out, {box.m_dLeft + dPixels / 2, dTop, box.m_dLeft + dPixels, dTop + kThick},
              "fill=\"#fff\" stroke=\"#222\"");
    AppendText(
        out, {box.m_dLeft + dPixels + kTextRoom, dTop + kTextRoom - 1}, "note", EAnchor::Start,
        fmt::format("{}{}, grid {}", view.IsGeographic() ? "about " : "", ShowLength(dLength, units), strGridStep));
    out += "</g>\n";
}

void AppendNorthArrow(std::string& out, const TSize& size)
{
    const double dX = size.m_nWidth - kGap - LegendWidth(size) / 2.0;
    out += fmt::format("<g id=\"north\" transform=\"translate({:.1f} {})\">\n", dX, kTop);
    out += "<path d=\"M0 0L9 30L0 23z\" fill=\"#222\"/>\n<path d=\"M0 0L-9 30L0 23z\" fill=\"#fff\" stroke=\"#222\"/>\n"
           "<text x=\"0\" y=\"44\" class=\"layer\" text-anchor=\"middle\">N</text>\n</g>\n";
}

void AppendFootLine(std::string& out, const TSize& size, double dLeft, std::string_view text)
{
    constexpr double kSize = 10.0, kAbove = 10.0;
    AppendText(out, {dLeft, size.m_nHeight - kAbove}, "note", EAnchor::Start,
               FitWidth(text, kSize, size.m_nWidth - dLeft - kGap));
}

} // namespace Cli
