#include "compare/comparer.h"

#include "alidade/vellumlib/kinds.h"
#include "alidade/vellumlib/utils.h"

#include <algorithm>
#include <cmath>

namespace {

CString ToText(double dValue)
{
    return IEUtils::DoubleToString(dValue, -1);
}

const CString& NameOf(const CIELayer* pLayer)
{
    static const CString kNone;
    return pLayer ? pLayer->GetName() : kNone;
}

const CString& NameOf(const CIECodeValues& code)
{
    static const CString kNone;
    return code.GetDescription() ? code.GetDescription()->GetName() : kNone;
}

CString NamesOfCodes(const CIEObject& object)
{
    CString names;
    for (int i = 0; const CIECodeValues* const pCode = object.GetCode(i); ++i)
        names.append(i > 0 ? ", " : "").append(NameOf(*pCode));
    return names;
}

/// "ROAD.width" for value i of a code.
CString NameOfValue(const CIECodeValues& code, int i)
{
    const CIEAttrDescription* const pAttribute =
        code.GetDescription() ? code.GetDescription()->GetAttrDescriptionAt(i) : nullptr;
    return NameOf(code) + "." + (pAttribute ? pAttribute->GetName() : IEUtils::IntToString(i + 1));
}

CString Describe(const CIEAttrDescription& attribute)
{
    constexpr const char* kTypes[] = {"text", "whole number", "number", "list"};
    CString text = attribute.GetName() + ": " + kTypes[attribute.GetType()];
    for (const CString& item : attribute.GetListItems())
        text += " \"" + item + "\"";
    return text;
}

CString Describe(const TIEDateTime& time)
{
    CString text;
    for (const int nPart : {time.m_nYear, time.m_nMonth, time.m_nDay, time.m_nHour, time.m_nMinute, time.m_nSecond})
        text.append(text.empty() ? "" : "-").append(IEUtils::IntToString(nPart));
    return text;
}

} // namespace

// ---- telling

void CIEComparer::Begin(const char* pThing, const CString& strDataset, const CString& strName)
{
    m_Now = TIEDifference();
    m_Now.m_pThing = pThing;
    m_Now.m_strDataset = strDataset;
    m_Now.m_strName = strName;
}

void CIEComparer::Begin(const CString& strDataset, const CIEObject& first, const CIEObject* pSecond)
{
    // names and places are filled in by the first thing that there is to tell; most objects have nothing
    m_Now.m_pThing = GetObjectKind(first.GetType()).m_pWord;
    if (m_Now.m_strDataset != strDataset)
        m_Now.m_strDataset = strDataset;
    m_Now.m_nPart = -1;
    m_Now.m_bPlace = false;
    m_Now.m_pObject = &first;
    m_Now.m_pOther = pSecond;
}

void CIEComparer::TellAlone(TIEDifference::EKind eKind)
{
    m_Now.m_eKind = eKind;
    Tell("", {}, {});
    m_Now.m_eKind = TIEDifference::Changed;
}

void CIEComparer::Tell(const char* pProperty, CString strFirst, CString strSecond)
{
    ++m_nCount;
    m_Now.m_pProperty = pProperty;
    m_Now.m_strFirst = std::move(strFirst);
    m_Now.m_strSecond = std::move(strSecond);
    if (m_Now.m_pObject && m_Now.m_pThing != nullptr) {
        m_Now.m_strName = m_Now.m_pObject->GetName();
        if (const CIEStation* const pStation = m_Now.m_pObject->GetStation(std::max(m_Now.m_nPart, 0))) {
            m_Now.m_bPlace = true;
            m_Now.m_dNorth = pStation->m_dNorth;
            m_Now.m_dEast = pStation->m_dEast;
        }
    }
    m_Sink.OnDifference(m_Now);
}

void CIEComparer::Text(const char* pProperty, std::string_view first, std::string_view second)
{
    if (first != second)
        Tell(pProperty, CString(first), CString(second));
}

void CIEComparer::Number(const char* pProperty, double dFirst, double dSecond, double dTolerance)
{
    if (!(std::abs(dFirst - dSecond) <= dTolerance) && dFirst != dSecond)
        Tell(pProperty, ToText(dFirst), ToText(dSecond));
}

void CIEComparer::Integer(const char* pProperty, std::int64_t nFirst, std::int64_t nSecond)
{
    if (nFirst != nSecond)
        Tell(pProperty, IEUtils::IntToString(nFirst), IEUtils::IntToString(nSecond));
}

