// Jobs for tests: built in a few words, told in one line an object.
#pragma once

#include "alidade/vellumlib/data.h"
#include "alidade/vellumlib/utils.h"

#include <cmath>
#include <initializer_list>
#include <memory>
#include <string>

/// Clears the stop flag at the end of a test, however it ends.
struct TStopGuard {
    TStopGuard() = default;
    ~TStopGuard() { CIEData::m_bStopProcess = false; }
    TStopGuard(const TStopGuard&) = delete;
    TStopGuard& operator=(const TStopGuard&) = delete;
};

/// A point that counts when it is deleted, and may do something when an exporter asks what it is.
class CProbePoint : public CIEDesignPoint {
public:
    CProbePoint(CIEStation station, int* pDeleted, std::function<void()> onLook = {})
        : CIEDesignPoint(std::move(station)), m_pDeleted(pDeleted), m_OnLook(std::move(onLook))
    {
    }
    ~CProbePoint() override
    {
        if (m_pDeleted)
            ++*m_pDeleted;
    }
    CProbePoint(const CProbePoint&) = delete;
    CProbePoint& operator=(const CProbePoint&) = delete;

    [[nodiscard]] EIEObjectsType GetType() const override
    {
        if (m_OnLook)
            m_OnLook();
        return CIEDesignPoint::GetType();
    }
    [[nodiscard]] int GetGroupType() const override
    {
        if (m_OnLook)
            m_OnLook();
        return CIEDesignPoint::GetGroupType();
    }

private:
    int* m_pDeleted;
    std::function<void()> m_OnLook;
};

inline CIEStation MakeStation(const CString& name, double dNorth, double dEast, double dHeight)
{
    CIEStation station(dNorth, dEast, dHeight);
    station.SetName(name);
    return station;
}

template <class TPoint = CIEDesignPoint>
TPoint& AddPoint(CIEDataset& dataset, const CString& name, double dNorth = 1, double dEast = 2, double dHeight = 3)
{
    return static_cast<TPoint&>(*dataset.Add(std::make_unique<TPoint>(MakeStation(name, dNorth, dEast, dHeight))));
}

template <class TLine>
TLine& AddLine(CIEDataset& dataset, const CString& name, std::initializer_list<CIEStation> stations)
{
    auto pLine = std::make_unique<TLine>();
    pLine->SetName(name);
    for (const CIEStation& station : stations)
        pLine->AddStation(station);
    return static_cast<TLine&>(*dataset.Add(std::move(pLine)));
}

/// A history of tables that say P0 to Pn.
inline std::unique_ptr<CIEJobHistory> MakeHistory(int nTables)
{
    auto pHistory = std::make_unique<CIEJobHistory>();
    for (int i = 0; i < nTables; ++i)
        pHistory->AddJHTable({"Stakeout", "P" + std::to_string(i), {{"cut", "", "0.5"}}});
    return pHistory;
}

inline CIECodeDescription* AddCode(CIEData& job, const CString& name,
                                   std::initializer_list<CIEAttrDescription> attributes = {})
{
    auto pCode = std::make_unique<CIECodeDescription>(name);
    for (const CIEAttrDescription& attribute : attributes)
        pCode->AddAttrDescription(attribute);
    return job.AddCodeToIEDataDictionary(std::move(pCode));
}

inline CIECodeValues& GiveCode(CIEObject& object, const CIECodeDescription* pCode,
                               std::initializer_list<CString> values = {})
{
    CIECodeValues code(pCode);
    for (const CString& value : values)
        code.AddAttr(value);
    object.AddCode(std::move(code));
    return *object.GetCode(object.GetNumberOfCodes() - 1);
}

template <class TChange>
void ChangeSettings(CIEData& job, TChange change)
{
    TIESettings settings = job.GetCopyOfSettings();
    change(settings);
    job.SetSettings(std::move(settings));
}

inline void SetLayout(CIEData& job, const CString& fields, char16_t cDelimiter = u',', bool bHeader = false)
{
    ChangeSettings(job, [&](TIESettings& settings) {
        settings.m_pAsciiFormat = std::make_unique<TIEAsciiFormat>();
        settings.m_pAsciiFormat->m_cDelimiter = cDelimiter;
        settings.m_pAsciiFormat->m_bWriteHeader = bHeader;
        (void)IEAsciiFields::StringToFields(fields, settings.m_pAsciiFormat->m_Fields);
    });
}

/// A job without objects that says the same of itself and is set the same way.
inline std::unique_ptr<CIEData> MakeJobLike(const CIEData& job)
{
    auto pJob = std::make_unique<CIEData>();
    pJob->SetSettings(job.GetCopyOfSettings());
    *pJob->GetJobInfo() = *job.GetJobInfo();
    return pJob;
}

