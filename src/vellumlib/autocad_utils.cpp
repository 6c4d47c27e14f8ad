#include "alidade/vellumlib/autocad_utils.h"

#include "alidade/vellumlib/utils.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <iterator>

namespace {

// ---- colours

// as 0xRRGGBB
constexpr std::uint32_t kPure[] = {0x000000, 0xFF0000, 0xFFFF00, 0x00FF00, 0x00FFFF,
                                   0x0000FF, 0xFF00FF, 0xFFFFFF, 0x808080, 0xC0C0C0};
constexpr int kFirstHue = 10;
constexpr int kFirstGrey = 250;
constexpr double kBrightness[] = {1.0, 0.65, 0.5, 0.3, 0.15};
constexpr double kFull = 255.0;

constexpr std::uint32_t MakeRGB(double dRed, double dGreen, double dBlue)
{
    return static_cast<std::uint32_t>(dRed) << 16U | static_cast<std::uint32_t>(dGreen) << 8U |
           static_cast<std::uint32_t>(dBlue);
}

/// The share of a primary colour, 0 to 1, at a step of 15 degrees away from it.
constexpr double ShareAt(int nSteps)
{
    constexpr int kCircle = 24;
    nSteps = (nSteps % kCircle + kCircle) % kCircle;
    nSteps = std::min(nSteps, kCircle - nSteps);
    return nSteps <= 4 ? 1.0 : nSteps >= 8 ? 0.0 : (8 - nSteps) / 4.0;
}

constexpr std::uint32_t MakeHue(int nIndex)
{
    const int nStep = (nIndex - kFirstHue) / 10;
    const double dValue = kFull * kBrightness[(nIndex - kFirstHue) % 10 / 2];
    const double dLeast = nIndex % 2 == 0 ? 0.0 : dValue / 2;
    const auto channel = [&](int nPrimary) { return dLeast + (dValue - dLeast) * ShareAt(nStep - nPrimary); };
    return MakeRGB(channel(0), channel(8), channel(16));
}

constexpr std::array<std::uint32_t, CIEAutoCADUtils::kColors> MakeColors()
{
    std::array<std::uint32_t, CIEAutoCADUtils::kColors> colors{};
    for (int i = 0; i < CIEAutoCADUtils::kColors; ++i) {
        std::uint32_t& color = colors[static_cast<std::size_t>(i)];
        if (i < kFirstHue)
            color = kPure[i];
        else if (i < kFirstGrey)
            color = MakeHue(i);
        else
            color = static_cast<std::uint32_t>(kFull * (i - kFirstGrey + 1.25) * 0.16) * 0x010101U;
    }
    return colors;
}

constexpr std::array<std::uint32_t, CIEAutoCADUtils::kColors> kColorTable = MakeColors();
static_assert(kColorTable[10] == 0xFF0000 && kColorTable[53] == 0xA5A552 && kColorTable[247] == 0x4C262F);
static_assert(kColorTable[250] == 0x333333 && kColorTable[255] == 0xFFFFFF);

int DistanceOf(std::uint32_t left, std::uint32_t right)
{
    int nDistance = 0;
    for (const unsigned nShift : {0U, 8U, 16U}) {
        const int nDifference = static_cast<int>(left >> nShift & 0xFFU) - static_cast<int>(right >> nShift & 0xFFU);
        nDistance += nDifference * nDifference;
    }
    return nDistance;
}

// ---- line weights

constexpr double kPixelsToTheInch = 96.0;
constexpr double kWeightsToTheInch = 2540.0; // hundredths of a millimetre
constexpr int kWeights[] = {0,  5,  9,  13, 15, 18,  20,  25,  30,  35,  40,  50,
                            53, 60, 70, 80, 90, 100, 106, 120, 140, 158, 200, 211};

// ---- line types

struct TLineType {
    std::string_view m_Word; ///< in lower case
    CIEDrawLineProperties::EDashStyleType m_eStyle;
};
/// Line types whose name begins with the word.
constexpr TLineType kLineTypes[] = {
    {"bylayer", CIEDrawLineProperties::ByLayer},          {"byblock", CIEDrawLineProperties::ByLayer},
    {"continuous", CIEDrawLineProperties::Solid},         {"dashed_custom", CIEDrawLineProperties::DashedCustom},
    {"acad_iso02", CIEDrawLineProperties::Dashed},        {"acad_iso03", CIEDrawLineProperties::Dashed},
    {"acad_iso04", CIEDrawLineProperties::DashDotted},    {"acad_iso05", CIEDrawLineProperties::DashDotDotted},
    {"acad_iso06", CIEDrawLineProperties::DashDotDotted}, {"acad_iso07", CIEDrawLineProperties::Dotted},
    {"acad_iso08", CIEDrawLineProperties::Dashed},        {"acad_iso09", CIEDrawLineProperties::Dashed},
    {"acad_iso10", CIEDrawLineProperties::DashDotted},    {"acad_iso11", CIEDrawLineProperties::DashDotted},
    {"acad_iso", CIEDrawLineProperties::DashDotDotted},   {"hidden", CIEDrawLineProperties::Dashed},
    {"border", CIEDrawLineProperties::DashDotted},        {"center", CIEDrawLineProperties::DashDotted},
    {"phantom", CIEDrawLineProperties::DashDotDotted},    {"divide", CIEDrawLineProperties::DashDotDotted},
};
/// Line types whose name has the word in it; the first that fits counts.
constexpr TLineType kLineTypeWords[] = {
    {"dotdot", CIEDrawLineProperties::DashDotDotted},
    {"dashdot", CIEDrawLineProperties::DashDotted},
    {"dash", CIEDrawLineProperties::Dashed},
    {"dot", CIEDrawLineProperties::Dotted},
};

} // namespace