void CIEComparer::Flag(const char* pProperty, bool bFirst, bool bSecond)
{
    if (bFirst != bSecond)
        Tell(pProperty, bFirst ? "yes" : "no", bSecond ? "yes" : "no");
}

// ---- objects

void CIEComparer::Stations(const CIEStation& first, const CIEStation& second)
{
    Number("north", first.m_dNorth, second.m_dNorth, m_Options.m_dPlane);
    Number("east", first.m_dEast, second.m_dEast, m_Options.m_dPlane);
    if (first.IsHeightDefined() != second.IsHeightDefined())
        Tell("height", first.IsHeightDefined() ? ToText(first.GetHeight()) : CString(),
             second.IsHeightDefined() ? ToText(second.GetHeight()) : CString());
    else
        Number("height", first.GetHeight(), second.GetHeight(), m_Options.m_dHeight);
    Number("geoid height", first.GetGeoidHeight(), second.GetGeoidHeight(), m_Options.m_dHeight);
    Text("notes", first.GetNotes(), second.GetNotes());
    Text("time stamps", first.GetTimeStamps(), second.GetTimeStamps());
    Integer("station type", first.GetStationType(), second.GetStationType());
}

void CIEComparer::Objects(const CIEObject& first, const CIEObject& second)
{
    const EIEObjectsType eType = first.GetType();
    Text("kind", GetObjectKind(eType).m_pWord, GetObjectKind(second.GetType()).m_pWord);
    Text("name", first.GetName(), second.GetName());
    Flag("within a block", first.GetStateType() == CIEObject::InBlock, second.GetStateType() == CIEObject::InBlock);
    Text("layer", NameOf(first.GetLayer()), NameOf(second.GetLayer()));
    Drawing(first.GetDrawProperties(), second.GetDrawProperties());
    ObjectCodes(first, second);

    if (eType == EIEObjectsType::Composite && second.GetType() == eType) {
        Composites(static_cast<const CIECompositeObject&>(first), static_cast<const CIECompositeObject&>(second));
        return;
    }
    AllStations(first, second);
    m_Now.m_nPart = -1;
    if (eType != second.GetType())
        return;
    if (eType == EIEObjectsType::PTLPoint) {
        PTLPoints(static_cast<const CIEPTLPoint&>(first), static_cast<const CIEPTLPoint&>(second));
    } else if (eType == EIEObjectsType::GPSPosition) {
        GPSPositions(static_cast<const CIEGPSPosition&>(first), static_cast<const CIEGPSPosition&>(second));
    } else if (eType == EIEObjectsType::Arc) {
        const auto &one = static_cast<const CIEArc&>(first), &other = static_cast<const CIEArc&>(second);
        Number("radius", one.GetData(CIEArc::Radius), other.GetData(CIEArc::Radius));
        Number("start angle", one.GetData(CIEArc::StartAngle), other.GetData(CIEArc::StartAngle));
        Number("end angle", one.GetData(CIEArc::EndAngle), other.GetData(CIEArc::EndAngle));
    } else if (eType == EIEObjectsType::SheetPoint) {
        const auto &one = static_cast<const CIESheetPoint&>(first), &other = static_cast<const CIESheetPoint&>(second);
        for (int i = 1; i < std::min(first.GetNumberOfStations(), second.GetNumberOfStations()); ++i) {
            m_Now.m_nPart = i;
            Offsets(*one.GetOffsetStation(i), *other.GetOffsetStation(i));
        }
        m_Now.m_nPart = -1;
    }
}

