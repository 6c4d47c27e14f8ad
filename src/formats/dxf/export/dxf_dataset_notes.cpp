#include "alidade/vellumlib/utils.h"
#include "formats/dxf/export/dxf_note_words.h"
#include "formats/dxf/export/dxf_notes.h"

using namespace DXFNoteWords;

void CDXFNotes::NoteUnwantedObjects(const CIEDataset& dataset)
{
    for (int i = 0; const CIEObject* const pObject = dataset.GetObjectAt(i); ++i)
        Add(TIENote::LeftOut, EIENote::ObjectKind, pObject->GetName(),
            "the settings ask for none of points, lines and polygons");
}

void CDXFNotes::LookThrough(const CIEDataset& dataset)
{
    int nPatterns = 0;
    bool bNames = false;
    bool bAttributes = false;
    bool bArcs = false;
    for (int i = 0; const CIEObject* const pObject = dataset.GetObjectAt(i); ++i) {
        nPatterns += pObject->GetStateType() == CIEObject::InBlock;
        bNames = bNames || !pObject->GetName().empty();
        bArcs = bArcs || pObject->GetType() == EIEObjectsType::Arc;
        for (int k = 0; const CIECodeValues* const pCode = pObject->GetCode(k); ++k)
            bAttributes = bAttributes || pCode->GetDescription()->GetSize() > 0;
        if (m_bCodes)
            ++m_Blocks[BlockName(pObject->GetName())];
    }
    if (nPatterns > 0)
        Add(TIENote::Changed, EIENote::JobBlockPatterns, {},
            IEUtils::IntToString(nPatterns) +
                " objects are parts of the definitions of blocks, and go out as if they lay on the ground");
    if (bArcs && m_ePlaneUnits == EDIST_UNITS::None)
        Add(TIENote::Changed, EIENote::JobGeographicArcs, {},
            "the radius of an arc goes out as a length, around a place in degrees; only this program reads that back");
    if (bNames && !m_bCodes)
        Add(TIENote::LeftOut, EIENote::JobName, {},
            "a name is a text beside its object, and the object is read back without it");
    if (bAttributes && !m_Job.GetSettings().m_bSingleFile)
        Add(TIENote::Changed, EIENote::JobAttributeCodes, {},
            "in a file for each dataset attributes go out without the names of their codes, and are read back as ones "
            "of a code named after the file");
}

/// A drawing's line in space says so by a flag, which isn't written.
void CDXFNotes::NoteFlatLines(const CIEDataset& dataset)
{
    for (int i = 0; const CIEObject* const pObject = dataset.GetObjectAt(i); ++i) {
        const CIEStation* const pFirst = pObject->GetStation(0);
        if (pObject->GetGroupType() != CIEObject::LineLike || !pFirst)
            continue;
        for (int k = 1; const CIEStation* const pStation = pObject->GetStation(k); ++k) {
            if (pStation->GetHeight() == pFirst->GetHeight())
                continue;
            Add(TIENote::Changed, EIENote::JobFlatLines, {},
                "programs that keep to the rules show lines and polygons at one height, \"" + pObject->GetName() +
                    "\" among them; the heights stand in the vertices");
            return;
        }
    }
}

/// Objects that don't say themselves how they are drawn go out as their first code says, as far as that goes.
void CDXFNotes::NoteCodeDrawing(const CIEDataset& dataset)
{
    enum EDrawn : unsigned { DrawnPoint = 1, DrawnArc = 2, DrawnArea = 4 };
    std::unordered_map<const CIECodeDescription*, unsigned> drawn;
    for (int i = 0; const CIEObject* const pObject = dataset.GetObjectAt(i); ++i) {
        const CIECodeValues* const pCode = pObject->GetCode(0);
        if (!pCode || pObject->GetDrawProperties())
            continue;
        if (pObject->GetGroupType() == CIEObject::PointLike)
            drawn[pCode->GetDescription()] |= DrawnPoint;
        else if (pObject->GetType() == EIEObjectsType::Arc)
            drawn[pCode->GetDescription()] |= DrawnArc;
        else if (pObject->GetType() == EIEObjectsType::Polygon)
            drawn[pCode->GetDescription()] |= DrawnArea;
    }
    for (int i = 0; const CIECodeDescription* const pCode = m_Job.GetIEDataDictionary()->GetCodeDescriptionAt(i); ++i) {
        const auto found = drawn.find(pCode);
        const unsigned nDrawn = found != drawn.end() ? found->second : 0;
        CReasons reasons;
        reasons.Add((nDrawn & DrawnPoint) && HasMarkStyle(pCode->GetDrawProperties(CIEDrawProperties::Points)),
                    "the symbol of its points is left out");
        reasons.Add((nDrawn & DrawnArc) && HasWidth(pCode->GetDrawProperties(CIEDrawProperties::Lines)),
                    "the width of its lines is left out of arcs");
        reasons.Add((nDrawn & DrawnArea) && pCode->GetDrawProperties(CIEDrawProperties::Areas),
                    "what it says of areas is left out, and they are drawn as its lines");
        if (!reasons.Get().empty())
            Add(TIENote::LeftOut, EIENote::JobCodeDrawing, pCode->GetName(), reasons.Get());
    }
}

