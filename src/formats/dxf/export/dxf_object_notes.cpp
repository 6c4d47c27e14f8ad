#include "formats/dxf/export/dxf_notes.h"

#include "alidade/formats/dxf/export/core_dxf_exporter.h"
#include "alidade/vellumlib/utils.h"
#include "formats/dxf/export/dxf_note_words.h"
#include "formats/dxf/export/dxf_output.h"

#include <algorithm>
#include <cmath>

using namespace DXFNoteWords;

namespace {

constexpr std::size_t kLongestEscape = 14; ///< bytes that a character may take
constexpr std::string_view kDatasetExtras = "JP.DATASETEXTRAS";

/// Whether a tag of a code and an attribute loses its end, either of which may be short enough alone.
bool IsCut(const CString& strTag)
{
    return strTag.size() > TDXFOutput::kLongestText / kLongestEscape &&
           TDXFOutput::AsRead(strTag).size() < strTag.size();
}

} // namespace

void CDXFNotes::NoteObject(const CIEObject& object)
{
    if (!object.GetStation(0)) {
        Add(TIENote::LeftOut, EIENote::ObjectNoStation, object.GetName(),
            "without a station, it has no place in a drawing");
        return;
    }
    NoteName(object);
    if (object.GetGroupType() == CIEObject::SheetLike || object.GetGroupType() == CIEObject::CompositeLike)
        return;
    NoteLayerOf(object);
    NoteNumbers(object);
    NoteRing(object);
    NoteDrawing(object);
    NoteCodes(object);
}

void CDXFNotes::NoteLayerOf(const CIEObject& object)
{
    const CIELayer* const pLayer = object.GetLayer();
    if (pLayer && !m_Layers.contains(pLayer))
        Add(TIENote::LeftOut, EIENote::ObjectLayer, object.GetName(),
            "the drawing has no entry for its layer \"" + pLayer->GetName() + "\"");
    const CIEDrawDictionary& layers = *m_Job.GetIEDrawDictionary();
    if (pLayer || m_bDefaultLayerTold || layers.GetNumberOfLayers() == 0)
        return;
    m_bDefaultLayerTold = true;
    const CIELayer* const pDefault = layers.GetDefaultLayer();
    Add(TIENote::Changed, EIENote::JobDefaultLayer, {},
        "objects without a layer go out on the layer \"" + (pDefault ? pDefault : layers.GetLayerAt(0))->GetName() +
            "\"");
}

void CDXFNotes::NoteName(const CIEObject& object)
{
    const CString& strName = object.GetName();
    if (IsWord(strName))
        Add(TIENote::Changed, EIENote::ObjectWord, strName,
            "its name is a word of the form, by which a reader may take it for another object");
    if (!m_bCodes)
        return;
    LookAtCase(strName);
    const CString strRead = TDXFOutput::AsRead(CCoreDXFExporter::CreateCorrectDXFName(strName, true));
    if (strRead != strName)
        Add(TIENote::Changed, EIENote::ObjectName, strName,
            "drawings allow no such name; it is read back as \"" + strRead + "\"");
    if (const auto block = m_Blocks.find(IEUtils::ToUpper(strRead)); block != m_Blocks.end() && block->second > 1)
        Add(TIENote::Changed, EIENote::ObjectBlockName, strName,
            IEUtils::IntToString(block->second) + " objects have blocks of the name \"" + block->first +
                "\", and a reader puts all of them where each one lies");
}

void CDXFNotes::NoteNumbers(const CIEObject& object)
{
    bool bNumbers = true;
    const CIEStation& first = *object.GetStation(0);
    for (int i = 0; const CIEStation* const pStation = object.GetStation(i); ++i) {
        double dNorth = pStation->m_dNorth, dEast = pStation->m_dEast, dHeight = pStation->GetHeight();
        if (m_bCodes && i > 0) { // a block holds what lies between them
            dNorth -= first.m_dNorth;
            dEast -= first.m_dEast;
            dHeight -= first.GetHeight();
        }
        bNumbers = bNumbers && ArePlaceNumbers(dNorth, dEast, dHeight, m_ePlaneUnits);
    }
    if (object.GetType() == EIEObjectsType::Arc) {
        const auto& arc = static_cast<const CIEArc&>(object);
        bNumbers = bNumbers && IsNumber(arc.GetData(CIEArc::Radius), m_eUnits) &&
                   IsNumber(arc.GetData(CIEArc::StartAngle), EDIST_UNITS::None) &&
                   IsNumber(arc.GetData(CIEArc::EndAngle), EDIST_UNITS::None);
    }
    if (!bNumbers)
        AddTooLarge(EIENote::ObjectCoordinates, object.GetName());
}

