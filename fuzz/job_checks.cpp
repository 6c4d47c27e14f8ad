#include "job_checks.h"

#include "support.h"

#include "alidade/vellumlib/utils.h"

#include <cmath>

namespace {

void CheckText(const CString& text)
{
    Require(IEUtils::IsValidUtf8(text), "texts of the job are UTF-8");
}

void CheckStation(const CIEStation* pStation)
{
    Require(pStation != nullptr, "there are as many stations as counted");
    Require(std::isfinite(pStation->m_dNorth) && std::isfinite(pStation->m_dEast) &&
                std::isfinite(pStation->m_dHeight) && std::isfinite(pStation->GetGeoidHeight()),
            "coordinates are finite");
    CheckText(pStation->GetName());
    CheckText(pStation->GetNotes());
    CheckText(pStation->GetTimeStamps());
}

void CheckCodes(const CIEData& job, const CIEObject& object)
{
    for (int i = 0; i < object.GetNumberOfCodes(); ++i) {
        const CIECodeValues& code = *object.GetCode(i);
        const CIECodeDescription* const pDescription = code.GetDescription();
        Require(pDescription && job.GetIEDataDictionary()->FindCodeDiscription(pDescription->GetName()) == pDescription,
                "codes of objects are in the dictionary");
        for (int j = 0; j < code.GetNumberOfAttrs(); ++j)
            CheckText(code.GetAttrAt(j));
        for (int j = 0; j < code.GetNumberOfCodeStrings(); ++j)
            CheckText(code.GetCodeStringAt(j));
        for (int j = 0; j < CIECodeValues::kControlCodes; ++j)
            CheckText(code.GetControlCode(j));
    }
}

void CheckObject(const CIEData& job, const CIEDataset& dataset, const CIEObject& object)
{
    CheckText(object.GetName());
    for (int i = 0; i < object.GetNumberOfStations(); ++i)
        CheckStation(object.GetStation(i));
    Require(object.GetStation(object.GetNumberOfStations()) == nullptr, "there are no more stations than counted");
    CheckCodes(job, object);
    if (object.GetLayer())
        Require(job.GetIEDrawDictionary()->FindLayer(object.GetLayer()->GetName()) == object.GetLayer(),
                "layers of objects are in the dictionary");
    if (!object.GetName().empty()) {
        const CIEObject* const pFound = dataset.FindObject(object.GetName());
        Require(pFound && pFound->GetName() == object.GetName(), "an object is found by its name");
    }
}

void CheckSurface(const CIESurface& surface)
{
    CheckText(surface.GetName());
    for (int i = 0; i < surface.GetNumberOfPositions(); ++i)
        CheckStation(surface.GetPositionAt(i));
    for (int i = 0; i < surface.GetNumberOfTriangles(); ++i) {
        for (int k = 0; k < CIETriangle::kCorners; ++k) {
            const int nPosition = surface.GetTriangleAt(i)->GetPosition(k);
            Require(nPosition >= -1 && nPosition < surface.GetNumberOfPositions(), "triangles have corners or none");
        }
    }
}

void CheckHistory(const CIEJobHistory& history)
{
    for (const TIEJobHistoryTable& table : history.GetJHTables()) {
        CheckText(table.m_strTitle);
        CheckText(table.m_strText);
        for (const TIEJobHistoryXMLTag& tag : table.m_Tags) {
            CheckText(tag.m_strName);
            CheckText(tag.m_strText);
            CheckText(tag.m_strValue);
        }
    }
}

void CheckDictionary(const CIEDataDictionary& dictionary)
{
    for (int i = 0; i < dictionary.GetSize(); ++i) {
        const CIECodeDescription& code = *dictionary.GetCodeDescriptionAt(i);
        CheckText(code.GetName());
        for (int j = 0; j < code.GetSize(); ++j) {
            CheckText(code.GetAttrDescriptionAt(j)->GetName());
            for (const CString& item : code.GetAttrDescriptionAt(j)->GetListItems())
                CheckText(item);
        }
    }
}

void CheckSameCode(const CIECodeValues& left, const CIECodeValues& right)
{
    RequireEqual(left.GetDescription()->GetName(), right.GetDescription()->GetName(), "a code comes back");
    Require(left.GetNumberOfAttrs() == right.GetNumberOfAttrs() &&
                left.GetNumberOfCodeStrings() == right.GetNumberOfCodeStrings(),
            "a code comes back with as many texts");
    for (int i = 0; i < left.GetNumberOfAttrs(); ++i)
        RequireEqual(left.GetAttrAt(i), right.GetAttrAt(i), "an attribute comes back");
    for (int i = 0; i < left.GetNumberOfCodeStrings(); ++i)
        RequireEqual(left.GetCodeStringAt(i), right.GetCodeStringAt(i), "a code string comes back");
    for (int i = 0; i < CIECodeValues::kControlCodes; ++i)
        RequireEqual(left.GetControlCode(i), right.GetControlCode(i), "a control code comes back");
}

void CheckSameObject(const CIEObject& left, const CIEObject& right)
{
    Require(left.GetType() == right.GetType(), "the kind of an object comes back");
    RequireEqual(left.GetName(), right.GetName(), "the name of an object comes back");
    Require(left.GetNumberOfStations() == right.GetNumberOfStations(), "all stations come back");
    for (int i = 0; i < left.GetNumberOfStations(); ++i)
        RequireEqual(left.GetStation(i)->GetNotes(), right.GetStation(i)->GetNotes(), "notes come back");
    if (left.GetType() == EIEObjectsType::GPSPosition)
        Require(static_cast<const CIEGPSPosition&>(left).HasSameGPSData(static_cast<const CIEGPSPosition&>(right)),
                "what a receiver said comes back");
    Require(left.GetNumberOfCodes() == right.GetNumberOfCodes(), "all codes come back");
    for (int i = 0; i < left.GetNumberOfCodes(); ++i)
        CheckSameCode(*left.GetCode(i), *right.GetCode(i));
}

int CountObjects(CIEData& job)
{
    const CIEDataset* const pDataset = job.GetCurDataset(false);
    return pDataset ? pDataset->GetNumberOfElements(-1, 2, false, false) : 0;
}

} // namespace

void CheckJob(const CIEData& job)
{
    CheckDictionary(*job.GetIEDataDictionary());
    for (int i = 0; i < job.GetNumberOfDatasets(); ++i) {
        const CIEDataset& dataset = *job.GetDatasetAt(i);
        CheckText(dataset.GetName());
        for (int j = 0; const CIEObject* const pObject = dataset.GetObjectAt(j); ++j)
            CheckObject(job, dataset, *pObject);
        for (int j = 0; j < dataset.GetNumberOfSurfaces(); ++j)
            CheckSurface(*dataset.GetSurfaceAt(j));
        if (dataset.GetJobHistory())
            CheckHistory(*dataset.GetJobHistory());
    }
}

void CheckSameObjects(CIEData& left, CIEData& right)
{
    const int nCount = CountObjects(left);
    Require(nCount == CountObjects(right), "all objects come back");
    for (int i = 0; i < nCount; ++i)
        CheckSameObject(*left.GetCurDataset(false)->GetObjectAt(i), *right.GetCurDataset(false)->GetObjectAt(i));
}
