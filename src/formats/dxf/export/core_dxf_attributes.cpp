// Codes as attributes of blocks.
#include "alidade/formats/dxf/export/core_dxf_exporter.h"
#include "alidade/vellumlib/utils.h"
#include "formats/dxf/export/dxf_output.h"

struct TDXFAttribute {
    CString m_strTag;
    std::string_view m_Value;
};

namespace {

constexpr std::string_view kDatasetExtras = "JP.DATASETEXTRAS"; ///< a code of the host's own
constexpr int kInvisible = 1;                                   ///< flag of an attribute

/// What a tag says of the type of its values: a letter, the digits ahead of the point, and behind it.
const char* SuffixOf(CIEAttrDescription::EType eType)
{
    switch (eType) {
    case CIEAttrDescription::INT:
        return "N003000";
    case CIEAttrDescription::REAL:
        return "N006006";
    case CIEAttrDescription::TEXT:
    case CIEAttrDescription::LIST:
        break;
    }
    return "C016000";
}

/// width:ROAD:N006006, or without the name of its code width:N006006
CString MakeTag(const CIEAttrDescription& attribute, const CString& strCode, bool bWithCode)
{
    CString strTag = CCoreDXFExporter::GetTagName(attribute.GetName());
    if (bWithCode)
        strTag += ":" + strCode;
    return strTag + ":" + SuffixOf(attribute.GetType());
}

/// "CODENAME" for the first, then "CODENAME1" ...
CString Number(const char* pWord, int i)
{
    return i > 0 ? pWord + IEUtils::IntToString(i) : CString(pWord);
}

} // namespace

CString CCoreDXFExporter::GetTagName(const CString& strAttribute)
{
    constexpr int kNumbering = 2; // "1." ahead of a name, by which a host keeps its attributes in order
    if (strAttribute.find('.') == CString::npos)
        return strAttribute;
    return strAttribute.substr(IEUtils::Left(strAttribute, kNumbering).size());
}

bool CCoreDXFExporter::GenerateAttDef(const CIEObject& object)
{
    return ForAllAttributes(object, *object.GetStation(0), true);
}

bool CCoreDXFExporter::GenerateAttrib(const CIEObject& object)
{
    return ForAllAttributes(object, *object.GetStation(0), false);
}

bool CCoreDXFExporter::ForAllAttributes(const CIEObject& object, const CIEStation& station, bool bAttDef)
{
    const bool bWithCode = m_pData->GetSettings().m_bSingleFile;
    const std::string_view layer = LayerOf(object);
    bool bWritten = true;
    const auto write = [&](const TDXFAttribute& attribute) {
        bWritten = bWritten && WriteAttribute(attribute, station, layer, bAttDef);
    };
    for (int i = 0; const CIECodeValues* const pCode = object.GetCode(i); ++i) {
        const CIECodeDescription& description = *pCode->GetDescription();
        if (description.GetName() == kDatasetExtras)
            continue;
        for (int j = 0; const CIEAttrDescription* const pAttribute = description.GetAttrDescriptionAt(j); ++j)
            write({MakeTag(*pAttribute, description.GetName(), bWithCode), pCode->GetAttrAt(j)});
        if (description.GetSize() == 0)
            write({Number("CODENAME", i), description.GetName()});
        for (int k = 0; k < pCode->GetNumberOfCodeStrings(); ++k)
            write({Number("CODESTRING", k) + ":" + description.GetName(), pCode->GetCodeStringAt(k)});
    }
    return bWritten;
}

bool CCoreDXFExporter::WriteAttribute(const TDXFAttribute& attribute, const CIEStation& station, std::string_view layer,
                                      bool bAttDef)
{
    TDXFOutput& out = *m_pOut;
    if (!(out.WriteString(0, bAttDef ? "ATTDEF" : "ATTRIB") && out.WriteString(8, layer) && WriteReference(station) &&
          out.WriteDouble(40, m_dAttributeHeight) && out.WriteDouble(41, 1.0)))
        return false;
    if (bAttDef) {
        const CString strTag = CreateCorrectDXFName(attribute.m_strTag, true);
        if (!(out.WriteString(2, strTag) && out.WriteString(3, strTag)))
            return false;
    } else if (!out.WriteString(2, attribute.m_strTag)) {
        return false;
    }
    return out.WriteString(1, attribute.m_Value) && out.WriteInt(70, kInvisible);
}
