// Drawings for tests, told as groups between bars: "0 POINT|8 WALLS|10 1.5|20 2". The first blank ends the code.
#pragma once

#include "alidade/transfer/entries.h"
#include "alidade/vellumlib/autocad_utils.h"
#include "support/files.h"
#include "support/jobs.h"
#include "vellumlib/little_endian.h"

namespace Drawing {

constexpr int kImportCode = 4;
constexpr std::string_view kSentinel("AutoCAD Binary DXF\r\n\x16\0", 22);

template <class TDo>
void ForEachGroup(std::string_view groups, TDo doGroup)
{
    while (!groups.empty()) {
        const std::string_view group = groups.substr(0, groups.find('|'));
        groups.remove_prefix(std::min(group.size() + 1, groups.size()));
        const std::string_view code = group.substr(0, group.find(' '));
        doGroup(code, group.substr(std::min(code.size() + 1, group.size())));
    }
}

inline CString ToText(std::string_view groups, std::string_view lineEnd = "\r\n")
{
    CString text;
    ForEachGroup(groups, [&](std::string_view code, std::string_view value) {
        for (const std::string_view line : {code, value})
            (text += line) += lineEnd;
    });
    return text;
}

inline CString ToBinary(std::string_view groups)
{
    CString bytes(kSentinel);
    ForEachGroup(groups, [&](std::string_view code, std::string_view value) {
        const int nCode = IEUtils::StringToInt(code);
        LittleEndian::AppendInt32(bytes, nCode);
        if (nCode >= 0 && nCode <= 9)
            (bytes += value) += '\0';
        else if (nCode >= 10 && nCode <= 59)
            LittleEndian::AppendDouble(bytes, IEUtils::StringToDouble(value));
        else if (nCode >= 60 && nCode <= 78)
            LittleEndian::AppendInt32(bytes, IEUtils::StringToInt(value));
    });
    return bytes;
}

/// The binary form of other programs, with codes of one byte as in old drawings, or of two.
inline CString ToOtherBinary(std::string_view groups, bool bNarrow)
{
    CString bytes(kSentinel);
    bytes[20] = '\x1A';
    ForEachGroup(groups, [&](std::string_view code, std::string_view value) {
        const int nCode = IEUtils::StringToInt(code);
        const bool bOneByte = bNarrow && nCode < 255;
        if (bNarrow && !bOneByte)
            bytes += '\xFF';
        LittleEndian::Append(bytes, static_cast<std::uint64_t>(nCode), bOneByte ? 1 : 2);
        const auto appendInt = [&](int nBytes) {
            LittleEndian::Append(bytes, static_cast<std::uint64_t>(IEUtils::StringToInt(value)), nBytes);
        };
        if ((nCode >= 10 && nCode <= 59) || nCode == 210 || nCode == 1010)
            LittleEndian::AppendDouble(bytes, IEUtils::StringToDouble(value));
        else if ((nCode >= 60 && nCode <= 79) || nCode == 370)
            appendInt(2);
        else if (nCode == 90 || nCode == 420 || nCode == 1071)
            appendInt(4);
        else if (nCode == 160)
            appendInt(8);
        else if (nCode == 290)
            appendInt(1);
        else if (nCode == 310 || nCode == 1004)
            (bytes += static_cast<char>(value.size())) += value;
        else
            (bytes += value) += '\0';
    });
    return bytes;
}

/// A whole drawing; empty parts are left out.
inline CString Make(const CString& entities, const CString& blocks = {}, const CString& tables = {},
                    const CString& header = {})
{
    const auto section = [](const char* pName, const CString& content) {
        return content.empty() ? CString() : CString("0 SECTION|2 ") + pName + "|" + content + "|0 ENDSEC|";
    };
    return section("HEADER", header) + section("TABLES", tables) + section("BLOCKS", blocks) +
           section("ENTITIES", entities) + "0 EOF";
}

inline CString DescribeProperties(const CIEDrawProperties* pProperties)
{
    CString text;
    TIEColor color = 0;
    int nWidth = 0;
    auto eStyle = CIEDrawLineProperties::ByLayer;
    if (pProperties && pProperties->GetColor(color))
        text += " color " + std::to_string(CIEAutoCADUtils().ConvertRGBTo256(color));
    if (!pProperties || pProperties->GetType() != CIEDrawProperties::Lines)
        return text;
    const auto& line = static_cast<const CIEDrawLineProperties&>(*pProperties);
    if (line.GetDashStyle(eStyle))
        text += CString(" ") + line.GetDashStyleTypeAsString();
    if (line.GetWidth(nWidth))
        text += " width " + std::to_string(nWidth);
    return text;
}

/// One object in one line, what drawings tell of it behind the rest; objects of blocks begin with "*".
inline CString TellObject(const CIEObject& object)
{
    CString text = (object.GetStateType() == CIEObject::InBlock ? "*" : "") + ::Describe(object);
    if (object.GetType() == EIEObjectsType::Arc) {
        for (int i = 0; i < CIEArc::kDataTypes; ++i)
            text += (i > 0 ? " " : " r ") + IEUtils::DoubleToString(static_cast<const CIEArc&>(object).GetData(i), -1);
    }
    if (object.GetLayer())
        text += " on " + object.GetLayer()->GetName();
    return text + DescribeProperties(object.GetDrawProperties());
}

inline CString TellFaces(const CIESurface& surface)
{
    CString text;
    for (int i = 0; const CIETriangle* const pTriangle = surface.GetTriangleAt(i); ++i) {
        text += "face";
        for (int k = 0; k < CIETriangle::kCorners; ++k) {
            const CIEStation& corner = *surface.GetPositionAt(pTriangle->GetPosition(k));
            for (const double dValue : {corner.m_dNorth, corner.m_dEast, corner.m_dHeight})
                text += " " + IEUtils::DoubleToString(dValue, -1);
            text += k < 2 ? " |" : "\n";
        }
    }
    return text;
}

/// All objects of the first dataset, and its faces.
inline CString TellJob(const CIEData& job)
{
    CString text;
    const CIEDataset* const pDataset = job.GetDatasetAt(0);
    for (int i = 0; const CIEObject* const pObject = pDataset ? pDataset->GetObjectAt(i) : nullptr; ++i)
        text += TellObject(*pObject) + "\n";
    for (int i = 0; pDataset && i < pDataset->GetNumberOfSurfaces(); ++i)
        text += TellFaces(*pDataset->GetSurfaceAt(i));
    return text;
}

inline CString DescribeLayers(const CIEData& job)
{
    CString text;
    for (int i = 0; const CIELayer* const pLayer = job.GetIEDrawDictionary()->GetLayerAt(i); ++i)
        text += pLayer->GetName() + (pLayer->IsActive() ? "" : " off") + (pLayer->IsPlot() ? "" : " no-plot") +
                DescribeProperties(pLayer->GetDrawProperties()) +
                (pLayer->GetNotes().empty() ? CString() : " '" + pLayer->GetNotes() + "'") + "\n";
    return text;
}

class CDrawingTest : public testing::Test {
protected:
    EIEResult Import(CIEData& job, std::string_view bytes)
    {
        const CString strFile = m_Folder / "Site.dxf";
        WriteFile(strFile, bytes);
        m_Ledger.Clear();
        job.SetObserver(&m_Ledger);
        const EIEResult eResult = ImportInTheSameThread(&job, strFile, kImportCode);
        job.SetObserver(nullptr);
        EXPECT_EQ(FindNumberFault(job), "");
        return eResult;
    }

