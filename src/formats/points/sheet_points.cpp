#include "formats/points/sheet_points.h"

#include "alidade/vellumlib/utils.h"
#include "formats/points/layout_gaps.h"
#include "formats/points/row_texts.h"
#include "frame/losses.h"

#include <algorithm>

namespace {

constexpr int kLineDecimals = 3; // of what is told relative to the line, and of the distance

using TGap = TIELayoutGap<CIESheetPoint>;

/// Whether any measurement has something else than 0 there.
template <double CIEOffsetStation::*pValue>
bool HasOffset(const CIESheetPoint& sheet)
{
    for (int i = 1; const CIEOffsetStation* const pMeasured = sheet.GetOffsetStation(i); ++i) {
        if (pMeasured->*pValue != 0.0)
            return true;
    }
    return false;
}

template <double CIEStation::*pValue>
bool HasDesign(const CIESheetPoint& sheet)
{
    return sheet.GetStation(0)->*pValue != 0.0;
}

template <double CIEStation::*pValue>
bool HasMeasured(const CIESheetPoint& sheet)
{
    for (int i = 1; const CIEStation* const pMeasured = sheet.GetStation(i); ++i) {
        if (pMeasured->*pValue != 0.0)
            return true;
    }
    return false;
}

bool HasMeasuredNames(const CIESheetPoint& sheet)
{
    for (int i = 1; const CIEStation* const pMeasured = sheet.GetStation(i); ++i) {
        if (!pMeasured->GetName().empty())
            return true;
    }
    return false;
}

bool HasDesignName(const CIESheetPoint& sheet)
{
    const CString& strName = sheet.GetStation(0)->GetName();
    return !strName.empty() && strName != sheet.GetName();
}

constexpr TGap kGaps[] = {
    {IEAsciiFields::SheetName, EIENote::ObjectName, "name",
     [](const CIESheetPoint& sheet) { return !sheet.GetName().empty(); }},
    {IEAsciiFields::MeasuredName, EIENote::ObjectName, "measurements' names", HasMeasuredNames},
    {TGap::kNoField, EIENote::ObjectName, "design point's name", HasDesignName},
    {IEAsciiFields::DesignNorth, EIENote::ObjectCoordinates, "design north", HasDesign<&CIEStation::m_dNorth>},
    {IEAsciiFields::DesignEast, EIENote::ObjectCoordinates, "design east", HasDesign<&CIEStation::m_dEast>},
    {IEAsciiFields::DesignHeight, EIENote::ObjectCoordinates, "design height", HasDesign<&CIEStation::m_dHeight>},
    {IEAsciiFields::MeasuredNorth, EIENote::ObjectCoordinates, "measured north", HasMeasured<&CIEStation::m_dNorth>},
    {IEAsciiFields::MeasuredEast, EIENote::ObjectCoordinates, "measured east", HasMeasured<&CIEStation::m_dEast>},
    {IEAsciiFields::MeasuredHeight, EIENote::ObjectCoordinates, "measured height", HasMeasured<&CIEStation::m_dHeight>},
    {TGap::kNoField, EIENote::ObjectTimeStamps, "design point's time stamps",
     [](const CIESheetPoint& sheet) { return !sheet.GetStation(0)->GetTimeStamps().empty(); }},
    {IEAsciiFields::DeltaNorth, EIENote::ObjectOffsets, "difference in north",
     HasOffset<&CIEOffsetStation::m_dDeltaNorth>},
    {IEAsciiFields::DeltaEast, EIENote::ObjectOffsets, "difference in east",
     HasOffset<&CIEOffsetStation::m_dDeltaEast>},
    {IEAsciiFields::LineStation, EIENote::ObjectOffsets, "station on the line",
     HasOffset<&CIEOffsetStation::m_dLineStation>},
    {IEAsciiFields::LineOffset, EIENote::ObjectOffsets, "offset from the line",
     HasOffset<&CIEOffsetStation::m_dLineOffset>},
    {IEAsciiFields::DeltaStation, EIENote::ObjectOffsets, "difference along the line",
     HasOffset<&CIEOffsetStation::m_dDeltaStation>},
    {IEAsciiFields::DeltaOffset, EIENote::ObjectOffsets, "difference across the line",
     HasOffset<&CIEOffsetStation::m_dDeltaOffset>},
    {IEAsciiFields::Distance, EIENote::ObjectOffsets, "distance", HasOffset<&CIEOffsetStation::m_dDistance>},
};

/// Whether the height difference has a field of its own, or one for each sign.
bool HoldsHeightDifference(const IEAsciiFields::TFields& layout)
{
    const auto has = [&layout](IEAsciiFields::EType eField) {
        return IEAsciiFields::FindTypeInArray(eField, layout) >= 0;
    };
    return has(IEAsciiFields::DeltaHeight) || has(IEAsciiFields::ToGrade) ||
           (has(IEAsciiFields::Cut) && has(IEAsciiFields::Fill));
}

bool HasPlaneField(const IEAsciiFields::TFields& layout)
{
    constexpr IEAsciiFields::EType kPlane[] = {IEAsciiFields::DesignNorth, IEAsciiFields::DesignEast,
                                               IEAsciiFields::MeasuredNorth, IEAsciiFields::MeasuredEast};
    return std::any_of(std::begin(kPlane), std::end(kPlane), [&layout](IEAsciiFields::EType eField) {
        return IEAsciiFields::FindTypeInArray(eField, layout) >= 0;
    });
}

} // namespace

