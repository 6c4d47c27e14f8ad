// The part of a scene that lies in a window.
#pragma once

#include "cli/plot/scene.h"

namespace Cli {

enum class EFate { Drawn, NoPlace, Outside };

/// False for coordinates that no place has.
bool IsPlace(const TPlace& place);

/// Adds to a scene what lies in its window, cut to it, and widens the scene's extent. Without a window it adds all.
class CCutter {
public:
    CCutter(TScene& scene, const std::optional<TExtent>& window);

    EFate AddMark(const TPlace& place, const CIEObject* pObject, const TStyle& style);
    EFate AddRow(const std::vector<TPlace>& places, const TStyle& style, bool bArea);
    EFate AddArc(const TArc& arc, const TStyle& style);
    /// Of two of the scene's places. What the window cuts gets places of its own.
    EFate AddEdge(std::size_t nFrom, std::size_t nTo);
    [[nodiscard]] bool IsInside(const TPlace& place) const { return !m_Window || m_Window->Has(place); }
    /// To be called in the end: the window is the extent of what lies in it.
    void Finish();

private:
    void AddPiece(const std::vector<TPlace>& places, const TStyle& style, bool bArea, bool bContinued);
    void Widen(const TExtent& extent);

    TScene& m_Scene;
    std::optional<TExtent> m_Window;
    TExtent m_Room; ///< the window with some air, so that the rim of what is cut isn't seen
};

} // namespace Cli
