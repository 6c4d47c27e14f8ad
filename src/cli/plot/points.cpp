#include "cli/plot/points.h"

#include "cli/plot/coverage.h"
#include "cli/plot/thinning.h"

#include <algorithm>

namespace {

using namespace Cli;

/// Keeps of each style that is too dense the first mark of each cell. False if that is still too much.
bool Thin(const TScene& scene, const CView& view, const TShares& shares, double dCell,
          std::vector<std::vector<std::size_t>>& marks)
{
    CCoverage coverage(view.GetBox(), dCell);
    const bool bShareCells = shares.m_Order.size() - shares.m_nWhole > kOwnCells;
    std::size_t nLeft = shares.m_nLeft;
    std::vector<std::vector<std::size_t>> kept(shares.m_Order.size());
    for (std::size_t k = shares.m_nWhole; k < shares.m_Order.size(); ++k) {
        if (!bShareCells)
            coverage.Clear();
        for (const std::size_t i : marks[shares.m_Order[k]]) {
            if (!coverage.Take(view.ToPixel(scene.m_Marks[i].m_Place)))
                continue;
            if (nLeft == 0)
                return false;
            --nLeft;
            kept[k].push_back(i);
        }
    }
    for (std::size_t k = shares.m_nWhole; k < shares.m_Order.size(); ++k)
        marks[shares.m_Order[k]] = std::move(kept[k]);
    return true;
}

void AppendDot(std::string& path, const TPixel& pixel)
{
    path += 'M';
    AppendPixels(path, pixel.m_dX);
    path += ' ';
    AppendPixels(path, pixel.m_dY);
    path += "h0";
}

} // namespace

namespace Cli {

TMarkPaths DrawMarks(const TScene& scene, const CView& view)
{
    constexpr double kFirstCell = 0.5, kDense = 0.75; // of a cell, so that full cells look full
    constexpr double kLarge = 4.0, kMiddle = 3.0, kSmall = 2.0;
    constexpr std::size_t kSome = 6000, kRareShare = 20;
    TMarkPaths paths;
    std::vector<std::vector<std::size_t>> marks(scene.m_Styles.GetStyles().size());
    for (std::size_t i = 0; i < scene.m_Marks.size(); ++i)
        marks[static_cast<std::size_t>(scene.m_Styles.GetDrawn(scene.m_Marks[i].m_nStyle))].push_back(i);
    std::vector<std::size_t> needs;
    for (const std::vector<std::size_t>& row : marks) {
        needs.push_back(row.size());
        const bool bRare = scene.m_Marks.size() > kFewMarks && row.size() * kRareShare <= scene.m_Marks.size();
        paths.m_Sizes.push_back(bRare ? kLarge : 0.0);
        paths.m_Rare.push_back(bRare);
    }
    const TShares shares = ShareOut(needs, kMostMarks);
    double dCell = 0.0;
    if (!shares.IsEnough()) { // it ends, because in the end the sheet has a single cell
        dCell = FirstCell(kFirstCell, view.GetBox().GetWidth() * view.GetBox().GetHeight());
        while (!Thin(scene, view, shares, dCell, marks))
            dCell *= kCellGrowth;
    }
    for (const std::size_t nStyle : shares.m_Order)
        paths.m_Shown.insert(paths.m_Shown.end(), marks[nStyle].begin(), marks[nStyle].end());
    const std::size_t nShown = paths.m_Shown.size();
    const double dUsual = nShown <= kFewMarks ? kLarge : nShown <= kSome ? kMiddle : kSmall;
    paths.m_Paths.resize(marks.size());
    for (std::size_t nStyle = 0; nStyle < marks.size(); ++nStyle) {
        if (!paths.m_Rare[nStyle])
            paths.m_Sizes[nStyle] = std::clamp(dCell * kDense, dUsual, std::max(dUsual, kMiddle));
        for (const std::size_t i : marks[nStyle])
            AppendDot(paths.m_Paths[nStyle], view.ToPixel(scene.m_Marks[i].m_Place));
    }
    return paths;
}

} // namespace Cli
