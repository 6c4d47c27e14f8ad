#include "frame/losses.h"

#include "alidade/frame/format_row.h"
#include "alidade/vellumlib/utils.h"

#include <algorithm>
#include <cmath>
#include <unordered_set>

namespace {

/// Whether the codes say more than names, and a form doesn't hold it.
bool LosesAttributes(const CIEObject& object, TIECarries nCarries)
{
    for (int i = 0; const CIECodeValues* const pCode = object.GetCode(i); ++i) {
        if (!(nCarries & CARRIES_ATTRIBUTES) &&
            (pCode->GetNumberOfAttrs() > 0 || pCode->GetDescription()->GetSize() > 0))
            return true;
        if (!(nCarries & CARRIES_CODE_STRINGS) && pCode->GetNumberOfCodeStrings() > 0)
            return true;
        if (!(nCarries & CARRIES_CONTROL_CODES) &&
            !(pCode->GetControlCode(0).empty() && pCode->GetControlCode(1).empty()))
            return true;
    }
    return false;
}

bool HasLineValues(const CIEObject& object)
{
    return object.GetType() == EIEObjectsType::PTLPoint &&
           static_cast<const CIEPTLPoint&>(object).GetCoordType() == CIEPTLPoint::PointToLine;
}

/// Something that stations may have, and the note for a form that doesn't hold it.
struct TStationLoss {
    TIECarries m_nCarries;
    bool (*m_pHas)(const CIEStation& station);
    TIENote::EKind m_eKind;
    EIENote m_eCode;
    const char* m_pReason;
};

constexpr TStationLoss kStationLosses[] = {
    {CARRIES_NOTES, [](const CIEStation& station) { return !station.GetNotes().empty(); }, TIENote::LeftOut,
     EIENote::ObjectNotes, "the form doesn't hold the notes of this "},
    {CARRIES_UNDEFINED_HEIGHTS, [](const CIEStation& station) { return !station.IsHeightDefined(); }, TIENote::Changed,
     EIENote::ObjectNoHeight, "the form writes the height 0 for a station without a height in this "},
    {CARRIES_GEOID_HEIGHTS, [](const CIEStation& station) { return station.GetGeoidHeight() != 0.0; }, TIENote::LeftOut,
     EIENote::ObjectGeoidHeight, "the form doesn't hold the geoid height of this "},
    {CARRIES_TIME_STAMPS, [](const CIEStation& station) { return !station.GetTimeStamps().empty(); }, TIENote::LeftOut,
     EIENote::ObjectTimeStamps, "the form doesn't hold the time stamps of this "},
};

bool HasInStations(const CIEObject& object, const TStationLoss& loss)
{
    for (int i = 0; const CIEStation* const pStation = object.GetStation(i); ++i) {
        if (loss.m_pHas(*pStation))
            return true;
    }
    return false;
}

/// The notes of one file.
class CNotes {
public:
    CNotes(const CIEData& job, CString strFile) : m_Job(job), m_strFile(std::move(strFile)) {}

    void Add(TIENote::EKind eKind, EIENote eCode, const CString& strRecord, CString strReason)
    {
        m_Job.Note(eKind, eCode, m_strFile, {}, strRecord, std::move(strReason));
    }
    void AddLeftOut(EIENote eCode, const CString& strRecord, CString strReason)
    {
        Add(TIENote::LeftOut, eCode, strRecord, std::move(strReason));
    }

private:
    const CIEData& m_Job;
    CString m_strFile;
};

void NoteUnusedLayers(const CIEData& job, CNotes& notes)
{
    std::unordered_set<const CIELayer*> used;
    for (int i = 0; const CIEDataset* const pDataset = job.GetDatasetAt(i); ++i) {
        for (int j = 0; const CIEObject* const pObject = pDataset->GetObjectAt(j); ++j)
            used.insert(pObject->GetLayer());
    }
    const CIEDrawDictionary* const pLayers = job.GetIEDrawDictionary();
    for (int i = 0; const CIELayer* const pLayer = pLayers->GetLayerAt(i); ++i) {
        if (!used.contains(pLayer))
            notes.AddLeftOut(EIENote::JobLayer, pLayer->GetName(),
                             "no object lies on this layer, and the form holds no layers");
    }
}

void NoteUnusedCodes(const CIEData& job, CNotes& notes)
{
    std::unordered_set<const CIECodeDescription*> used;
    for (int i = 0; const CIEDataset* const pDataset = job.GetDatasetAt(i); ++i) {
        for (int j = 0; const CIEObject* const pObject = pDataset->GetObjectAt(j); ++j) {
            for (int k = 0; const CIECodeValues* const pCode = pObject->GetCode(k); ++k)
                used.insert(pCode->GetDescription());
        }
    }
    const CIEDataDictionary* const pDictionary = job.GetIEDataDictionary();
    for (int i = 0; const CIECodeDescription* const pCode = pDictionary->GetCodeDescriptionAt(i); ++i) {
        if (!used.contains(pCode))
            notes.AddLeftOut(EIENote::JobCode, pCode->GetName(),
                             "no object has this code, and the form holds no dictionary");
        else if (!pCode->GetDescription().empty())
            notes.AddLeftOut(EIENote::JobCode, pCode->GetName(),
                             "the form doesn't hold the words that describe this code");
    }
}

} // namespace

