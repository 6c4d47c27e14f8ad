#include "cli/plot/thinning.h"

#include <algorithm>
#include <cmath>

namespace Cli {

TShares ShareOut(const std::vector<std::size_t>& needs, std::size_t nMost)
{
    TShares shares;
    for (std::size_t i = 0; i < needs.size(); ++i) {
        if (needs[i] > 0)
            shares.m_Order.push_back(i);
    }
    std::stable_sort(shares.m_Order.begin(), shares.m_Order.end(),
                     [&](std::size_t a, std::size_t b) { return needs[a] < needs[b]; });
    shares.m_Order.resize(std::min(shares.m_Order.size(), nMost));
    shares.m_nLeft = nMost;
    for (const std::size_t i : shares.m_Order) {
        if (needs[i] > shares.m_nLeft / (shares.m_Order.size() - shares.m_nWhole))
            break;
        shares.m_nLeft -= needs[i];
        ++shares.m_nWhole;
    }
    return shares;
}

double FirstCell(double dLeast, double dArea)
{
    constexpr double kMostCells = 1.6e7;
    return std::max(dLeast, std::sqrt(dArea / kMostCells));
}

} // namespace Cli
