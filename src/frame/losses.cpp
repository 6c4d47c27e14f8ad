// What a form can't hold is told to the host, object by object. Nothing here runs without an observer.

#include "frame/exporter.h"
#include "frame/format_row.h"

#include <unordered_set>

namespace {

unsigned KindOf(const CIEObject& object)
{
    switch (object.GetType()) {
    case EIEObjectsType::DesignPoint:
    case EIEObjectsType::PTLPoint:
    case EIEObjectsType::GPSPosition:
    case EIEObjectsType::SheetPoint:
        return CARRIES_POINTS;
    case EIEObjectsType::PolyLine:
        return CARRIES_LINES;
    case EIEObjectsType::Polygon:
        return CARRIES_POLYGONS;
    case EIEObjectsType::Arc:
        return CARRIES_ARCS;
    case EIEObjectsType::Composite:
        break;
    }
    return CARRIES_NOTHING;
}

const char* WordFor(const CIEObject& object)
{
    switch (object.GetType()) {
    case EIEObjectsType::PTLPoint:
        return "point-to-line point";
    case EIEObjectsType::GPSPosition:
        return "GPS position";
    case EIEObjectsType::SheetPoint:
        return "sheet point";
    case EIEObjectsType::PolyLine:
        return "line";
    case EIEObjectsType::Polygon:
        return "polygon";
    case EIEObjectsType::Arc:
        return "arc";
    case EIEObjectsType::Composite:
        return "composite object";
    case EIEObjectsType::DesignPoint:
        break;
    }
    return "point";
}

bool HasAttributes(const CIEObject& object)
{
    for (int i = 0; const CIECodeValues* const pCode = object.GetCode(i); ++i) {
        for (int j = 0; j < pCode->GetNumberOfAttrs(); ++j) {
            if (!pCode->GetAttrAt(j).empty())
                return true;
        }
        if (pCode->GetNumberOfCodeStrings() > 0 || !pCode->GetControlCode(0).empty() ||
            !pCode->GetControlCode(1).empty())
            return true;
    }
    return false;
}

/// Something that stations may have, and the note for a form that doesn't hold it.
struct TStationLoss {
    unsigned m_nCarries;
    bool (*m_pHas)(const CIEStation& station);
    TIENote::EKind m_eKind;
    const char* m_pCode;
    const char* m_pReason;
};

constexpr TStationLoss kStationLosses[] = {
    {CARRIES_NOTES, [](const CIEStation& station) { return !station.GetNotes().empty(); }, TIENote::LeftOut,
     "object.notes", "the form doesn't hold the notes of this "},
    {CARRIES_UNDEFINED_HEIGHTS, [](const CIEStation& station) { return !station.IsHeightDefined(); }, TIENote::Changed,
     "object.no-height", "the form writes the height 0 for a station without a height in this "},
    {CARRIES_GEOID_HEIGHTS, [](const CIEStation& station) { return station.GetGeoidHeight() != 0.0; }, TIENote::LeftOut,
     "object.geoid-height", "the form doesn't hold the geoid height of this "},
    {CARRIES_TIME_STAMPS, [](const CIEStation& station) { return !station.GetTimeStamps().empty(); }, TIENote::LeftOut,
     "object.time-stamps", "the form doesn't hold the time stamps of this "},
};

bool HasInStations(const CIEObject& object, const TStationLoss& loss)
{
    for (int i = 0; const CIEStation* const pStation = object.GetStation(i); ++i) {
        if (loss.m_pHas(*pStation))
            return true;
    }
    return false;
}

} // namespace

void CIEExporter::Note(TIENote::EKind eKind, const char* pCode, CString strRecord, CString strReason) const
{
    if (!m_pData->GetObserver())
        return;
    TIENote note;
    note.m_eKind = eKind;
    note.m_pCode = pCode;
    note.m_strFile = m_strFileName;
    note.m_strRecord = std::move(strRecord);
    note.m_strReason = std::move(strReason);
    m_pData->Note(note);
}