bool CIESheetPointExporter::OpenFile()
{
    const IEAsciiFields::TFields& layout = m_pData->GetSettings().GetAsciiFormat().m_Fields;
    TIECarries nCarries = CARRIES_SHEET_POINTS;
    if (IEAsciiFields::FindTypeInArray(IEAsciiFields::SheetCodes, layout) >= 0)
        nCarries |= CARRIES_CODES | CARRIES_ATTRIBUTES | CARRIES_CODE_STRINGS | CARRIES_CONTROL_CODES;
    if (IEAsciiFields::FindTypeInArray(IEAsciiFields::MeasuredTime, layout) >= 0)
        nCarries |= CARRIES_TIME_STAMPS;
    SetCarries(nCarries);
    for (const IEAsciiFields::EType eField : layout) {
        if (eField < IEAsciiFields::SheetName)
            Note(TIENote::LeftOut, EIENote::LayoutField, {},
                 "its field \"" + IEAsciiFields::FieldsToString({eField}) +
                     "\" stays empty in a list of sheet points, whose own begin with sheet-name");
    }
    if (HasPlaneField(layout))
        Losses::NoteCoarseDegrees(*m_pData, m_strFileName);
    return CIEPointExporter::OpenFile();
}

bool CIESheetPointExporter::ExportObject(int nIndex)
{
    const CIEDataset* const pDataset = m_pData->GetCurDataset(false);
    const CIEObject* const pObject = pDataset ? pDataset->GetObjectAt(nIndex) : nullptr;
    if (!pObject)
        return true;
    NoteLosses(*pObject);
    if (pObject->GetType() != EIEObjectsType::SheetPoint)
        return true;
    const auto& sheet = static_cast<const CIESheetPoint&>(*pObject);
    if (m_pData->GetObserver()) {
        NoteMissing(sheet);
        NoteTexts(sheet);
    }
    for (int i = 1; sheet.GetOffsetStation(i); ++i) {
        if (!WriteRow(sheet, i))
            return false;
    }
    return true;
}

bool CIESheetPointExporter::WriteRow(const CIESheetPoint& sheet, int nMeasurement)
{
    if (!m_pFile)
        return false;
    const TIEAsciiFormat& format = m_pData->GetSettings().GetAsciiFormat();
    const CString strDelimiter = IEUtils::CharToString(format.m_cDelimiter);
    const CIEOffsetStation& measured = *sheet.GetOffsetStation(nMeasurement);
    m_Line.Clear();
    for (std::size_t i = 0; i < format.m_Fields.size(); ++i) {
        if (i > 0)
            m_Line.Add(strDelimiter);
        // each adds nothing for a field of the others
        AddTexts(format.m_Fields[i], sheet, nMeasurement);
        AddPlaces(format.m_Fields[i], *sheet.GetStation(0), measured);
        AddOffsets(format.m_Fields[i], measured);
    }
    return m_Line.EndTo(*m_pFile);
}

void CIESheetPointExporter::AddTexts(int nField, const CIESheetPoint& sheet, int nMeasurement)
{
    switch (nField) {
    case IEAsciiFields::SheetName:
        AddText(sheet.GetName());
        break;
    case IEAsciiFields::SheetCodes:
        AddText(MakeCodeString(&sheet, true, true, true));
        break;
    case IEAsciiFields::MeasuredName:
        AddText(sheet.GetStation(nMeasurement)->GetName());
        break;
    case IEAsciiFields::MeasuredTime:
        AddText(sheet.GetStation(nMeasurement)->GetTimeStamps());
        break;
    case IEAsciiFields::MeasurementNumber:
        m_Line.AddInt(nMeasurement);
        break;
    default:
        break;
    }
}

void CIESheetPointExporter::AddPlaces(int nField, const CIEStation& design, const CIEStation& measured)
{
    const TIESettings& settings = m_pData->GetSettings();
    switch (nField) {
    case IEAsciiFields::DesignNorth:
        AddCoordinate(design.m_dNorth, settings.m_nNorthDecimals);
        break;
    case IEAsciiFields::DesignEast:
        AddCoordinate(design.m_dEast, settings.m_nEastDecimals);
        break;
    case IEAsciiFields::DesignHeight:
        AddDistance(design.GetHeight(), settings.m_nHeightDecimals);
        break;
    case IEAsciiFields::MeasuredNorth:
        AddCoordinate(measured.m_dNorth, settings.m_nNorthDecimals);
        break;
    case IEAsciiFields::MeasuredEast:
        AddCoordinate(measured.m_dEast, settings.m_nEastDecimals);
        break;
    case IEAsciiFields::MeasuredHeight:
        AddDistance(measured.GetHeight(), settings.m_nHeightDecimals);
        break;
    default:
        break;
    }
}