TIEColor CIEAutoCADUtils::Convert256ToRGB(int nIndex) const
{
    return ColorFromRGB(kColorTable[static_cast<std::size_t>(nIndex >= 0 && nIndex < kColors ? nIndex : kForeground)]);
}

int CIEAutoCADUtils::ConvertRGBTo256(TIEColor color) const
{
    if (color == 0)
        return kForeground;
    const std::uint32_t nRGB = ColorToRGB(color);
    const auto nearest = std::min_element(kColorTable.begin() + 1, kColorTable.end(), [nRGB](auto left, auto right) {
        return DistanceOf(left, nRGB) < DistanceOf(right, nRGB);
    });
    return static_cast<int>(nearest - kColorTable.begin());
}

int CIEAutoCADUtils::ConvertLineWeightFromMMtoPixels(HWND /*hWnd*/, double dWeight) const
{
    if (!(dWeight > 0))
        return 0;
    const double dPixels =
        std::min(dWeight, static_cast<double>(*std::prev(std::end(kWeights)))) * kPixelsToTheInch / kWeightsToTheInch;
    return std::max(1, static_cast<int>(std::lround(dPixels)));
}

int CIEAutoCADUtils::ConvertLineWeightFromPixelsToMM(int nPixels) const
{
    const double dWeight = nPixels * kWeightsToTheInch / kPixelsToTheInch;
    return *std::min_element(std::begin(kWeights), std::end(kWeights), [dWeight](int nLeft, int nRight) {
        return std::abs(nLeft - dWeight) < std::abs(nRight - dWeight);
    });
}

CIEDrawLineProperties::EDashStyleType CIEAutoCADUtils::ConvertCustomLineTypeToPredefined(std::string_view name) const
{
    CString strName = IEUtils::ToLower(IEUtils::Trim(name));
    for (const TLineType& type : kLineTypes) {
        if (strName.starts_with(type.m_Word))
            return type.m_eStyle;
    }
    std::erase_if(strName, [](char c) { return c == ' ' || c == '-' || c == '_'; }); // "Dash-Dot"
    for (const TLineType& type : kLineTypeWords) {
        if (strName.find(type.m_Word) != CString::npos)
            return type.m_eStyle;
    }
    return CIEDrawLineProperties::Solid;
}
