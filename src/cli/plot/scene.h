// What a picture shows of a job, apart from how it is laid out on the sheet.
#pragma once

#include "alidade/vellumlib/data.h"
#include "cli/plot/arc.h"
#include "cli/plot/place.h"
#include "cli/plot/style.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <vector>

namespace Cli {

/// A point, and the object that it is named after; null for one without a label.
struct TMark {
    TPlace m_Place;
    const CIEObject* m_pObject = nullptr;
    int m_nStyle = 0;
};

/// A line or an area: a row of the scene's places. An area closes by itself. Of a line that a window cuts, several rows
/// may be left.
struct TLine {
    std::size_t m_nFirst = 0;
    std::size_t m_nCount = 0;
    int m_nStyle = 0;
    bool m_bArea = false;
    bool m_bContinued = false; ///< the same object as the row before
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
    enum class EState { Drawn, Off, NotAsked };
    const CIELayer* m_pLayer = nullptr; ///< null for what has no layer
    EState m_eState = EState::Drawn;
    std::array<int, Kinds> m_Counts{};    ///< of a layer that is drawn, what lies in the window
    TStyle m_Sample;                      ///< how most of it looks; the layer's own colour, if anything has it
    std::optional<TIEColor> m_OtherColor; ///< that of most of it, if that isn't the sample's

    [[nodiscard]] bool IsDrawn() const { return m_eState == EState::Drawn; }
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
    std::optional<TExtent> m_Extent;  ///< of what is drawn; the window, if there is one; nothing where nothing is
    bool m_bWindow = false;           ///< the extent is a window, and nothing beyond it is to be seen
    int m_nPatterns = 0;              ///< objects of blocks
    int m_nOutside = 0;               ///< objects that lie outside the window
    int m_nRelative = 0;              ///< points whose coordinates count along and off a line
    int m_nOffEarth = 0;              ///< objects with coordinates that no place has
    int m_nTrianglesLeftOut = 0;      ///< triangles that lack a corner, or have one that no place has
    int m_nRoadsWithoutPlace = 0;     ///< alignments of which nothing tells where they lie
    int m_nRoadsInPart = 0;           ///< alignments with elements that can't be followed
};

constexpr TIEColor kSurfaceColor = ColorFromRGB(0x9CB08C);
constexpr TIEColor kRoadColor = ColorFromRGB(0xB03030);
constexpr TIEColor kEmptyLayerColor = 0x808080; ///< of layers without a colour of which nothing is drawn

/// What is asked for.
struct TSceneOptions {
    std::optional<std::vector<const CIELayer*>> m_Layers; ///< these alone, even if they are off; null is no layer
    std::optional<TExtent> m_Window;                      ///< this part of the ground alone
};

/// Takes from a job what is to be drawn. Objects of blocks aren't, because they are patterns; nor is what lies on a
/// layer that is off, or outside the window. The scene points into the job.
TScene MakeScene(const CIEData& job, const TSceneOptions& options);

/// A degree of latitude in metres, about.
constexpr double kMetersOfDegree = 111320.0;
/// A degree of longitude against one of latitude.
double ShrinkOfEast(double dLatitude);

} // namespace Cli