void CIESheetPointExporter::AddOffsets(int nField, const CIEOffsetStation& measured)
{
    const TIESettings& settings = m_pData->GetSettings();
    const double dHeight = measured.m_dDeltaHeight;
    switch (nField) {
    case IEAsciiFields::Cut:
        AddDistance(dHeight > 0.0 ? dHeight : 0.0, settings.m_nHeightDecimals);
        break;
    case IEAsciiFields::Fill:
        AddDistance(dHeight < 0.0 ? -dHeight : 0.0, settings.m_nHeightDecimals);
        break;
    case IEAsciiFields::ToGrade:
        AddDistance(-dHeight, settings.m_nHeightDecimals);
        break;
    case IEAsciiFields::DeltaNorth:
        AddDistance(measured.m_dDeltaNorth, settings.m_nNorthDecimals);
        break;
    case IEAsciiFields::DeltaEast:
        AddDistance(measured.m_dDeltaEast, settings.m_nEastDecimals);
        break;
    case IEAsciiFields::DeltaHeight:
        AddDistance(dHeight, settings.m_nHeightDecimals);
        break;
    case IEAsciiFields::LineStation:
        AddDistance(measured.m_dLineStation, kLineDecimals);
        break;
    case IEAsciiFields::LineOffset:
        AddDistance(measured.m_dLineOffset, kLineDecimals);
        break;
    case IEAsciiFields::DeltaStation:
        AddDistance(measured.m_dDeltaStation, kLineDecimals);
        break;
    case IEAsciiFields::DeltaOffset:
        AddDistance(measured.m_dDeltaOffset, kLineDecimals);
        break;
    case IEAsciiFields::Distance:
        AddDistance(measured.m_dDistance, kLineDecimals);
        break;
    default:
        break;
    }
}

void CIESheetPointExporter::NoteMissing(const CIESheetPoint& sheet) const
{
    const CString& strName = sheet.GetName();
    if (!sheet.GetOffsetStation(1)) {
        Note(TIENote::LeftOut, EIENote::ObjectNoMeasurement, strName,
             "a sheet point without a measurement has no line");
        return;
    }
    const IEAsciiFields::TFields& layout = m_pData->GetSettings().GetAsciiFormat().m_Fields;
    ForEachLayoutGap(kGaps, layout, sheet, [&](EIENote eCode, const CString& strWords) {
        Note(TIENote::LeftOut, eCode, strName, "the list has no field for its " + strWords);
    });
    if (HasOffset<&CIEOffsetStation::m_dDeltaHeight>(sheet) && !HoldsHeightDifference(layout))
        Note(TIENote::LeftOut, EIENote::ObjectOffsets, strName, "the list has no field for its difference in height");
}

void CIESheetPointExporter::NoteTexts(const CIESheetPoint& sheet)
{
    if (!sheet.GetOffsetStation(1))
        return;
    const TIEAsciiFormat& format = m_pData->GetSettings().GetAsciiFormat();
    const auto anyMeasured = [&](const CString& (CIEStation::*pGet)() const) {
        for (int i = 1; const CIEStation* const pMeasured = sheet.GetStation(i); ++i) {
            if (BreaksRow((pMeasured->*pGet)(), format.m_cDelimiter))
                return true;
        }
        return false;
    };
    const auto note = [&](EIENote eCode, const char* pWhat) {
        Note(TIENote::Changed, eCode, sheet.GetName(),
             CString("the delimiter or a line end in its ") + pWhat + " doesn't come back as it is");
    };
    for (const IEAsciiFields::EType eField : format.m_Fields) {
        if (eField == IEAsciiFields::SheetName && BreaksRow(sheet.GetName(), format.m_cDelimiter))
            note(EIENote::ObjectName, "name");
        if (eField == IEAsciiFields::MeasuredName && anyMeasured(&CIEStation::GetName))
            note(EIENote::ObjectName, "measurements' names");
        if (eField == IEAsciiFields::MeasuredTime && anyMeasured(&CIEStation::GetTimeStamps))
            note(EIENote::ObjectTimeStamps, "measurements' time stamps");
        if (eField == IEAsciiFields::SheetCodes &&
            BreaksRow(MakeCodeString(&sheet, true, true, true), format.m_cDelimiter, sheet.GetNumberOfCodes()))
            note(EIENote::ObjectCodes, "codes");
    }
}
