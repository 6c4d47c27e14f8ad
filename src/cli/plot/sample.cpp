#include "cli/plot/sample.h"

#include <map>

namespace {

using namespace Cli;

/// What most of a layer's objects have.
struct TMajority {
    std::map<TIEColor, int> m_Colors;
    int m_nColorCount = 0;
    TIEColor m_Color = 0;
    int m_nStyleCount = 0;
    TStyle m_Style;

    void Add(const TStyle& style, int nCount)
    {
        const int nOfColor = m_Colors[style.m_Color] += nCount;
        if (nOfColor > m_nColorCount) {
            m_nColorCount = nOfColor;
            m_Color = style.m_Color;
        }
        if (nCount > m_nStyleCount) {
            m_nStyleCount = nCount;
            m_Style = style;
        }
    }
};

std::optional<TIEColor> OwnColor(const TLayerCount& layer)
{
    const CIEDrawProperties* const pOwn = layer.m_pLayer ? layer.m_pLayer->GetDrawProperties() : nullptr;
    TIEColor color = 0;
    if (pOwn && pOwn->GetColor(color))
        return ColorForSheet(color);
    return std::nullopt;
}

void Describe(const TMajority& majority, TLayerCount& layer)
{
    const std::optional<TIEColor> own = OwnColor(layer);
    if (majority.m_nStyleCount == 0) {
        layer.m_Sample.m_eFigure = EFigure::Area;
        layer.m_Sample.m_Color =
            own.value_or(layer.m_Counts[TLayerCount::Surfaces] > 0 ? kSurfaceColor : kEmptyLayerColor);
        return;
    }
    layer.m_Sample = majority.m_Style;
    layer.m_Sample.m_Color = own && majority.m_Colors.contains(*own) ? *own : majority.m_Color;
    if (layer.m_Sample.m_Color != majority.m_Color)
        layer.m_OtherColor = majority.m_Color;
}

} // namespace

namespace Cli {

void FindSamples(TScene& scene)
{
    std::vector<TMajority> majorities(scene.m_Layers.size());
    const std::vector<int>& counts = scene.m_Styles.GetCounts();
    for (std::size_t i = 0; i < counts.size(); ++i) {
        const TStyle& style = scene.m_Styles.GetStyles()[i];
        majorities[static_cast<std::size_t>(style.m_nLayer)].Add(style, counts[i]);
    }
    for (std::size_t i = 0; i < scene.m_Layers.size(); ++i)
        Describe(majorities[i], scene.m_Layers[i]);
}

} // namespace Cli