namespace Losses {

void NoteObject(const CIEData& job, const CString& strFile, const CIEObject& object, TIECarries nCarries)
{
    if (!job.GetObserver())
        return;
    CNotes notes(job, strFile);
    const CString& strName = object.GetName();
    const CString strWord = GetObjectKind(object.GetType()).m_pWord;
    if (!(GetObjectKind(object.GetType()).m_nCarries & nCarries)) {
        notes.AddLeftOut(EIENote::ObjectKind, strName,
                         CString("the form doesn't hold ") + (strWord[0] == 'a' ? "an " : "a ") + strWord);
        return;
    }
    // forms with layers are drawings, which tell of their blocks themselves
    if (object.GetStateType() == CIEObject::InBlock && !(nCarries & CARRIES_LAYERS))
        notes.Add(TIENote::Changed, EIENote::ObjectCoordinates, strName,
                  "it lies in a block, and the form holds this " + strWord + " as if it lay on the ground");
    if (object.GetNumberOfCodes() > 0 && !(nCarries & CARRIES_CODES))
        notes.AddLeftOut(EIENote::ObjectCodes, strName, "the form doesn't hold the codes of this " + strWord);
    else if (LosesAttributes(object, nCarries))
        notes.AddLeftOut(EIENote::ObjectAttributes, strName,
                         "the form doesn't hold all that the codes of this " + strWord + " say");
    if (object.GetLayer() && !(nCarries & CARRIES_LAYERS))
        notes.AddLeftOut(EIENote::ObjectLayer, strName,
                         "the form doesn't hold the layer \"" + object.GetLayer()->GetName() + "\" of this " + strWord);
    if (object.GetDrawProperties() && !(nCarries & CARRIES_DRAWING))
        notes.AddLeftOut(EIENote::ObjectDrawing, strName, "the form doesn't hold how this " + strWord + " is drawn");
    for (const TStationLoss& loss : kStationLosses) {
        if (!(nCarries & loss.m_nCarries) && HasInStations(object, loss))
            notes.Add(loss.m_eKind, loss.m_eCode, strName, loss.m_pReason + strWord);
    }
    const bool bRelative =
        object.GetType() == EIEObjectsType::PTLPoint && !(nCarries & (CARRIES_POINT_KINDS | CARRIES_RELATIVE_POINTS));
    if (bRelative || (object.GetType() == EIEObjectsType::GPSPosition && !(nCarries & CARRIES_POINT_KINDS)))
        notes.Add(TIENote::Changed, EIENote::ObjectPointKind, strName,
                  "the form holds this " + strWord + " as a plain point" +
                      (HasLineValues(object)
                           ? ", whose values along and off the line stand as coordinates of the ground"
                           : ""));
    if (!(nCarries & CARRIES_GPS_DATA) && object.GetType() == EIEObjectsType::GPSPosition &&
        static_cast<const CIEGPSPosition&>(object).HasGPSData())
        notes.AddLeftOut(EIENote::ObjectGpsData, strName,
                         "the form doesn't hold accuracy, time and satellites of this " + strWord);
}

void NoteDataset(const CIEData& job, const CString& strFile, const CIEDataset& dataset, TIECarries nCarries)
{
    CNotes notes(job, strFile);
    if (!(nCarries & CARRIES_SURFACES)) {
        for (int i = 0; const CIESurface* const pSurface = dataset.GetSurfaceAt(i); ++i)
            notes.AddLeftOut(EIENote::ObjectKind, pSurface->GetName(), "the form doesn't hold a surface");
    }
    if (!(nCarries & CARRIES_ALIGNMENTS)) {
        for (int i = 0; const CIEAlignment* const pAlignment = dataset.GetAlignmentAt(i); ++i)
            notes.AddLeftOut(EIENote::ObjectKind, pAlignment->GetName(), "the form doesn't hold an alignment");
    }
    if (!(nCarries & CARRIES_JOB_HISTORY) && dataset.GetJobHistory())
        notes.AddLeftOut(EIENote::DatasetJobHistory, dataset.GetName(),
                         "the form doesn't hold the job history of this dataset");
}

void NoteUnreached(const CIEData& job, const CString& strFile, const CIEDataset& dataset, const CString& strReason)
{
    constexpr EIENote kCode = EIENote::DatasetUnreached;
    CNotes notes(job, strFile);
    for (int i = 0; const CIEObject* const pObject = dataset.GetObjectAt(i); ++i)
        notes.AddLeftOut(kCode, pObject->GetName(), strReason);
    for (int i = 0; const CIESurface* const pSurface = dataset.GetSurfaceAt(i); ++i)
        notes.AddLeftOut(kCode, pSurface->GetName(), strReason);
    for (int i = 0; const CIEAlignment* const pAlignment = dataset.GetAlignmentAt(i); ++i)
        notes.AddLeftOut(kCode, pAlignment->GetName(), strReason);
    if (dataset.GetJobHistory())
        notes.AddLeftOut(kCode, dataset.GetName(), strReason + ", whose job history is left out");
}

void NoteJob(const CIEData& job, const CString& strFile, TIECarries nCarries)
{
    if (!job.GetObserver())
        return;
    CNotes notes(job, strFile);
    if (job.GetIERoadTemplatesDictionary() && !(nCarries & CARRIES_TEMPLATES))
        notes.AddLeftOut(EIENote::JobTemplates, {}, "the form doesn't hold the job's road templates");
    if (!(nCarries & CARRIES_DICTIONARY))
        NoteUnusedCodes(job, notes);
    if (!(nCarries & CARRIES_LAYERS))
        NoteUnusedLayers(job, notes);
}

void NoteCoarseDegrees(const CIEData& job, const CString& strFile)
{
    constexpr double kFineEnough = 1e-7; // degrees; about a centimetre on the ground
    const TIESettings& settings = job.GetSettings();
    if (job.GetJobInfo()->GetCSType() != TIEJobInfo::Geographic)
        return;
    const int nDecimals = std::min(settings.m_nNorthDecimals, settings.m_nEastDecimals);
    double dStep = 0.0;
    switch (settings.m_eCoordsStyle) {
    case ECOORDS_STYLE::DecimalDegrees:
    case ECOORDS_STYLE::Plain:
        dStep = nDecimals < 0 ? 0.0 : std::pow(10.0, -nDecimals);
        break;
    case ECOORDS_STYLE::Packed:
        dStep = nDecimals < 0 ? 0.0 : std::pow(10.0, 4 - nDecimals) / 3600;
        break;
    case ECOORDS_STYLE::DegreesMinutes:
        dStep = nDecimals < 0 ? 0.0 : std::pow(10.0, -nDecimals) / 60;
        break;
    case ECOORDS_STYLE::DegreesMinutesSeconds:
        dStep = nDecimals < 0 ? 0.0 : std::pow(10.0, -nDecimals) / 3600;
        break;
    case ECOORDS_STYLE::Digits:
        dStep = 1.0 / 3600;
        break;
    }
    constexpr double kMetersOfDegree = 111000;
    if (dStep > kFineEnough)
        CNotes(job, strFile)
            .Add(TIENote::Changed, EIENote::JobGeographic, {},
                 "latitude and longitude go out in steps of about " +
                     IEUtils::DoubleToString(dStep * kMetersOfDegree, 2) + " m; more decimals keep more of them");
}

} // namespace Losses
