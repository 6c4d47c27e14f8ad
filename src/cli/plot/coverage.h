// Which cells of the sheet are taken.
#pragma once

#include "cli/plot/svg.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <vector>

namespace Cli {

/// Square cells over a box of the sheet. Places outside count to the cells at the rim.
class CCoverage {
public:
    CCoverage(const TBox& box, double dCell)
        : m_Box(box),
          m_dCell(dCell),
          m_nColumns(CellsAlong(box.GetWidth(), dCell)),
          m_nRows(CellsAlong(box.GetHeight(), dCell)),
          m_Taken(m_nColumns * m_nRows)
    {
    }

    void Clear() { m_Taken.assign(m_Taken.size(), false); }
    [[nodiscard]] std::size_t GetNumberOfCells() const { return m_Taken.size(); }
    [[nodiscard]] std::size_t GetCell(const TPixel& pixel) const
    {
        return RowOf(pixel.m_dY) * m_nColumns + ColumnOf(pixel.m_dX);
    }
    /// Takes the cell of a place. False if it was taken already.
    bool Take(const TPixel& pixel)
    {
        auto taken = m_Taken[GetCell(pixel)];
        const bool bNew = !taken;
        taken = true;
        return bNew;
    }
    /// Takes the cells along a straight. False if all were taken already.
    bool TakeLine(const TPixel& from, const TPixel& to)
    {
        const double dLonger = std::max(std::abs(to.m_dX - from.m_dX), std::abs(to.m_dY - from.m_dY));
        const auto nSteps = static_cast<std::size_t>(std::ceil(dLonger / m_dCell)) + 1;
        bool bNew = false;
        for (std::size_t i = 0; i <= nSteps; ++i) {
            const double dShare = static_cast<double>(i) / static_cast<double>(nSteps);
            bNew =
                Take({from.m_dX + (to.m_dX - from.m_dX) * dShare, from.m_dY + (to.m_dY - from.m_dY) * dShare}) || bNew;
        }
        return bNew;
    }

    [[nodiscard]] bool IsFree(const TBox& box) const
    {
        for (std::size_t nRow = RowOf(box.m_dTop); nRow <= RowOf(box.m_dBottom); ++nRow) {
            for (std::size_t nColumn = ColumnOf(box.m_dLeft); nColumn <= ColumnOf(box.m_dRight); ++nColumn) {
                if (m_Taken[nRow * m_nColumns + nColumn])
                    return false;
            }
        }
        return true;
    }
    void TakeBox(const TBox& box)
    {
        for (std::size_t nRow = RowOf(box.m_dTop); nRow <= RowOf(box.m_dBottom); ++nRow) {
            for (std::size_t nColumn = ColumnOf(box.m_dLeft); nColumn <= ColumnOf(box.m_dRight); ++nColumn)
                m_Taken[nRow * m_nColumns + nColumn] = true;
        }
    }

private:
    static std::size_t CellsAlong(double dLength, double dCell)
    {
        return static_cast<std::size_t>(std::max(dLength, 0.0) / dCell) + 1;
    }
    [[nodiscard]] std::size_t ColumnOf(double dX) const { return Cut((dX - m_Box.m_dLeft) / m_dCell, m_nColumns); }
    [[nodiscard]] std::size_t RowOf(double dY) const { return Cut((dY - m_Box.m_dTop) / m_dCell, m_nRows); }
    static std::size_t Cut(double dCell, std::size_t nCells)
    {
        return static_cast<std::size_t>(std::clamp(dCell, 0.0, static_cast<double>(nCells - 1)));
    }
    TBox m_Box;
    double m_dCell;
    std::size_t m_nColumns;
    std::size_t m_nRows;
    std::vector<bool> m_Taken;
};

} // namespace Cli