void CIEExporter::NoteLosses(const CIEObject& object, unsigned nCarries) const
{
    if (!m_pData->GetObserver())
        return;
    const CString strWord = WordFor(object);
    if (!(KindOf(object) & nCarries)) {
        Note(TIENote::LeftOut, "object.kind", object.GetName(), "the form doesn't hold a " + strWord);
        return;
    }
    if (object.GetNumberOfCodes() > 0 && !(nCarries & CARRIES_CODES))
        Note(TIENote::LeftOut, "object.codes", object.GetName(), "the form doesn't hold the codes of this " + strWord);
    else if (!(nCarries & CARRIES_ATTRIBUTES) && HasAttributes(object))
        Note(TIENote::LeftOut, "object.attributes", object.GetName(),
             "the form doesn't hold all that the codes of this " + strWord + " say");
    if (object.GetLayer() && !(nCarries & CARRIES_LAYERS))
        Note(TIENote::LeftOut, "object.layer", object.GetName(),
             "the form doesn't hold the layer \"" + object.GetLayer()->GetName() + "\" of this " + strWord);
    for (const TStationLoss& loss : kStationLosses) {
        if (!(nCarries & loss.m_nCarries) && HasInStations(object, loss))
            Note(loss.m_eKind, loss.m_pCode, object.GetName(), loss.m_pReason + strWord);
    }
    const bool bSpecial =
        object.GetType() == EIEObjectsType::PTLPoint || object.GetType() == EIEObjectsType::GPSPosition;
    if (bSpecial && !(nCarries & CARRIES_POINT_KINDS))
        Note(TIENote::Changed, "object.point-kind", object.GetName(),
             "the form holds this " + strWord + " as a plain point");
}

void CIEExporter::NoteJobLosses() const
{
    if (m_pData->GetSettings().m_bSingleFile) {
        for (int i = 0; const CIEDataset* const pDataset = m_pData->GetDatasetAt(i); ++i)
            NoteDatasetLosses(*pDataset);
    } else if (const CIEDataset* const pDataset = m_pData->GetCurDataset(false)) {
        NoteDatasetLosses(*pDataset);
    }
    const CIERoadTemplatesDictionary* const pTemplates = m_pData->GetIERoadTemplatesDictionary();
    if (pTemplates && !(m_nCarries & CARRIES_TEMPLATES))
        Note(TIENote::LeftOut, "job.templates", {}, "the form doesn't hold the job's road templates");
    if (!(m_nCarries & CARRIES_DICTIONARY))
        NoteUnusedCodes();
}

void CIEExporter::NoteDatasetLosses(const CIEDataset& dataset) const
{
    if (!(m_nCarries & CARRIES_SURFACES)) {
        for (int i = 0; const CIESurface* const pSurface = dataset.GetSurfaceAt(i); ++i)
            Note(TIENote::LeftOut, "object.kind", pSurface->GetName(), "the form doesn't hold a surface");
    }
    if (!(m_nCarries & CARRIES_ALIGNMENTS)) {
        for (int i = 0; const CIEAlignment* const pAlignment = dataset.GetAlignmentAt(i); ++i)
            Note(TIENote::LeftOut, "object.kind", pAlignment->GetName(), "the form doesn't hold an alignment");
    }
}

void CIEExporter::NoteUnusedCodes() const
{
    std::unordered_set<const CIECodeDescription*> used;
    for (int i = 0; const CIEDataset* const pDataset = m_pData->GetDatasetAt(i); ++i) {
        for (int j = 0; const CIEObject* const pObject = pDataset->GetObjectAt(j); ++j) {
            for (int k = 0; const CIECodeValues* const pCode = pObject->GetCode(k); ++k)
                used.insert(pCode->GetDescription());
        }
    }
    const CIEDataDictionary* const pDictionary = m_pData->GetIEDataDictionary();
    for (int i = 0; const CIECodeDescription* const pCode = pDictionary->GetCodeDescriptionAt(i); ++i) {
        if (!used.contains(pCode))
            Note(TIENote::LeftOut, "job.code", pCode->GetName(),
                 "no object has this code, and the form holds no dictionary");
        else if (!pCode->GetDescription().empty())
            Note(TIENote::LeftOut, "job.code", pCode->GetName(),
                 "the form doesn't hold the words that describe this code");
    }
}