/// Whether the drawing has the same number for both, less the base, as it has what is in a block.
bool CDXFNotes::IsOneNumber(double dFirst, double dSecond, double dBase, EDIST_UNITS units) const
{
    constexpr double kFarApart = 0.01; // for six decimals in any units
    if (dFirst == dSecond || m_bBinary || std::fabs(dSecond - dFirst) > kFarApart)
        return dFirst == dSecond;
    return IEUtils::DoubleToString(IEUtils::FromMetersFactor(dFirst - dBase, units), TDXFOutput::kDecimals) ==
           IEUtils::DoubleToString(IEUtils::FromMetersFactor(dSecond - dBase, units), TDXFOutput::kDecimals);
}

bool CDXFNotes::AreOnePlace(const CIEStation& first, const CIEStation& last) const
{
    const auto isOne = [this](double dFirst, double dLast, EDIST_UNITS units) {
        return IsOneNumber(dFirst, dLast, m_bCodes ? dFirst : 0.0, units);
    };
    return isOne(first.m_dNorth, last.m_dNorth, m_ePlaneUnits) && isOne(first.m_dEast, last.m_dEast, m_ePlaneUnits) &&
           isOne(first.GetHeight(), last.GetHeight(), m_eUnits);
}

void CDXFNotes::NoteRing(const CIEObject& object)
{
    if (object.GetGroupType() != CIEObject::LineLike)
        return;
    constexpr int kLeastRing = 3;
    const int nStations = object.GetNumberOfStations();
    const CString& strName = object.GetName();
    const bool bEnds = AreOnePlace(*object.GetStation(0), *object.GetStation(nStations - 1));
    if (object.GetType() == EIEObjectsType::PolyLine) {
        if (bEnds)
            Add(TIENote::Changed, EIENote::ObjectRing, strName,
                nStations == 1 ? "a line of one station is read back as a polygon"
                               : "a line that ends where it starts is read back as a polygon");
    } else if (nStations >= kLeastRing) {
        Add(TIENote::Changed, EIENote::ObjectRing, strName,
            "its ring is read back with its first station once more at its end");
    } else if (!bEnds) {
        Add(TIENote::Changed, EIENote::ObjectRing, strName,
            "a polygon of two stations isn't closed, and is read back as a line");
    }
}

void CDXFNotes::NoteDrawing(const CIEObject& object)
{
    const CIEDrawProperties* const pProperties = object.GetDrawProperties();
    CReasons reasons;
    reasons.Add(object.GetGroupType() != CIEObject::LineLike && HasWidth(pProperties),
                "the width of what isn't a line is left out");
    reasons.Add(HasMarkStyle(pProperties), "the symbol of a point is left out");
    reasons.Add(IsFlooded(pProperties), "the filling of an area is left out");
    if (!reasons.Get().empty())
        Add(TIENote::LeftOut, EIENote::ObjectDrawing, object.GetName(), reasons.Get());
}

// ---- codes

bool CDXFNotes::NoteText(const CIEObject& object, EIENote eCode, std::string_view text, const char* pWhat)
{
    LookAtCase(text);
    const CString strRead = TDXFOutput::AsRead(text);
    if (strRead != text)
        Add(TIENote::Changed, eCode, object.GetName(), CString(pWhat) + " is read back as \"" + strRead + "\"");
    else if (IsWord(text))
        Add(TIENote::Changed, EIENote::ObjectWord, object.GetName(),
            CString(pWhat) + " \"" + strRead + "\" is a word of the form, by which a reader may take it for an object");
    else
        return false;
    return true;
}

void CDXFNotes::NoteCodes(const CIEObject& object)
{
    std::unordered_set<CString> names;
    for (int i = 0; const CIECodeValues* const pCode = object.GetCode(i); ++i) {
        const CString& strCode = pCode->GetDescription()->GetName();
        if (strCode == kDatasetExtras) {
            if (!m_bExtrasTold)
                Add(TIENote::LeftOut, EIENote::JobDatasetExtras, {}, "what the code " + strCode + " says is left out");
            m_bExtrasTold = true;
            continue;
        }
        if (!names.insert(IEUtils::ToUpper(strCode)).second)
            Add(TIENote::Changed, EIENote::ObjectCodes, object.GetName(),
                "it has the code \"" + strCode + "\" twice, and both are read back as one");
        NoteDescription(*pCode->GetDescription());
        NoteCode(object, *pCode);
    }
    if (names.size() > 1 && !m_Job.GetSettings().m_bSingleFile)
        NoteSharedTags(object);
}

