#include "formats/dxf/import/dxf_tally.h"

#include "alidade/formats/dxf/import/dxf_reader.h"
#include "alidade/vellumlib/utils.h"

#include <algorithm>

namespace {

/// More kinds than any drawing has; the rest of them is counted as one.
constexpr std::size_t kMostKinds = 200;
constexpr std::string_view kOthers = "others";

struct TLossWords {
    TIENote::EKind m_eKind;
    EIENote m_eCode;
    const char* m_pReason; ///< behind the number
};
constexpr TLossWords kWords[CDXFTally::kLosses] = {
    {TIENote::Changed, EIENote::DrawingWord,
     " values that are words of the form began an entity or ended a part of the drawing"},
    {TIENote::Changed, EIENote::DrawingInsertAngle, " block references have an angle; their copies aren't turned"},
    {TIENote::LeftOut, EIENote::DrawingInvisible, " things of the drawing are invisible and were left out"},
    {TIENote::LeftOut, EIENote::DrawingPaperSpace, " things of the drawing are in paper space and were left out"},
    {TIENote::LeftOut, EIENote::DrawingInsertArray,
     " block references have rows or columns; only one copy of each was made"},
    {TIENote::LeftOut, EIENote::DrawingInsertEmpty,
     " references are to a block of which nothing came in ahead of them; they and their attributes are lost"},
    {TIENote::Changed, EIENote::DrawingNestedBase,
     " references within a block aren't told relative to that block's base point, which isn't 0"},
    {TIENote::Changed, EIENote::DrawingBulge, " segments of polylines are arcs in the drawing and straight in the job"},
    {TIENote::Changed, EIENote::DrawingExtrusion,
     " entities tell their coordinates in a plane of their own, and were taken as if it were level"},
    {TIENote::LeftOut, EIENote::DrawingThickness,
     " things of the drawing have a thickness, which the job has nothing for"},
    {TIENote::Changed, EIENote::DrawingTrueColor,
     " things of the drawing have a colour beyond the 256, and have one of these in the job, or none"},
    {TIENote::Changed, EIENote::DrawingArcScale,
     " arcs of blocks are parts of ellipses in the drawing, by scales that differ; the job has arcs of circles"},
    {TIENote::Changed, EIENote::DrawingFaceRecord,
     " vertices of meshes are lists of corners; the job has stations where they say they lie, mostly at 0"},
    {TIENote::Changed, EIENote::DrawingElevation, " lightweight polylines have an elevation, and height 0 in the job"},
    {TIENote::Changed, EIENote::DrawingMesh,
     " polylines are meshes or curves; the job has lines through their vertices"},
    {TIENote::LeftOut, EIENote::DrawingFourthCorner,
     " faces have four corners; the job has a triangle of three of them"},
    {TIENote::Changed, EIENote::DrawingBlockFace,
     " faces are part of a block; they lie in the job as the block has them, and references don't copy them"},
    {TIENote::Changed, EIENote::DrawingNoVertex, " polylines have no vertex"},
    {TIENote::LeftOut, EIENote::DrawingNoLayer,
     " objects are on layers that the drawing doesn't describe, and have none"},
    {TIENote::Changed, EIENote::DrawingLayerState,
     " layers are frozen, or aren't to be plotted, in a way that doesn't come in"},
    {TIENote::Changed, EIENote::DrawingLineType,
     " layers or entities have a line type that isn't one of the ordinary ones; the job has the nearest of these"},
    {TIENote::Changed, EIENote::DrawingWidths,
     " polylines have segments of different widths; the job has one width for each of them, or none"},
    {TIENote::LeftOut, EIENote::DrawingByBlock,
     " block references have a colour, a line type or a weight for parts of their block; the copies lack it"},
    {TIENote::LeftOut, EIENote::DrawingFaceDrawing,
     " faces have a layer or a colour, which the job's surfaces have nothing for"},
    {TIENote::Changed, EIENote::DrawingNumber, " values aren't numbers and were read as 0"},
    {TIENote::Changed, EIENote::DrawingNumberPart, " values are numbers only at their start, which was taken"},
    {TIENote::Changed, EIENote::DrawingNotFinite,
     " values aren't finite; they were read as 0 where the object could do without them"},
    {TIENote::Changed, EIENote::DrawingLongValue, " values have more than 2049 bytes; their start was read"},
    {TIENote::Changed, EIENote::DrawingLongName, " names of blocks have more than 255 bytes; their start was read"},
    {TIENote::Changed, EIENote::DrawingCodePage,
     " names of code pages aren't known; the one of the settings was taken"},
    {TIENote::LeftOut, EIENote::DrawingCodeName,
     " attributes are of a code without a name, or have no name themselves"},
    {TIENote::LeftOut, EIENote::DrawingAttributes,
     " attributes are beyond the most that a block reference can have, or that are kept of codes with as many"},
    {TIENote::LeftOut, EIENote::DrawingSameAttribute,
     " attributes have the name of a later one of their block reference, whose value the job has"},
};

/// Units of length by their number in a header.
struct TUnits {
    int m_nNumber;
    const char* m_pName;
    EDIST_UNITS m_eUnits = EDIST_UNITS::None; ///< None where a job can't have them
    EDIST_UNITS m_eAlso = EDIST_UNITS::None;  ///< many drawings don't tell one foot from the other
};
constexpr TUnits kDrawingUnits[] = {
    {1, "inches", EDIST_UNITS::InternationalInches, EDIST_UNITS::USInches},
    {2, "feet", EDIST_UNITS::InternationalFeet, EDIST_UNITS::USSurveyFeet},
    {3, "miles", EDIST_UNITS::USMiles},
    {4, "millimetres"},
    {5, "centimetres"},
    {6, "metres", EDIST_UNITS::Meters},
    {7, "kilometres"},
    {8, "microinches"},
    {9, "mils"},
    {10, "yards"},
    {11, "angstroms"},
    {12, "nanometres"},
    {13, "microns"},
    {14, "decimetres"},
    {15, "decametres"},
    {16, "hectometres"},
    {17, "gigametres"},
    {18, "astronomical units"},
    {19, "light years"},
    {20, "parsecs"},
    {21, "US survey feet", EDIST_UNITS::USSurveyFeet},
    {22, "US survey inches", EDIST_UNITS::USInches},
    {23, "US survey yards"},
    {24, "US survey miles", EDIST_UNITS::USMiles},
};

} // namespace

