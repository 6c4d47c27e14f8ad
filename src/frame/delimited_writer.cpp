// One station as a delimited line, one object's codes as text.

#include "alidade/frame/point_exporter.h"
#include "alidade/vellumlib/utils.h"
#include "frame/delimited_text.h"

using namespace DelimitedText;

namespace {

void AppendQuoted(CString& out, std::string_view text, bool bQuotes)
{
    if (bQuotes)
        out += '"';
    out += text;
    if (bQuotes)
        out += '"';
}

void AppendType(CString& out, const CIEAttrDescription& attribute)
{
    out += kTypeMark;
    switch (attribute.GetType()) {
    case CIEAttrDescription::TEXT:
        out += kText;
        break;
    case CIEAttrDescription::INT:
        out += kInt;
        break;
    case CIEAttrDescription::REAL:
        out += kReal;
        break;
    case CIEAttrDescription::LIST:
        out += kList;
        out += '(';
        for (std::size_t i = 0; i < attribute.GetListItems().size(); ++i) {
            if (i > 0)
                out += kItemMark;
            out += attribute.GetListItems()[i];
        }
        out += ')';
        break;
    }
}

} // namespace

void CIEPointExporter::AddText(std::string_view text)
{
    if (text.find_first_of("\r\n") == std::string_view::npos) {
        m_Line.Add(text);
        return;
    }
    for (const char c : text)
        m_Line.Add(c == '\r' || c == '\n' ? ' ' : c);
}

bool CIEPointExporter::WriteHeader()
{
    const TIEAsciiFormat& format = m_pData->GetSettings().GetAsciiFormat();
    if (!format.m_bWriteHeader || !m_pFile)
        return true;
    m_Line.Clear();
    m_Line.Add(kHeaderStart).Add(' ').Add(kDelimiter).Add(IEUtils::CharToString(format.m_cDelimiter)).Add(") ");
    m_Line.Add(kFileFormat).Add(IEAsciiFields::FieldsToString(format.m_Fields)).Add(") ").Add(kHeaderEnd);
    return m_Line.EndTo(*m_pFile);
}

bool CIEPointExporter::WriteStation(const CIEStation* pStation, const CIEObject* pObject)
{
    if (!pObject || !pStation)
        return true;
    if (!m_pFile)
        return false;
    MakeLine(*pStation, *pObject);
    return m_Line.EndTo(*m_pFile);
}

void CIEPointExporter::MakeLine(const CIEStation& station, const CIEObject& object)
{
    const TIEAsciiFormat& format = m_pData->GetSettings().GetAsciiFormat();
    const CString strDelimiter = IEUtils::CharToString(format.m_cDelimiter);
    m_Line.Clear();
    for (std::size_t i = 0; i < format.m_Fields.size(); ++i) {
        if (i > 0)
            m_Line.Add(strDelimiter);
        AddField(format.m_Fields[i], station, object);
    }
    if (object.GetType() == EIEObjectsType::PTLPoint) {
        const auto& relative = static_cast<const CIEPTLPoint&>(object);
        m_Line.Add(strDelimiter);
        AddText(relative.GetFirstReferencePointIDs());
        m_Line.Add(strDelimiter);
        AddText(relative.GetSecondReferencePointIDs());
    }
}

void CIEPointExporter::AddDistance(double dMeters, int nDecimals)
{
    m_Line.AddFixed(IEUtils::FromMetersFactor(dMeters, m_pData->GetJobInfo()->GetDistUnits()), nDecimals);
}

void CIEPointExporter::AddCoordinate(double dValue, int nDecimals)
{
    if (m_pData->GetJobInfo()->GetCSType() != TIEJobInfo::Geographic)
        AddDistance(dValue, nDecimals);
    else
        m_Line.Add(IEUtils::CoordsByStyleToString(m_pData->GetSettings().m_eCoordsStyle, dValue, nDecimals));
}

void CIEPointExporter::AddField(int nField, const CIEStation& station, const CIEObject& object)
{
    const TIESettings& settings = m_pData->GetSettings();
    switch (nField) {
    case IEAsciiFields::Name:
        AddText(object.GetName());
        break;
    case IEAsciiFields::North:
        AddCoordinate(station.m_dNorth, settings.m_nNorthDecimals);
        break;
    case IEAsciiFields::East:
        AddCoordinate(station.m_dEast, settings.m_nEastDecimals);
        break;
    case IEAsciiFields::Height:
        AddDistance(station.GetHeight(), settings.m_nHeightDecimals);
        break;
    case IEAsciiFields::GeoidHeight:
        AddDistance(station.GetGeoidHeight(), settings.m_nHeightDecimals);
        break;
    case IEAsciiFields::Notes:
        AddText(station.GetNotes());
        break;
    case IEAsciiFields::Codes:
        AddText(MakeCodeString(&object, false, false, false));
        break;
    case IEAsciiFields::CodesWithStrings:
        AddText(MakeCodeString(&object, false, true, false));
        break;
    case IEAsciiFields::CodesWithAttributes:
        AddText(MakeCodeString(&object, true, false, false));
        break;
    case IEAsciiFields::CodesWithAll:
        AddText(MakeCodeString(&object, true, true, true));
        break;
    default:
        break; // a property that other lists know stays empty
    }
}

CString CIEPointExporter::MakeCodeString(const CIEObject* pObject, bool bAttributes, bool bCodeStrings,
                                         bool bControlCodes)
{
    CString out;
    if (!pObject)
        return out;
    for (int i = 0; const CIECodeValues* const pCode = pObject->GetCode(i); ++i) {
        if (i > 0)
            out += IEUtils::CharToString(m_pData->GetSettings().GetAsciiFormat().m_cDelimiter);
        AddCode(*pCode, bAttributes, bCodeStrings, bControlCodes, out);
    }
    return out;
}

void CIEPointExporter::AddCode(const CIECodeValues& code, bool bAttributes, bool bCodeStrings, bool bControlCodes,
                               CString& out) const
{
    const TIESettings& settings = m_pData->GetSettings();
    const CIECodeDescription& description = *code.GetDescription();
    out += description.GetName();
    for (int i = 0; bAttributes && i < description.GetSize(); ++i) {
        const CIEAttrDescription& attribute = *description.GetAttrDescriptionAt(i);
        out += i == 0 ? kAttributesMark : kAttributeMark;
        out += attribute.GetName();
        if (settings.m_bAttrTypes)
            AppendType(out, attribute);
        out += kValueMark;
        const bool bText =
            attribute.GetType() == CIEAttrDescription::TEXT || attribute.GetType() == CIEAttrDescription::LIST;
        AppendQuoted(out, code.GetAttrAt(i), bText && settings.m_bAttrQuotes);
    }
    for (int i = 0; bCodeStrings && i < code.GetNumberOfCodeStrings(); ++i) {
        out += kCodeStringMark;
        AppendQuoted(out, code.GetCodeStringAt(i), settings.m_bAttrQuotes);
    }
    for (int i = 0; bControlCodes && i < CIECodeValues::kControlCodes; ++i) {
        if (code.GetControlCode(i).empty())
            continue;
        out += kControlCodeMark;
        AppendQuoted(out, code.GetControlCode(i), settings.m_bAttrQuotes);
    }
}