/// All that a code says: ROAD(width:REAL=3.5 kind:TEXT=asphalt)&note@c1
inline CString Describe(const CIECodeValues& code, bool bTypes = true)
{
    constexpr const char* kTypes[] = {":TEXT", ":INT", ":REAL", ":LIST"};
    const CIECodeDescription& description = *code.GetDescription();
    CString text = description.GetName() + "(";
    for (int i = 0; i < std::max(description.GetSize(), code.GetNumberOfAttrs()); ++i) {
        text += i > 0 ? " " : "";
        if (const CIEAttrDescription* const pAttr = description.GetAttrDescriptionAt(i)) {
            text += pAttr->GetName() + (bTypes ? kTypes[pAttr->GetType()] : "");
            for (const CString& item : pAttr->GetListItems())
                text += bTypes ? "#" + item : CString();
        }
        text += i < code.GetNumberOfAttrs() ? "=" + code.GetAttrAt(i) : CString();
    }
    text += ")";
    for (int i = 0; i < code.GetNumberOfCodeStrings(); ++i)
        text += "&" + code.GetCodeStringAt(i);
    for (int i = 0; i < CIECodeValues::kControlCodes; ++i)
        text += code.GetControlCode(i).empty() ? CString() : "@" + code.GetControlCode(i);
    return text;
}

inline CString DescribeCodes(const CIEObject& object, bool bTypes = true)
{
    CString text;
    for (int i = 0; const CIECodeValues* const pCode = object.GetCode(i); ++i)
        text += " " + Describe(*pCode, bTypes);
    return text;
}

inline const char* KindWord(const CIEObject& object)
{
    switch (object.GetType()) {
    case EIEObjectsType::DesignPoint:
        return "point";
    case EIEObjectsType::PTLPoint:
        return "relative";
    case EIEObjectsType::GPSPosition:
        return "gps";
    case EIEObjectsType::SheetPoint:
        return "sheet";
    case EIEObjectsType::PolyLine:
        return "line";
    case EIEObjectsType::Polygon:
        return "polygon";
    case EIEObjectsType::Arc:
        return "arc";
    case EIEObjectsType::Composite:
        return "composite";
    }
    return "?";
}

/// One object in one line: line L 1 2 3 | 4 5 6 'notes' ROAD(width:REAL=3.5)
inline CString Describe(const CIEObject& object)
{
    const auto number = [](double dValue) { return IEUtils::DoubleToString(dValue, -1); };
    CString text = CString(KindWord(object)) + " " + object.GetName();
    for (int i = 0; const CIEStation* const pStation = object.GetStation(i); ++i) {
        text += (i > 0 ? " | " : " ") + number(pStation->m_dNorth) + " " + number(pStation->m_dEast) + " ";
        text += pStation->IsHeightDefined() ? number(pStation->GetHeight()) : "-";
        text += pStation->GetGeoidHeight() != 0 ? " geoid " + number(pStation->GetGeoidHeight()) : CString();
        text += pStation->GetNotes().empty() ? CString() : " '" + pStation->GetNotes() + "'";
    }
    if (object.GetType() == EIEObjectsType::PTLPoint) {
        const auto& relative = static_cast<const CIEPTLPoint&>(object);
        text += " of " + relative.GetFirstReferencePointIDs() + " " + relative.GetSecondReferencePointIDs();
        text += relative.GetCoordType() == CIEPTLPoint::PointToLine ? " along" : " plain";
    }
    return text + DescribeCodes(object);
}

/// All objects of a job, a line each.
inline CString Describe(const CIEData& job)
{
    CString text;
    for (int i = 0; const CIEDataset* const pDataset = job.GetDatasetAt(i); ++i) {
        for (int j = 0; const CIEObject* const pObject = pDataset->GetObjectAt(j); ++j)
            text += Describe(*pObject) + "\n";
    }
    return text;
}

/// What must hold in a job, whatever was read into it; empty if all does.
inline CString FindFault(const CIEData& job)
{
    for (int i = 0; const CIEDataset* const pDataset = job.GetDatasetAt(i); ++i) {
        for (int j = 0; const CIEObject* const pObject = pDataset->GetObjectAt(j); ++j) {
            if (!IEUtils::IsValidUtf8(Describe(*pObject)))
                return "bytes that are no text in object " + std::to_string(j);
            if (pObject->GetNumberOfStations() == 0)
                return "no station: " + Describe(*pObject);
            for (int k = 0; const CIEStation* const pStation = pObject->GetStation(k); ++k) {
                if (!std::isfinite(pStation->m_dNorth + pStation->m_dEast + pStation->m_dHeight +
                                   pStation->GetGeoidHeight()))
                    return "a number that isn't finite: " + Describe(*pObject);
            }
            for (int k = 0; const CIECodeValues* const pCode = pObject->GetCode(k); ++k) {
                const CIECodeDescription* const pDescription = pCode->GetDescription();
                if (job.GetIEDataDictionary()->FindCodeDiscription(pDescription->GetName()) != pDescription)
                    return "a code that isn't in the dictionary: " + Describe(*pObject);
            }
        }
    }
    return {};
}