/// Where one line has more stations than the other, those belong together that stand at the same places counted from
/// its start and from its end, so that one station that was put in doesn't move all behind it.
void CIEComparer::AllStations(const CIEObject& first, const CIEObject& second)
{
    const int nFirst = first.GetNumberOfStations(), nSecond = second.GetNumberOfStations();
    // names of the stations of points are those of the points
    const bool bNames = first.GetGroupType() != CIEObject::PointLike && first.GetGroupType() != CIEObject::ArcLike;
    const auto compare = [&](int i, int j) {
        const CIEStation &one = *first.GetStation(i), &other = *second.GetStation(j);
        m_Now.m_nPart = nFirst > 1 || bNames ? i : -1;
        Stations(one, other);
        if (bNames)
            Text("station name", one.GetName(), other.GetName());
    };
    const auto isSamePlace = [&](int i, int j) {
        const CIEStation &one = *first.GetStation(i), &other = *second.GetStation(j);
        return std::abs(one.m_dNorth - other.m_dNorth) <= m_Options.m_dPlane &&
               std::abs(one.m_dEast - other.m_dEast) <= m_Options.m_dPlane;
    };
    const int nCommon = std::min(nFirst, nSecond);
    int nHead = nCommon, nTail = 0;
    if (nFirst != nSecond) {
        Integer("number of stations", nFirst, nSecond);
        for (nHead = 0; nHead < nCommon && isSamePlace(nHead, nHead);)
            ++nHead;
        while (nHead + nTail < nCommon && isSamePlace(nFirst - 1 - nTail, nSecond - 1 - nTail))
            ++nTail;
        nHead = nCommon - nTail;
    }
    for (int i = 0; i < nHead; ++i)
        compare(i, i);
    const auto describe = [](const CIEStation& station) {
        return ToText(station.m_dNorth) + " " + ToText(station.m_dEast) + " " + ToText(station.GetHeight());
    };
    for (int i = nHead; i < std::max(nFirst, nSecond) - nTail; ++i) {
        m_Now.m_nPart = i;
        nFirst > nSecond ? Tell("station", describe(*first.GetStation(i)), {})
                         : Tell("station", {}, describe(*second.GetStation(i)));
    }
    for (int i = nTail; i > 0; --i)
        compare(nFirst - i, nSecond - i);
}

void CIEComparer::PTLPoints(const CIEPTLPoint& first, const CIEPTLPoint& second)
{
    Text("reference", first.GetFirstReferencePointIDs(), second.GetFirstReferencePointIDs());
    Text("second reference", first.GetSecondReferencePointIDs(), second.GetSecondReferencePointIDs());
    Flag("along a line", first.GetCoordType() == CIEPTLPoint::PointToLine,
         second.GetCoordType() == CIEPTLPoint::PointToLine);
}

void CIEComparer::GPSPositions(const CIEGPSPosition& first, const CIEGPSPosition& second)
{
    if (first.HasSameGPSData(second))
        return;
    const TGPSCoordCovMatrix &cv = first.GetCV(), &otherCv = second.GetCV();
    Flag("accuracy", first.HasCV(), second.HasCV());
    // errors as people read them; variances are their squares
    Number("accuracy", cv.GetHRMS(), otherCv.GetHRMS());
    Number("accuracy", cv.GetVRMS(), otherCv.GetVRMS());
    Number("accuracy", cv.m_dXY, otherCv.m_dXY);
    Number("accuracy", cv.m_dXZ, otherCv.m_dXZ);
    Number("accuracy", cv.m_dYZ, otherCv.m_dYZ);
    Text("time", first.HasTime() ? Describe(first.GetTime()) : CString(),
         second.HasTime() ? Describe(second.GetTime()) : CString());
    Number("dilution of precision", first.GetDOP().m_dGDOP, second.GetDOP().m_dGDOP);
    Number("dilution of precision", first.GetDOP().m_dHDOP, second.GetDOP().m_dHDOP);
    Number("dilution of precision", first.GetDOP().m_dVDOP, second.GetDOP().m_dVDOP);
    Number("dilution of precision", first.GetDOP().m_dPDOP, second.GetDOP().m_dPDOP);
    Integer("satellite data", first.GetRawDataType(), second.GetRawDataType());
    Text("solution", first.GetSolutionTypeAsString(), second.GetSolutionTypeAsString());
    Integer("satellites", first.GetNumberOfGpsSats(), second.GetNumberOfGpsSats());
    Integer("satellites", first.GetNumberOfGlonassSats(), second.GetNumberOfGlonassSats());
}

void CIEComparer::Offsets(const CIEOffsetStation& first, const CIEOffsetStation& second)
{
    constexpr double CIEOffsetStation::*kOffsets[] = {
        &CIEOffsetStation::m_dDeltaNorth,  &CIEOffsetStation::m_dDeltaEast,  &CIEOffsetStation::m_dDeltaHeight,
        &CIEOffsetStation::m_dLineStation, &CIEOffsetStation::m_dLineOffset, &CIEOffsetStation::m_dDeltaStation,
        &CIEOffsetStation::m_dDeltaOffset, &CIEOffsetStation::m_dDistance};
    for (const auto pOffset : kOffsets)
        Number("offsets", first.*pOffset, second.*pOffset);
}

void CIEComparer::Composites(const CIECompositeObject& first, const CIECompositeObject& second)
{
    Integer("number of parts", first.GetNumberOfParts(), second.GetNumberOfParts());
    for (int i = 0; i < std::min(first.GetNumberOfParts(), second.GetNumberOfParts()); ++i) {
        m_Now.m_nPart = i;
        Objects(*first.GetPartAt(i), *second.GetPartAt(i)); // a composite has no composites among its parts
    }
    m_Now.m_nPart = -1;
}

