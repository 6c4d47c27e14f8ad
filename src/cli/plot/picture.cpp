#include "cli/plot/picture.h"

#include "cli/plot/ink.h"
#include "cli/plot/labels.h"
#include "cli/plot/legend.h"
#include "cli/plot/lines.h"
#include "cli/plot/points.h"

#include <algorithm>
#include <bit>
#include <fmt/format.h>
#include <tuple>
#include <unordered_map>

namespace {

using namespace Cli;

constexpr const char* kStyleSheet =
    "<style>text{font-family:sans-serif;fill:#222}.title{font-size:17px;font-weight:bold}.subtitle{font-size:11px;"
    "fill:#555}.head{font-size:12px;font-weight:bold}.layer{font-size:11px}.off{font-size:11px;fill:#888}.count{"
    "font-size:9px;fill:#666}.tick,.note{font-size:10px;fill:#555}.nothing{font-size:20px;fill:#777}.name,.code,.road{"
    "paint-order:stroke;stroke:#fff;stroke-width:2px;stroke-linejoin:round}.name{font-size:10px}.code{font-size:8px;"
    "fill:#666}.road{font-size:10px;fill:#b03030}.over{stroke-width:4px}.grid{stroke:#e4e4e4;stroke-width:1;fill:none}<"
    "/style>\n";

CString NameOfLayer(const TScene& scene, int nLayer)
{
    if (nLayer == TStyle::kAnyLayer)
        return {};
    const CIELayer* const pLayer = scene.m_Layers[static_cast<std::size_t>(nLayer)].m_pLayer;
    return pLayer ? pLayer->GetName() : CString("(no layer)");
}

/// The paths that hold anything, layer by layer. What there is much of lies beneath: in steps of twice as much, so that
/// layers alike keep the job's order.
std::vector<std::size_t> OrderPaths(const std::vector<TStyle>& styles, const std::vector<std::string>& paths)
{
    std::vector<std::size_t> order;
    std::unordered_map<int, std::size_t> layerSizes;
    for (std::size_t i = 0; i < paths.size(); ++i) {
        if (paths[i].empty())
            continue;
        order.push_back(i);
        layerSizes[styles[i].m_nLayer] += paths[i].size();
    }
    const auto rank = [&](std::size_t i) {
        return std::tuple(-static_cast<int>(std::bit_width(layerSizes[styles[i].m_nLayer])), styles[i].m_nLayer,
                          -static_cast<int>(std::bit_width(paths[i].size())));
    };
    std::stable_sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) { return rank(a) < rank(b); });
    return order;
}

/// The paths in groups by layer, each with the layer's name as its title, which a viewer shows under the pointer.
template <class TAttributes>
void AppendGroups(std::string& out, const TScene& scene, const std::vector<std::string>& paths, TAttributes attributes)
{
    const std::vector<TStyle>& styles = scene.m_Styles.GetStyles();
    const std::vector<std::size_t> order = OrderPaths(styles, paths);
    for (std::size_t k = 0; k < order.size(); ++k) {
        const TStyle& style = styles[order[k]];
        if (k == 0 || styles[order[k - 1]].m_nLayer != style.m_nLayer) {
            const CString name = NameOfLayer(scene, style.m_nLayer);
            out += (k == 0 ? "<g>" : "</g>\n<g>") +
                   (name.empty() ? std::string("\n") : "<title>" + EscapeXml(name) + "</title>\n");
        }
        out += fmt::format("<path {} d=\"", attributes(order[k])) + paths[order[k]] + "\"/>\n";
    }
    if (!order.empty())
        out += "</g>\n";
}

/// The drawing itself, within its box.
class CDrawing {
public:
    CDrawing(const TScene& scene, const CView& view, bool bLabels)
        : m_Scene(scene),
          m_Surfaces(DrawSurfaces(scene, view)),
          m_Lines(DrawLines(scene, view)),
          m_Marks(DrawMarks(scene, view)),
          m_bLabels(bLabels)
    {
        if (bLabels)
            m_Labels = DrawLabels(scene, m_Marks, view);
    }

    void Append(std::string& out) const;
    [[nodiscard]] std::vector<std::string> GetRemarks() const;

private:
    const TScene& m_Scene;
    TLinePaths m_Surfaces;
    TLinePaths m_Lines;
    TMarkPaths m_Marks;
    TLabels m_Labels;
    bool m_bLabels;
};