TIENote CDXFTally::MakeNote(TIENote::EKind eKind, EIENote eCode, const TPlace& place, CString strReason,
                            std::int64_t nCount)
{
    TIENote note;
    note.m_eKind = eKind;
    note.m_eCode = eCode;
    note.m_Place = place;
    note.m_nCount = nCount;
    note.m_strReason = std::move(strReason);
    return note;
}

CDXFTally::TPlace CDXFTally::PlaceOf(const CDXFReader& reader)
{
    return {reader.GetLineNumber(), reader.IsBinary() ? reader.GetOffset() : -1};
}

void CDXFTally::Count(ELoss eLoss, const CDXFReader& reader)
{
    Count(eLoss, PlaceOf(reader));
}

void CDXFTally::Count(ELoss eLoss, const TPlace& place)
{
    TCount& count = m_Losses[static_cast<std::size_t>(eLoss)];
    if (count.m_nCount++ == 0)
        count.m_First = place;
}

void CDXFTally::CountByName(TCounts& counts, std::string_view name, const CDXFReader& reader)
{
    auto found = counts.find(name);
    if (found == counts.end())
        found = counts.try_emplace(CString(counts.size() < kMostKinds ? name : kOthers)).first;
    if (found->second.m_nCount++ == 0)
        found->second.m_First = PlaceOf(reader);
}

void CDXFTally::TellByName(const TCounts& counts, EIENote eCode, const char* pWhat, const TTell& tell)
{
    std::vector<const TCounts::value_type*> inOrder;
    for (const auto& count : counts)
        inOrder.push_back(&count);
    std::sort(inOrder.begin(), inOrder.end(), [](const auto* pLeft, const auto* pRight) {
        const TPlace &left = pLeft->second.m_First, &right = pRight->second.m_First;
        return std::pair(left.m_nLine, left.m_nOffset) < std::pair(right.m_nLine, right.m_nOffset);
    });
    for (const auto* const pCount : inOrder) {
        TIENote note = MakeNote(TIENote::LeftOut, eCode, pCount->second.m_First,
                                IEUtils::IntToString(pCount->second.m_nCount) + " " + pCount->first + pWhat,
                                pCount->second.m_nCount);
        note.m_strRecord = pCount->first;
        tell(note);
    }
}

void CDXFTally::SetUnits(int nUnits, const CDXFReader& reader)
{
    m_nUnits = nUnits;
    m_UnitsPlace = PlaceOf(reader);
}

/// Many programs write units that nobody has chosen, so those in which the drawing is read are the ones that count.
void CDXFTally::TellUnits(bool bPlane, EDIST_UNITS eUnits, const TTell& tell) const
{
    const auto* const pUnits = std::find_if(std::begin(kDrawingUnits), std::end(kDrawingUnits),
                                            [this](const TUnits& units) { return units.m_nNumber == m_nUnits; });
    if (pUnits == std::end(kDrawingUnits) || (bPlane && (eUnits == pUnits->m_eUnits || eUnits == pUnits->m_eAlso)))
        return;
    tell(MakeNote(TIENote::Changed, EIENote::DrawingUnits, m_UnitsPlace,
                  CString("the drawing says that its units are ") + pUnits->m_pName +
                      (bPlane ? "; its numbers were read in the job's units, which are others"
                              : "; X and Y were read as degrees")));
}

void CDXFTally::Tell(bool bPlane, EDIST_UNITS eUnits, const TTell& tell) const
{
    TellLosses(0, kForemost, tell);
    TellUnits(bPlane, eUnits, tell);
    TellByName(m_Entities, EIENote::DrawingEntity, " entities were left out", tell);
    TellByName(m_Sections, EIENote::DrawingSection, " sections were left out", tell);
    TellLosses(kForemost, kLosses, tell);
}

void CDXFTally::TellLosses(int nFirst, int nEnd, const TTell& tell) const
{
    for (auto i = static_cast<std::size_t>(nFirst); i < static_cast<std::size_t>(nEnd); ++i) {
        if (m_Losses[i].m_nCount > 0)
            tell(MakeNote(kWords[i].m_eKind, kWords[i].m_eCode, m_Losses[i].m_First,
                          IEUtils::IntToString(m_Losses[i].m_nCount) + kWords[i].m_pReason, m_Losses[i].m_nCount));
    }
}