void CIEComparer::ObjectCodes(const CIEObject& first, const CIEObject& second)
{
    const int nCodes = first.GetNumberOfCodes();
    bool bSame = nCodes == second.GetNumberOfCodes();
    for (int i = 0; i < nCodes && bSame; ++i)
        bSame = NameOf(*first.GetCode(i)) == NameOf(*second.GetCode(i));
    if (!bSame) {
        Tell("codes", NamesOfCodes(first), NamesOfCodes(second));
        return;
    }
    for (int i = 0; i < nCodes; ++i)
        CodeValues(*first.GetCode(i), *second.GetCode(i));
}

void CIEComparer::CodeValues(const CIECodeValues& first, const CIECodeValues& second)
{
    const int nValues = std::max(first.GetNumberOfAttrs(), second.GetNumberOfAttrs());
    for (int i = 0; i < nValues; ++i) {
        const CString &strFirst = first.GetAttrAt(i), &strSecond = second.GetAttrAt(i);
        if (strFirst != strSecond || (!strFirst.empty() && NameOfValue(first, i) != NameOfValue(second, i)))
            Tell("attributes", NameOfValue(first, i) + "=" + strFirst, NameOfValue(second, i) + "=" + strSecond);
    }
    const int nStrings = std::max(first.GetNumberOfCodeStrings(), second.GetNumberOfCodeStrings());
    for (int i = 0; i < nStrings; ++i)
        Text("code strings", first.GetCodeStringAt(i), second.GetCodeStringAt(i));
    for (int i = 0; i < CIECodeValues::kControlCodes; ++i)
        Text("control codes", first.GetControlCode(i), second.GetControlCode(i));
}

// ---- how things are drawn

void CIEComparer::Drawing(const CIEDrawProperties* pFirst, const CIEDrawProperties* pSecond)
{
    constexpr const char* kTypes[] = {"as a point", "as a line", "as an area"};
    const auto type = [&](const CIEDrawProperties* p) { return p ? kTypes[p->GetType()] : "as its layer says"; };
    if (!pFirst && !pSecond)
        return;
    Text("drawing", type(pFirst), type(pSecond));
    if (!pFirst || !pSecond)
        return;
    const auto color = [](const CIEDrawProperties& properties) {
        TIEColor value = 0;
        return properties.GetColor(value) ? static_cast<std::int64_t>(value) : -1;
    };
    Integer("colour", color(*pFirst), color(*pSecond));
    if (pFirst->GetType() != pSecond->GetType())
        return;
    if (pFirst->GetType() == CIEDrawProperties::Lines) {
        const auto& one = static_cast<const CIEDrawLineProperties&>(*pFirst);
        const auto& other = static_cast<const CIEDrawLineProperties&>(*pSecond);
        const auto width = [](const CIEDrawLineProperties& properties) {
            int nWidth = 0;
            return properties.GetWidth(nWidth) ? nWidth : -1;
        };
        Text("line type", one.GetDashStyleTypeAsString(), other.GetDashStyleTypeAsString());
        Integer("width", width(one), width(other));
    } else if (pFirst->GetType() == CIEDrawProperties::Points) {
        const auto mark = [](const CIEDrawProperties& properties) {
            int nMark = 0;
            return static_cast<const CIEDrawPointProperties&>(properties).GetMarkStyle(nMark) ? nMark : -1;
        };
        Integer("mark", mark(*pFirst), mark(*pSecond));
    } else {
        Flag("filled", static_cast<const CIEDrawAreaProperties&>(*pFirst).IsFlooded(),
             static_cast<const CIEDrawAreaProperties&>(*pSecond).IsFlooded());
    }
}

void CIEComparer::Layers(const CIELayer& first, const CIELayer& second)
{
    Text("notes", first.GetNotes(), second.GetNotes());
    Flag("shown", first.IsActive(), second.IsActive());
    Flag("printed", first.IsPlot(), second.IsPlot());
    Drawing(first.GetDrawProperties(), second.GetDrawProperties());
}

// ---- dictionaries, history, info