    /// Objects of a drawing, behind the result if that isn't 13.
    CString Read(CIEData& job, std::string_view bytes)
    {
        const EIEResult eResult = Import(job, bytes);
        return (eResult == IE_OK ? CString() : "result " + std::to_string(eResult) + "\n") + TellJob(job);
    }
    CString Read(std::string_view bytes)
    {
        CIEData job;
        return Read(job, bytes);
    }

    /// "line:code" for each note of the last import.
    [[nodiscard]] CString Notes() const
    {
        CString text;
        for (const TIENote& note : m_Ledger.GetNotes())
            text += (text.empty() ? "" : " ") + std::to_string(note.m_Place.m_nLine) + ":" + note.GetWord();
        return text;
    }

    /// The kinds of notes of the last import, with blanks between.
    [[nodiscard]] CString NoteCodes() const
    {
        CString codes;
        for (const auto& [eCode, nCount] : m_Ledger.GetCounts())
            codes.append(codes.empty() ? "" : " ").append(GetNoteWord(eCode));
        return codes;
    }

    /// FindFault for jobs whose polylines may have no vertex.
    static CString FindNumberFault(const CIEData& job)
    {
        const CString strFault = FindFault(job);
        return strFault.starts_with("no station") ? CString() : strFault;
    }

    TStopGuard m_Guard;
    CTempFolder m_Folder;
    CIELedger m_Ledger;
};

} // namespace Drawing
