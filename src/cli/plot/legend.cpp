#include "cli/plot/legend.h"

#include "cli/plot/ink.h"

#include <algorithm>
#include <fmt/format.h>

namespace {

using namespace Cli;

using TCounts = std::array<int, TLayerCount::Kinds>;

std::string DescribeCounts(const TCounts& counts)
{
    // parts of composites count where they lie on another layer than the whole
    constexpr std::array<const char*, TLayerCount::Kinds> kWords{"point",     "line", "polygon", "arc",
                                                                 "composite", "part", "surface", "alignment"};
    std::string text;
    for (std::size_t i = 0; i < kWords.size(); ++i) {
        if (counts[i] > 0)
            text += fmt::format("{}{} {}{}", text.empty() ? "" : ", ", GroupDigits(static_cast<std::size_t>(counts[i])),
                                kWords[i], counts[i] == 1 ? "" : "s");
    }
    return text.empty() ? "nothing" : text;
}

bool IsEmpty(const TLayerCount& layer)
{
    return std::all_of(layer.m_Counts.begin(), layer.m_Counts.end(), [](int nCount) { return nCount == 0; });
}

std::string DescribeLayer(const TLayerCount& layer)
{
    const std::string counts = DescribeCounts(layer.m_Counts);
    switch (layer.m_eState) {
    case TLayerCount::EState::Off:
        return "off: " + counts;
    case TLayerCount::EState::NotAsked:
        return "not asked for: " + counts;
    case TLayerCount::EState::Drawn:
        break;
    }
    return layer.m_pLayer && !layer.m_pLayer->IsPlot() ? counts + "; not plotted" : counts;
}

constexpr double kSample = 22.0;

/// A dot, a piece of line or a square in a part of the sample's room.
void AppendFigure(std::string& out, const TPixel& at, double dWidth, const TStyle& style, bool bDrawn)
{
    constexpr double kSide = 10.0, kWidest = 8.0, kDot = 6.0, kMiddle = 5.5;
    constexpr double kDashes = 0.75; // so that the gap is seen, and the dash behind it
    const std::string color = ColorToSvg(style.m_Color);
    const double dMiddle = at.m_dX + dWidth / 2.0;
    if (bDrawn && style.m_eFigure == EFigure::Line) {
        out += fmt::format("<path d=\"M{:.1f} {:.1f}h{}\" {}/>\n", at.m_dX, at.m_dY + kMiddle, dWidth,
                           LineAttributes(style, std::min<double>(style.m_nWidth, kWidest), kDashes * dWidth));
    } else if (bDrawn && style.m_eFigure == EFigure::Point) {
        out +=
            fmt::format("<path d=\"M{:.1f} {:.1f}h0\" stroke-linecap=\"round\" stroke-width=\"{}\" stroke=\"{}\"/>\n",
                        dMiddle, at.m_dY + kMiddle, kDot, color);
    } else {
        AppendBox(out, {dMiddle - kSide / 2.0, at.m_dY, dMiddle + kSide / 2.0, at.m_dY + kSide},
                  fmt::format("fill=\"{}\" stroke=\"{}\"", bDrawn ? color : "#fff", color));
    }
}

void AppendSample(std::string& out, const TPixel& at, const TLayerCount& layer)
{
    constexpr double kGapWithin = 2.0, kPart = (kSample - kGapWithin) / 2.0;
    if (!layer.m_OtherColor)
        return AppendFigure(out, at, kSample, layer.m_Sample, layer.IsDrawn());
    AppendFigure(out, at, kPart, layer.m_Sample, layer.IsDrawn());
    TStyle other = layer.m_Sample;
    other.m_Color = *layer.m_OtherColor;
    AppendFigure(out, {at.m_dX + kPart + kGapWithin, at.m_dY}, kPart, other, layer.IsDrawn());
}

void AppendLayer(std::string& out, const TPixel& at, double dWidth, const TLayerCount& layer)
{
    constexpr double kNameSize = 11.0, kCountSize = 9.0, kNameLine = 9.0, kCountLine = 20.0, kBeside = 5.0;
    AppendSample(out, at, layer);
    const double dText = at.m_dX + kSample + kBeside;
    const double dRoom = dWidth - kSample - kBeside;
    const CString name = layer.m_pLayer ? layer.m_pLayer->GetName() : CString("(no layer)");
    AppendText(out, {dText, at.m_dY + kNameLine}, layer.IsDrawn() ? "layer" : "off", EAnchor::Start,
               FitWidth(name, kNameSize, dRoom));
    AppendText(out, {dText, at.m_dY + kCountLine}, "count", EAnchor::Start,
               FitWidth(DescribeLayer(layer), kCountSize, dRoom));
}

} // namespace

namespace Cli {

std::string GroupDigits(std::size_t nCount)
{
    constexpr std::size_t kGroup = 3;
    std::string text = std::to_string(nCount);
    for (std::size_t i = text.size(); i > kGroup; i -= kGroup)
        text.insert(i - kGroup, ",");
    return text;
}

std::string DescribeDrawn(const TScene& scene)
{
    TCounts counts{};
    for (const TLayerCount& layer : scene.m_Layers) {
        for (std::size_t i = 0; layer.IsDrawn() && i < counts.size(); ++i)
            counts[i] += layer.m_Counts[i];
    }
    return DescribeCounts(counts);
}

void AppendLegend(std::string& out, const TSize& size, const TScene& scene)
{
    constexpr double kRow = 27.0, kHead = 118.0, kFirst = 126.0;
    constexpr std::size_t kMost = 300;
    const double dWidth = LegendWidth(size);
    TPixel at{size.m_nWidth - kGap - dWidth, kFirst};
    const double dRoom = size.m_nHeight - kFirst - kBottom;
    const std::size_t nRoom = std::clamp(static_cast<std::size_t>(std::max(dRoom, kRow) / kRow), std::size_t{1}, kMost);
    std::size_t nShown = 0, nMore = 0, nEmpty = 0;
    out += "<g id=\"legend\">\n";
    AppendText(out, {at.m_dX, kHead}, "head", EAnchor::Start, "Layers");
    for (const TLayerCount& layer : scene.m_Layers) {
        if (IsEmpty(layer)) {
            nEmpty += layer.m_pLayer ? 1 : 0;
        } else if (nShown == nRoom) {
            ++nMore;
        } else {
            AppendLayer(out, at, dWidth, layer);
            at.m_dY += kRow;
            ++nShown;
        }
    }
    const auto tell = [&](std::size_t nCount, const char* pWhat) {
        if (nCount > 0) {
            at.m_dY += kGap;
            AppendText(out, {at.m_dX, at.m_dY}, "count", EAnchor::Start,
                       fmt::format("and {} {}", GroupDigits(nCount), pWhat));
        }
    };
    tell(nMore, "more");
    tell(nEmpty, nEmpty == 1 ? "layer with nothing on it" : "layers with nothing on them");
    out += "</g>\n";
}

} // namespace Cli