void CDrawing::Append(std::string& out) const
{
    const std::vector<TStyle>& styles = m_Scene.m_Styles.GetStyles();
    if (!m_Surfaces.m_Paths.front().empty()) // a mesh that is coarser than it should be is faint
        out += fmt::format("<path id=\"surfaces\" fill=\"none\" stroke=\"{}\" stroke-width=\"{}\" d=\"",
                           ColorToSvg(kSurfaceColor), m_Surfaces.m_dMerged > 0.0 ? "0.3" : "0.6") +
               m_Surfaces.m_Paths.front() + "\"/>\n";
    out += "<g id=\"lines\" fill=\"none\" stroke-linejoin=\"round\">\n";
    AppendGroups(out, m_Scene, m_Lines.m_Paths, [&](std::size_t nStyle) {
        // where straights were left out, what is left encloses nothing
        return LineAttributes(styles[nStyle], styles[nStyle].m_nWidth) +
               (m_Lines.m_Whole[nStyle] ? FillAttributes(styles[nStyle]) : "");
    });
    out += "</g>\n<g id=\"points\" fill=\"none\" stroke-linecap=\"round\">\n";
    AppendGroups(out, m_Scene, m_Marks.m_Paths, [&](std::size_t nStyle) {
        return fmt::format("stroke=\"{}\" stroke-width=\"{:.3g}\"", ColorToSvg(styles[nStyle].m_Color),
                           m_Marks.m_Sizes[nStyle]);
    });
    out += "</g>\n<g id=\"labels\">\n" + m_Labels.m_strSvg + "</g>\n";
}

std::string TellPixels(double dPixels)
{
    return fmt::format("{:.2g} {}", dPixels, dPixels == 1.0 ? "pixel" : "pixels");
}

std::vector<std::string> CDrawing::GetRemarks() const
{
    std::vector<std::string> remarks;
    const auto tell = [&](const char* pWhat, std::size_t nShown, std::size_t nAll) {
        if (nShown < nAll)
            remarks.push_back(fmt::format("{}: {} of {} shown", pWhat, GroupDigits(nShown), GroupDigits(nAll)));
    };
    if (m_bLabels) {
        tell("labels", m_Labels.m_nShown, m_Labels.m_nLabels);
        tell("codes", m_Labels.m_nCodesShown, m_Labels.m_nCodes);
    }
    tell("points", m_Marks.m_Shown.size(), m_Scene.m_Marks.size());
    tell("lines", m_Lines.m_nDrawn, m_Lines.m_nObjects);
    if (m_Lines.m_dMerged > 0.0)
        remarks.push_back("lines of a kind within " + TellPixels(m_Lines.m_dMerged) + " are merged");
    if (m_Surfaces.m_dMerged > 0.0)
        remarks.push_back(fmt::format(
            "the mesh of surfaces is coarser than it is, {} edges of {}: positions within {} are one",
            GroupDigits(m_Surfaces.m_nDrawn), GroupDigits(m_Surfaces.m_nObjects), TellPixels(m_Surfaces.m_dMerged)));
    else
        tell("edges of surfaces", m_Surfaces.m_nDrawn, m_Surfaces.m_nObjects);
    return remarks;
}

/// What the scene itself lacks of the job.
void AddOmissions(const TScene& scene, std::vector<std::string>& remarks)
{
    const std::pair<int, const char*> rows[] = {
        {scene.m_nOutside, "objects outside the window, not drawn"},
        {scene.m_nRelative, "points told along a line, not drawn"},
        {scene.m_nPatterns, "objects within blocks, not drawn"},
        {scene.m_nTrianglesLeftOut, "triangles without all corners, not drawn"},
        {scene.m_nRoadsWithoutPlace, "alignments without a place, not drawn"},
        {scene.m_nRoadsInPart, "alignments drawn in part, as far as they tell where they lie"},
        {scene.m_nOffEarth, "beyond any place on earth, not drawn"},
    };
    for (const auto& [nCount, pWhat] : rows) {
        if (nCount > 0)
            remarks.push_back(fmt::format("{}: {}", pWhat, GroupDigits(static_cast<std::size_t>(nCount))));
    }
}

