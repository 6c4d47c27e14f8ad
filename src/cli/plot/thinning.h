// What is too much for a picture, and who gives way.
#pragma once

#include <cstddef>
#include <vector>

namespace Cli {

/// Who keeps all that it has, and who has to be thinned out, so that all together stay within a limit.
struct TShares {
    std::vector<std::size_t> m_Order; ///< indices of those that need anything, from the least need to the largest
    std::size_t m_nWhole = 0;         ///< so many at the beginning of the order keep all
    std::size_t m_nLeft = 0;          ///< what is left to the others together; at least one for each

    [[nodiscard]] bool IsEnough() const { return m_nWhole == m_Order.size(); }
};

/// The limit is shared evenly; what one doesn't need goes to the others. So something rare never gives way to something
/// dense. Of more than `nMost` only so many are served, those with the least need.
TShares ShareOut(const std::vector<std::size_t>& needs, std::size_t nMost);

/// Cells grow by so much from try to try.
constexpr double kCellGrowth = 1.2;

/// The pixels of the smallest cell that is worth a try on a sheet of that many square pixels: a large sheet doesn't
/// take all memory.
double FirstCell(double dLeast, double dArea);

/// Up to so many styles have cells of their own, so that none is hidden by another. More of them share the cells: first
/// come those with the least need.
constexpr std::size_t kOwnCells = 64;

} // namespace Cli