void CDXFNotes::NoteSurfaces(const CIEDataset& dataset, bool bWanted)
{
    int nFaces = 0;
    for (int i = 0; const CIESurface* const pSurface = dataset.GetSurfaceAt(i); ++i) {
        if (bWanted)
            nFaces += NoteTriangles(*pSurface) > 0;
        else
            Add(TIENote::LeftOut, EIENote::ObjectKind, pSurface->GetName(), "the settings ask for no surfaces");
    }
    if (nFaces > 0)
        Add(TIENote::Changed, EIENote::JobSurfaces, {},
            "a surface goes out as faces without its name; all faces are read back as one surface, three positions for "
            "each of them");
    if (nFaces > 0 && m_ePlaneUnits == EDIST_UNITS::None && m_eUnits != EDIST_UNITS::Meters)
        Add(TIENote::Changed, EIENote::JobGeographicSurfaces, {},
            "the degrees of a surface's corners go out as if they were metres, in the job's units, and don't lie where "
            "all else does; only this program reads them back");
}

/// Whether one of its other corners lies over or under the first, which a reader takes for a face's spare one.
bool CDXFNotes::IsStanding(const CIESurface& surface, const CIETriangle& triangle) const
{
    const CIEStation& first = *surface.GetPositionAt(triangle.GetPosition(0));
    for (int k = 1; k < CIETriangle::kCorners; ++k) {
        const CIEStation& corner = *surface.GetPositionAt(triangle.GetPosition(k));
        const bool bLevel = IsOneNumber(first.GetHeight(), corner.GetHeight(), 0.0, m_eUnits);
        if (!bLevel && IsOneNumber(first.m_dNorth, corner.m_dNorth, 0.0, m_eUnits) &&
            IsOneNumber(first.m_dEast, corner.m_dEast, 0.0, m_eUnits))
            return true;
    }
    return false;
}

int CDXFNotes::NoteTriangles(const CIESurface& surface)
{
    int nBroken = 0;
    int nStanding = 0;
    bool bNumbers = true;
    for (int j = 0; const CIETriangle* const pTriangle = surface.GetTriangleAt(j); ++j) {
        bool bWhole = true;
        bool bNear = true;
        for (int k = 0; k < CIETriangle::kCorners; ++k) {
            const CIEStation* const pCorner = surface.GetPositionAt(pTriangle->GetPosition(k));
            bWhole = bWhole && pCorner;
            bNear = bNear &&
                    (!pCorner || ArePlaceNumbers(pCorner->m_dNorth, pCorner->m_dEast, pCorner->GetHeight(), m_eUnits));
        }
        nBroken += !bWhole;
        nStanding += bWhole && IsStanding(surface, *pTriangle);
        bNumbers = bNumbers && (bNear || !bWhole);
    }
    const CString& strName = surface.GetName();
    if (surface.GetNumberOfTriangles() == 0)
        Add(TIENote::LeftOut, EIENote::SurfaceTriangles, strName, "it has no triangles, and nothing of it goes out");
    if (nBroken > 0)
        Add(TIENote::LeftOut, EIENote::SurfaceTriangles, strName,
            IEUtils::IntToString(nBroken) + " of its triangles have corners that it has no position for");
    if (nStanding > 0)
        Add(TIENote::Changed, EIENote::SurfaceStanding, strName,
            IEUtils::IntToString(nStanding) +
                " of its triangles have a corner over their first one, which is read back as the first one again");
    if (!bNumbers)
        AddTooLarge(EIENote::SurfaceCoordinates, strName);
    return surface.GetNumberOfTriangles() - nBroken;
}