std::string DatasetsOf(const CIEData& job, const TScene& scene)
{
    constexpr std::size_t kEnough = 400; // bytes; what is longer is cut anyway
    std::string names;
    for (int i = 0; names.size() < kEnough; ++i) {
        const CIEDataset* const pDataset = job.GetDatasetAt(i);
        if (!pDataset)
            break;
        if (!pDataset->GetName().empty())
            names += (names.empty() ? "" : ", ") + pDataset->GetName();
    }
    return (names.empty() ? "" : names + ": ") + DescribeDrawn(scene);
}

void AppendHead(std::string& out, const TSize& size, const std::string& strTitle)
{
    out += fmt::format("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<svg xmlns=\"http://www.w3.org/2000/svg\" "
                       "width=\"{0}\" height=\"{1}\" viewBox=\"0 0 {0} {1}\">\n",
                       size.m_nWidth, size.m_nHeight);
    out += "<title>" + EscapeXml(strTitle) + "</title>\n";
    out += kStyleSheet;
    AppendBox(out, {0, 0, static_cast<double>(size.m_nWidth), static_cast<double>(size.m_nHeight)}, "fill=\"#fff\"");
}

constexpr const char* kFrame = "fill=\"none\" stroke=\"#999\"";

/// The view with as much room at the left as its coordinates take.
CView FitView(const TScene& scene, const TSize& size, bool bGeographic, EDIST_UNITS units)
{
    constexpr double kUsual = 80.0, kBeside = 14.0, kMostShare = 0.25;
    const auto viewWith = [&](double dMargin) {
        const TBox box = BoxForDrawing(size, dMargin);
        return scene.m_bWindow ? CView::OfWindow(*scene.m_Extent, box, bGeographic)
                               : CView(*scene.m_Extent, box, bGeographic);
    };
    const CView first = viewWith(kUsual);
    return viewWith(std::min(CGrid(first, units).GetTextWidth() + kBeside, size.m_nWidth * kMostShare));
}

/// What follows is cut at the rim of the box, up to EndClip.
void BeginClip(std::string& out, const TBox& box)
{
    out += fmt::format("<svg x=\"{0:.2f}\" y=\"{1:.2f}\" width=\"{2:.2f}\" height=\"{3:.2f}\" "
                       "viewBox=\"{0:.2f} {1:.2f} {2:.2f} {3:.2f}\" overflow=\"hidden\">\n",
                       box.m_dLeft, box.m_dTop, box.GetWidth(), box.GetHeight());
}

void EndClip(std::string& out)
{
    out += "</svg>\n";
}

} // namespace

namespace Cli {

TPicture DrawPicture(const TScene& scene, const CIEData& job, const std::string& strTitle,
                     const TPictureOptions& options)
{
    constexpr double kMargin = 24.0;
    TPicture picture;
    std::string& out = picture.m_strSvg;
    AppendHead(out, options.m_Size, strTitle);
    AppendTitle(out, options.m_Size, strTitle, DatasetsOf(job, scene));
    double dLeft = kMargin;
    if (scene.m_Extent) {
        const bool bGeographic = job.GetJobInfo()->GetCSType() == TIEJobInfo::Geographic;
        const EDIST_UNITS units = job.GetJobInfo()->GetDistUnits();
        const CView view = FitView(scene, options.m_Size, bGeographic, units);
        const CGrid grid(view, units);
        grid.Append(out);
        const CDrawing drawing(scene, view, options.m_bLabels);
        if (scene.m_bWindow)
            BeginClip(out, view.GetBox());
        drawing.Append(out);
        if (scene.m_bWindow)
            EndClip(out);
        picture.m_Remarks = drawing.GetRemarks();
        AppendBox(out, view.GetBox(), kFrame);
        AppendScaleBar(out, view, units, grid.GetStepText());
        AppendNorthArrow(out, options.m_Size);
        dLeft = view.GetBox().m_dLeft;
    } else {
        const TBox box = BoxForDrawing(options.m_Size, kMargin);
        AppendBox(out, box, kFrame);
        AppendText(out, {(box.m_dLeft + box.m_dRight) / 2, (box.m_dTop + box.m_dBottom) / 2}, "nothing",
                   EAnchor::Middle, "Nothing to draw");
        picture.m_bNothing = true;
    }
    AddOmissions(scene, picture.m_Remarks);
    AppendLegend(out, options.m_Size, scene);
    if (!picture.m_Remarks.empty())
        AppendFootLine(out, options.m_Size, dLeft, fmt::format("{}", fmt::join(picture.m_Remarks, "; ")));
    out += "</svg>\n";
    return picture;
}

} // namespace Cli