void CIEComparer::Codes(const CIECodeDescription& first, const CIECodeDescription& second)
{
    Text("description", first.GetDescription(), second.GetDescription());
    Integer("number of attributes", first.GetSize(), second.GetSize());
    for (int i = 0; i < std::min(first.GetSize(), second.GetSize()); ++i) {
        const CIEAttrDescription &one = *first.GetAttrDescriptionAt(i), &other = *second.GetAttrDescriptionAt(i);
        if (!(one == other)) {
            m_Now.m_nPart = i;
            Tell("attribute", Describe(one), Describe(other));
        }
    }
    m_Now.m_nPart = -1;
    for (int nType = 0; nType < CIEDrawProperties::kTypes; ++nType)
        Drawing(first.GetDrawProperties(nType), second.GetDrawProperties(nType));
}

void CIEComparer::Histories(const CIEJobHistory* pFirst, const CIEJobHistory* pSecond)
{
    static const CIEJobHistory kNone;
    const CIEJobHistory::TTables& first = (pFirst ? *pFirst : kNone).GetJHTables();
    const CIEJobHistory::TTables& second = (pSecond ? *pSecond : kNone).GetJHTables();
    Integer("number of tables", static_cast<std::int64_t>(first.size()), static_cast<std::int64_t>(second.size()));
    for (std::size_t i = 0; i < std::min(first.size(), second.size()); ++i) {
        if (first[i] == second[i])
            continue;
        m_Now.m_nPart = static_cast<int>(i);
        const auto describe = [](const TIEJobHistoryTable& table) {
            CString text = table.m_strTitle + " " + table.m_strText;
            for (const TIEJobHistoryXMLTag& tag : table.m_Tags)
                text += " " + tag.m_strName + "=" + tag.m_strValue + tag.m_strText;
            return text;
        };
        Tell("table", describe(first[i]), describe(second[i]));
    }
    m_Now.m_nPart = -1;
}

void CIEComparer::Infos(const TIEJobInfo& first, const TIEJobInfo& second)
{
    constexpr std::pair<const char*, CString TIEJobInfo::*> kTexts[] = {
        {"job name", &TIEJobInfo::m_strJobName},           {"job comment", &TIEJobInfo::m_strJobComment},
        {"observer", &TIEJobInfo::m_strObserver},          {"instrument", &TIEJobInfo::m_strInstrument},
        {"application", &TIEJobInfo::m_strAppName},        {"application version", &TIEJobInfo::m_strAppVersion},
        {"application", &TIEJobInfo::m_strAppDescription}, {"application", &TIEJobInfo::m_strAppText}};
    for (const auto& [pProperty, pText] : kTexts)
        Text(pProperty, first.*pText, second.*pText);
    Integer("prism constant", first.m_nPrismConstant, second.m_nPrismConstant);
    Flag("geographic", first.GetCSType() == TIEJobInfo::Geographic, second.GetCSType() == TIEJobInfo::Geographic);
    Integer("units of distance", static_cast<int>(first.GetDistUnits()), static_cast<int>(second.GetDistUnits()));
    Integer("units of angle", static_cast<int>(first.GetAngleUnits()), static_cast<int>(second.GetAngleUnits()));
    const auto measured = [this](const char* pProperty, bool (TIEJobInfo::*pGet)(double&, int&) const,
                                 const TIEJobInfo& one, const TIEJobInfo& other) {
        double dOne = 0.0, dOther = 0.0;
        int nOne = -1, nOther = -1;
        Flag(pProperty, (one.*pGet)(dOne, nOne), (other.*pGet)(dOther, nOther));
        Number(pProperty, dOne, dOther);
        Integer(pProperty, nOne, nOther);
    };
    measured("temperature", &TIEJobInfo::GetTemperature, first, second);
    measured("pressure", &TIEJobInfo::GetPressure, first, second);
    double dScale = 1.0, dElevation = 0.0, dOtherScale = 1.0, dOtherElevation = 0.0;
    Flag("scale", first.GetEllToGridScaleAndElevation(dScale, dElevation),
         second.GetEllToGridScaleAndElevation(dOtherScale, dOtherElevation));
    Number("scale", dScale, dOtherScale, 0.0);
    Number("scale", dElevation, dOtherElevation);
    CString strDate, strTime, strOtherDate, strOtherTime;
    (void)first.GetCreateTimeStr(strDate, strTime);
    (void)second.GetCreateTimeStr(strOtherDate, strOtherTime);
    Text("date", strDate + " " + strTime, strOtherDate + " " + strOtherTime);
    Text("projection", first.GetProjection(), second.GetProjection());
    Text("datum", first.GetDatum(), second.GetDatum());
    Text("geoid", first.GetGeoid(), second.GetGeoid());
}
