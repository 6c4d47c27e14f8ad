// What a picture shows of a job, apart from how it is laid out on the sheet.
#pragma once

#include "cli/plot/style.h"
#include "vellumlib/data.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <vector>

namespace Cli {

/// A place on the ground: metres, or decimal degrees in a geographic job.
struct TPlace {
    double m_dNorth = 0.0;
    double m_dEast = 0.0;
};

/// The rectangle that all places of a scene lie in.
struct TExtent {
    TPlace m_Least;
    TPlace m_Most;
};

/// A point, and the object that it is named after; null for one without a label.
struct TMark {
    TPlace m_Place;
    const CIEObject* m_pObject = nullptr;
    int m_nStyle = 0;
};

/// A line or an area: a row of the scene's places. An area closes by itself.
struct TLine {
    std::size_t m_nFirst = 0;
    std::size_t m_nCount = 0;
    int m_nStyle = 0;
    bool m_bArea = false;
};

/// An arc around a centre, from its start angle on, from east towards north. In degrees a circle on the ground is
/// wider than it is high, so there are two radii.
struct TArc {
    TPlace m_Center;
    TPlace m_Radius;
    double m_dStart = 0.0; ///< degrees
    double m_dSweep = 0.0; ///< degrees, above 0 up to 360
    int m_nStyle = 0;

    /// The place at an angle in degrees.
    [[nodiscard]] TPlace At(double dAngle) const;
};

/// Two of the scene's places, an edge of a surface.
struct TEdge {
    std::uint32_t m_nFrom = 0;
    std::uint32_t m_nTo = 0;

    auto operator<=>(const TEdge&) const = default;
};

/// A name that stands at a place without a mark of its own.
struct TTitle {
    TPlace m_Place;
    CString m_strText;
};

/// What lies on one layer, or on none.
struct TLayerCount {
    enum EKind : std::size_t { Points = 0, Lines, Polygons, Arcs, Others, Parts, Surfaces, Alignments, Kinds };
    const CIELayer* m_pLayer = nullptr; ///< null for what has no layer
    bool m_bDrawn = true;               ///< false for a layer that is off
    std::array<int, Kinds> m_Counts{};
    std::optional<TIEColor> m_Color; ///< of the first object that was met
};

struct TScene {
    std::vector<TMark> m_Marks;
    std::vector<TPlace> m_Places;
    std::vector<TLine> m_Lines;
    std::vector<TArc> m_Arcs;
    std::vector<TEdge> m_Edges; ///< sorted, each once
    std::vector<TTitle> m_Titles;
    CStyleTable m_Styles;
    std::deque<TLayerCount> m_Layers; ///< in the order of the job; what has no layer comes last
    std::optional<TExtent> m_Extent;  ///< of what is drawn; nothing where nothing is
    int m_nPatterns = 0;              ///< objects of blocks
    int m_nRelative = 0;              ///< points whose coordinates count along and off a line
    int m_nOffEarth = 0;              ///< objects with coordinates that no place has
    int m_nTrianglesLeftOut = 0;      ///< triangles that lack a corner, or have one that no place has
    int m_nRoadsWithoutPlace = 0;     ///< alignments of which nothing tells where they lie
    int m_nRoadsInPart = 0;           ///< alignments with elements that can't be followed
};

constexpr TIEColor kSurfaceColor = 0x9CB08C;
constexpr TIEColor kRoadColor = 0xB03030;

/// What is asked for.
struct TSceneOptions {
    std::optional<std::vector<const CIELayer*>> m_Layers; ///< these alone, even if they are off; null is no layer
};

/// Takes from a job what is to be drawn. Objects of blocks aren't, because they are patterns; nor is what lies on a
/// layer that is off. The scene points into the job.
TScene MakeScene(const CIEData& job, const TSceneOptions& options);

/// A degree of latitude in metres, about.
constexpr double kMetersOfDegree = 111320.0;
/// A degree of longitude against one of latitude.
double ShrinkOfEast(double dLatitude);

} // namespace Cli
