// What a job holds, in numbers.
#pragma once

#include "alidade/vellumlib/data.h"

#include <optional>
#include <string>

namespace Cli {

struct TRange {
    double m_dLeast;
    double m_dMost;
};

/// Counts of a dataset, and the room that its stations take. All but the first two leave out the objects of blocks,
/// which are patterns and not on the ground.
struct TContent {
    int m_nElements = 0; ///< objects of every kind
    int m_nInBlocks = 0; ///< those of blocks among them
    int m_nPoints = 0;
    int m_nLines = 0;
    int m_nPolygons = 0;
    int m_nArcs = 0;
    int m_nComposites = 0;
    int m_nSurfaces = 0;
    int m_nAlignments = 0;
    int m_nHistoryTables = 0;
    int m_nStations = 0;
    /// Metres, or decimal degrees in a geographic job.
    std::optional<TRange> m_North;
    std::optional<TRange> m_East;
    std::optional<TRange> m_Height; ///< metres; nothing where no station has a height
};

TContent LookInto(const CIEDataset& dataset);

/// Whether a dataset holds anything, be it only within blocks.
bool HasContent(const CIEData& job);

/// "310 points, 12 lines, 1 surface" for the whole job; "nothing" for an empty one.
std::string DescribeContent(const CIEData& job);

} // namespace Cli