/// In a file for each dataset a tag doesn't name its code, and a reader keeps the last of the values with one tag.
void CDXFNotes::NoteSharedTags(const CIEObject& object)
{
    struct TLast {
        const CString* m_pCode;
        const CString* m_pValue;
    };
    std::unordered_map<CString, TLast> last;
    CReasons reasons;
    for (int i = 0; const CIECodeValues* const pCode = object.GetCode(i); ++i) {
        const CIECodeDescription& description = *pCode->GetDescription();
        if (description.GetName() == kDatasetExtras)
            continue;
        for (int j = 0; const CIEAttrDescription* const pAttribute = description.GetAttrDescriptionAt(j); ++j) {
            const CString strTag = CCoreDXFExporter::GetTagName(pAttribute->GetName());
            const TLast now{&description.GetName(), &pCode->GetAttrAt(j)};
            const auto [place, bNew] = last.try_emplace(IEUtils::ToUpper(TDXFOutput::AsRead(strTag)), now);
            if (!bNew && *place->second.m_pValue != *now.m_pValue)
                reasons.Add(true, "the value \"" + *place->second.m_pValue + "\" of \"" + strTag + "\" of its code \"" +
                                      *place->second.m_pCode + "\" is lost, because its code \"" + *now.m_pCode +
                                      "\" has an attribute of that name too");
            place->second = now;
        }
    }
    if (!reasons.Get().empty())
        Add(TIENote::LeftOut, EIENote::ObjectAttributes, object.GetName(), reasons.Get());
}

void CDXFNotes::NoteCode(const CIEObject& object, const CIECodeValues& code)
{
    const CIECodeDescription& description = *code.GetDescription();
    const CString& strCode = description.GetName();
    if (description.GetSize() == 0)
        NoteText(object, EIENote::ObjectCodes, strCode, "its code");
    if (code.GetNumberOfAttrs() != description.GetSize())
        Add(TIENote::Changed, EIENote::ObjectAttributes, object.GetName(),
            code.GetNumberOfAttrs() < description.GetSize() ? "values that it lacks are read back as empty ones"
                                                            : "values beyond the attributes of its code are left out");
    const int nValues = std::min(code.GetNumberOfAttrs(), description.GetSize());
    for (int j = 0;
         j < nValues && !NoteText(object, EIENote::ObjectAttributes, code.GetAttrAt(j), "the value of an attribute");
         ++j) {
    }
    const int nStrings = code.GetNumberOfCodeStrings();
    for (int k = 0;
         k < nStrings && !NoteText(object, EIENote::ObjectAttributes, code.GetCodeStringAt(k), "a code string"); ++k) {
    }
    if (nStrings > 1 && m_ManyStrings.insert(&description).second)
        Add(TIENote::Changed, EIENote::JobAttributes, strCode,
            "an object has several code strings of it, and it is read back with an attribute for each but the first");
}

/// What the names of a code and of its attributes come to as tags: other codes (EIENote::JobCodes), or other
/// attributes.
void CDXFNotes::NoteDescription(const CIECodeDescription& description)
{
    if (!m_Descriptions.insert(&description).second)
        return;
    const CString& strCode = description.GetName();
    LookAtCase(strCode);
    CReasons codes, attributes;
    codes.Add(strCode.empty(), "it has no name, and isn't read back");
    codes.Add(description.GetSize() > 0 && TDXFOutput::AsRead(strCode) != strCode,
              "its name is read back as \"" + TDXFOutput::AsRead(strCode) + "\"");
    codes.Add(IsCut("CODESTRING0:" + strCode), "it is too long for the tag of a code string, and read back otherwise");
    std::unordered_set<CString> names;
    for (int i = 0; const CIEAttrDescription* const pAttribute = description.GetAttrDescriptionAt(i); ++i) {
        const CString& strName = pAttribute->GetName();
        const CString strQuoted = "the attribute \"" + strName + "\" ";
        const CString strTag = CCoreDXFExporter::GetTagName(strName);
        const CString strUpper = IEUtils::ToUpper(strTag);
        LookAtCase(strTag);
        codes.Add(strTag.find(':') != CString::npos, strQuoted + "is read back as one of another code");
        codes.Add(strUpper.starts_with("CODENAME") || strUpper.starts_with("CODESTRING"),
                  strQuoted + "is read back as a code or a code string");
        attributes.Add(strTag != strName, strQuoted + "loses its first two characters");
        attributes.Add(strTag.empty(), strQuoted + "isn't read back");
        attributes.Add(TDXFOutput::AsRead(strTag) != strTag, strQuoted + "is read back otherwise");
        attributes.Add(IsCut(strTag + ":" + strCode + ":" + "N006006"),
                       strQuoted + "makes a tag that is too long, with its code, and is read back otherwise");
        attributes.Add(!names.insert(strUpper).second, strQuoted + "is read back as the one of that name ahead");
        if (pAttribute->GetType() == CIEAttrDescription::LIST && !m_bListsTold) {
            m_bListsTold = true;
            Add(TIENote::Changed, EIENote::JobAttributeTypes, {},
                "attributes with a list of values are read back as text");
        }
    }
    if (!codes.Get().empty())
        Add(TIENote::Changed, EIENote::JobCodes, strCode, codes.Get());
    if (!attributes.Get().empty())
        Add(TIENote::Changed, EIENote::JobAttributes, strCode, attributes.Get());
}
