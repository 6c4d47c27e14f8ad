// What of a drawing didn't come in whole, counted by kind, because a drawing has many things of few kinds.
#pragma once

#include "alidade/vellumlib/observer.h"
#include "alidade/vellumlib/types.h"

#include <array>
#include <functional>
#include <string_view>
#include <unordered_map>

class CDXFReader;

/// Counts, remembers where each kind was met first, and tells it all at the end.
class CDXFTally {
public:
    enum ELoss : int {
        Word,
        InsertAngle,
        kForemost, ///< those ahead of it put much in the wrong place, and are told first
        Invisible = kForemost,
        PaperSpace,
        InsertArray,
        EmptyInsert,
        NestedBase,
        Bulge,
        Extrusion,
        Thickness,
        TrueColor,
        ArcScale,
        FaceRecord,
        Elevation,
        Mesh,
        FourthCorner,
        BlockFace,
        NoVertex,
        NoLayer,
        LayerState,
        LineType,
        Widths,
        ByBlock,
        FaceDrawing,
        Number,
        NumberInPart,
        NotFinite,
        LongValue,
        LongName,
        CodePage,
        CodeName,
        Attribute,
        SameAttribute,
        kLosses
    };
    /// Where something stands: a line, or in binary form a byte.
    using TPlace = TIENotePlace;
    static TPlace PlaceOf(const CDXFReader& reader);
    /// A note without the file's name.
    static TIENote MakeNote(TIENote::EKind eKind, EIENote eCode, const TPlace& place, CString strReason,
                            std::int64_t nCount = 1);

    /// At the reader's last token, or at another place.
    void Count(ELoss eLoss, const CDXFReader& reader);
    void Count(ELoss eLoss, const TPlace& place);
    /// An entity that the job has nothing for, and a section.
    void CountEntity(std::string_view kind, const CDXFReader& reader) { CountByName(m_Entities, kind, reader); }
    void CountSection(std::string_view name, const CDXFReader& reader) { CountByName(m_Sections, name, reader); }

    /// Units of length, as the drawing's header numbers them.
    void SetUnits(int nUnits, const CDXFReader& reader);

    using TTell = std::function<void(const TIENote& note)>;
    /// A note for each kind, with its number, and one if the drawing's units aren't those in which it was read. The
    /// file's name is for the caller to fill in.
    void Tell(bool bPlane, EDIST_UNITS eUnits, const TTell& tell) const;

private:
    struct TCount {
        std::int64_t m_nCount = 0;
        TPlace m_First;
    };
    struct THash {
        using is_transparent = void;
        std::size_t operator()(std::string_view text) const { return std::hash<std::string_view>{}(text); }
    };
    using TCounts = std::unordered_map<CString, TCount, THash, std::equal_to<>>;

    static void CountByName(TCounts& counts, std::string_view name, const CDXFReader& reader);
    static void TellByName(const TCounts& counts, EIENote eCode, const char* pWhat, const TTell& tell);

    void TellLosses(int nFirst, int nEnd, const TTell& tell) const;
    void TellUnits(bool bPlane, EDIST_UNITS eUnits, const TTell& tell) const;

    int m_nUnits = 0; ///< 0 if the header tells none
    TPlace m_UnitsPlace;
    std::array<TCount, kLosses> m_Losses;
    TCounts m_Entities;
    TCounts m_Sections;
};
