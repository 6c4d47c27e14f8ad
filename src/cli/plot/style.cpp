#include "cli/plot/style.h"

#include <algorithm>
#include <array>

namespace {

using namespace Cli;

constexpr TIEColor kDark = 0x202020;
constexpr TIEColor kUntold = 0x404040; ///< of objects whose colour nothing tells
constexpr int kWidest = 20;

/// The properties that speak for an object, the nearest first; null where there are none.
using TVoices = std::array<const CIEDrawProperties*, 4>;

TVoices VoicesFor(const CIEObject& object, const CIEObject* pWhole, const CIELayer* pLayer, int nType)
{
    const CIECodeValues* pCode = object.GetCode(0);
    if (!pCode && pWhole)
        pCode = pWhole->GetCode(0);
    const CIECodeDescription* const pDescription = pCode ? pCode->GetDescription() : nullptr;
    return {object.GetDrawProperties(), pWhole ? pWhole->GetDrawProperties() : nullptr,
            pDescription ? pDescription->GetDrawProperties(nType) : nullptr,
            pLayer ? pLayer->GetDrawProperties() : nullptr};
}

void HearLine(const CIEDrawProperties* pVoice, TStyle& style, bool& bDash, bool& bWidth)
{
    const auto* const pLine = dynamic_cast<const CIEDrawLineProperties*>(pVoice);
    if (!pLine)
        return;
    bDash = bDash || pLine->GetDashStyle(style.m_eDash);
    int nWidth = 0;
    if (!bWidth && pLine->GetWidth(nWidth)) {
        style.m_nWidth = std::clamp(nWidth, 1, kWidest);
        bWidth = true;
    }
}

EFigure FigureOf(const CIEObject& object)
{
    switch (object.GetType()) {
    case EIEObjectsType::PolyLine:
    case EIEObjectsType::Arc:
        return EFigure::Line;
    case EIEObjectsType::Polygon:
        return EFigure::Area;
    default:
        return EFigure::Point;
    }
}

std::uint64_t KeyOf(const TStyle& style)
{
    std::uint64_t nKey = static_cast<std::uint32_t>(style.m_nLayer - TStyle::kAnyLayer);
    nKey = nKey << 2U | static_cast<unsigned>(style.m_eFigure);
    nKey = nKey << 3U | static_cast<unsigned>(style.m_eDash);
    nKey = nKey << 5U | static_cast<unsigned>(style.m_nWidth);
    nKey = nKey << 1U | (style.m_bFlooded ? 1U : 0U);
    return nKey << 24U | (style.m_Color & 0xFFFFFFU);
}

TStyle WithoutLayer(TStyle style)
{
    style.m_nLayer = TStyle::kAnyLayer;
    return style;
}

/// Few enough for any picture: 16 steps for each primary colour.
TStyle WithoutDetail(TStyle style)
{
    style.m_eDash = CIEDrawLineProperties::Solid;
    style.m_nWidth = 1;
    style.m_bFlooded = false;
    style.m_eFigure = style.m_eFigure == EFigure::Point ? EFigure::Point : EFigure::Line;
    style.m_Color &= 0xF0F0F0U;
    return WithoutLayer(style);
}

} // namespace

namespace Cli {

TIEColor ColorForSheet(TIEColor color)
{
    constexpr TIEColor kNearWhite = 0xE0;
    constexpr TIEColor kLightest = 160;
    constexpr TIEColor kByte = 0xFF;
    const TIEColor red = color & kByte;
    const TIEColor green = color >> 8U & kByte;
    const TIEColor blue = color >> 16U & kByte;
    if (std::min({red, green, blue}) >= kNearWhite)
        return kDark;
    const TIEColor brightness = (red * 299 + green * 587 + blue * 114) / 1000;
    if (brightness <= kLightest)
        return red | green << 8U | blue << 16U;
    const auto darken = [&](TIEColor channel) { return channel * kLightest / brightness; };
    return darken(red) | darken(green) << 8U | darken(blue) << 16U;
}

TStyle StyleOf(const CIEObject& object, const CIEObject* pWhole, const CIELayer* pLayer)
{
    TStyle style;
    style.m_eFigure = FigureOf(object);
    style.m_Color = kUntold;
    bool bColor = false, bDash = false, bWidth = false;
    for (const CIEDrawProperties* const pVoice : VoicesFor(object, pWhole, pLayer, static_cast<int>(style.m_eFigure))) {
        if (!pVoice)
            continue;
        TIEColor color = 0;
        if (!bColor && pVoice->GetColor(color)) {
            style.m_Color = ColorForSheet(color);
            bColor = true;
        }
        if (style.m_eFigure != EFigure::Point)
            HearLine(pVoice, style, bDash, bWidth);
        if (style.m_eFigure == EFigure::Area) {
            const auto* const pArea = dynamic_cast<const CIEDrawAreaProperties*>(pVoice);
            style.m_bFlooded = style.m_bFlooded || (pArea && pArea->IsFlooded());
        }
    }
    return style;
}

int CStyleTable::Enter(const TStyle& style)
{
    const auto [it, bNew] = m_ByKey.try_emplace(KeyOf(style), static_cast<int>(m_Styles.size()));
    if (bNew)
        m_Styles.push_back(style);
    return it->second;
}

int CStyleTable::Take(const TStyle& style)
{
    const int nStyle = Enter(style);
    if (static_cast<std::size_t>(nStyle) == m_Drawn.size())
        m_Drawn.push_back(nStyle);
    m_Counts.resize(m_Drawn.size());
    ++m_Counts[static_cast<std::size_t>(nStyle)];
    return nStyle;
}

void CStyleTable::Reduce()
{
    if (m_Styles.size() > kMost)
        Rebuild(&WithoutLayer);
    if (m_Styles.size() > kMost)
        Rebuild(&WithoutDetail);
}

void CStyleTable::Rebuild(TStyle (*simplify)(TStyle))
{
    const std::vector<TStyle> old = std::move(m_Styles);
    m_Styles.clear();
    m_ByKey.clear();
    std::vector<int> places;
    places.reserve(old.size());
    for (const TStyle& style : old)
        places.push_back(Enter(simplify(style)));
    for (int& nDrawn : m_Drawn)
        nDrawn = places[static_cast<std::size_t>(nDrawn)];
}

} // namespace Cli
