#include "formats/dxf/export/dxf_notes.h"

#include "formats/dxf/export/core_dxf_exporter.h"
#include "formats/dxf/export/dxf_output.h"
#include "vellumlib/utils.h"

#include <algorithm>
#include <cmath>

namespace {

/// Words that readers act on wherever they stand as a text.
constexpr std::string_view kWords[] = {"ARC",   "ATTRIB",   "3DFACE",     "INSERT", "LINE",  "3DLINE",
                                       "POINT", "POLYLINE", "LWPOLYLINE", "ENDSEC", "ENDBLK"};
/// Marks that drawing programs don't take in the name of a layer.
constexpr std::string_view kForbiddenInLayers = "<>/\\\":;?*|,=`";
constexpr std::string_view kDatasetExtras = "JP.DATASETEXTRAS";

CString ToUpper(std::string_view text)
{
    CString upper(text);
    for (char& c : upper) {
        if (c >= 'a' && c <= 'z')
            c = static_cast<char>(c - 'a' + 'A');
    }
    return upper;
}

bool IsWord(std::string_view text)
{
    constexpr std::size_t kLongest = 10;
    if (text.size() > kLongest)
        return false;
    const CString upper = ToUpper(text);
    return std::find(std::begin(kWords), std::end(kWords), upper) != std::end(kWords);
}

CString BlockName(const CIEObject& object)
{
    return ToUpper(TDXFOutput::AsRead(CCoreDXFExporter::CreateCorrectDXFName(object.GetName(), true)));
}

/// Joins what is wrong with one thing into a sentence.
class CReasons {
public:
    void Add(bool bHolds, std::string_view reason)
    {
        if (!bHolds)
            return;
        m_strText += m_strText.empty() ? "" : "; ";
        m_strText += reason;
    }
    [[nodiscard]] const CString& Get() const { return m_strText; }

private:
    CString m_strText;
};

CString ToHex(TIEColor color)
{
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    CString text = "#";
    for (int nShift = 20; nShift >= 0; nShift -= 4)
        text += kDigits[color >> static_cast<unsigned>(nShift) & 0xFU];
    return text;
}

bool HasWidth(const CIEDrawProperties* pProperties)
{
    int nWidth = 0;
    const auto* const pLine = dynamic_cast<const CIEDrawLineProperties*>(pProperties);
    return pLine && pLine->GetWidth(nWidth);
}

bool HasMarkStyle(const CIEDrawProperties* pProperties)
{
    int nStyle = 0;
    const auto* const pPoint = dynamic_cast<const CIEDrawPointProperties*>(pProperties);
    return pPoint && pPoint->GetMarkStyle(nStyle);
}

bool IsFlooded(const CIEDrawProperties* pProperties)
{
    const auto* const pArea = dynamic_cast<const CIEDrawAreaProperties*>(pProperties);
    return pArea && pArea->IsFlooded();
}

} // namespace

CDXFNotes::CDXFNotes(const CIEData& job, CString strFile, bool bCodes) : m_Job(job), m_bCodes(bCodes)
{
    m_Note.m_strFile = std::move(strFile);
}

void CDXFNotes::Add(TIENote::EKind eKind, const char* pCode, const CString& strRecord, CString strReason)
{
    m_Note.m_eKind = eKind;
    m_Note.m_pCode = pCode;
    m_Note.m_strRecord = strRecord;
    m_Note.m_strReason = std::move(strReason);
    m_Job.Note(m_Note);
}

void CDXFNotes::LookAtCase(std::string_view text)
{
    if (m_bCaseTold || std::none_of(text.begin(), text.end(), [](char c) { return c >= 'a' && c <= 'z'; }))
        return;
    m_bCaseTold = true;
    Add(TIENote::Changed, "job.upper-case", {},
        "names, layers, codes and values are read back in upper case, \"" + TDXFOutput::AsRead(text) + "\" among them");
}

// ---- the file as a whole

void CDXFNotes::NoteRun(const CIEDataset* pDataset)
{
    if (TDXFOutput::IsBinaryName(m_Note.m_strFile))
        Add(TIENote::Changed, "job.binary-form", {},
            "the binary form begins with no mark by which a reader knows it; a file with the extension \"dxf\" is read "
            "everywhere");
    if (m_Job.GetJobInfo()->GetCSType() == TIEJobInfo::Geographic)
        Add(TIENote::Changed, "job.geographic", {},
            "latitude and longitude go out with six decimals, which is some ten centimetres on the ground");
    if (m_Job.GetSettings().m_bSingleFile && m_Job.GetNumberOfDatasets() > 1)
        Add(TIENote::LeftOut, "job.datasets", {},
            "a drawing holds one dataset, the current one; the others go into files of their own");
    NoteLayers();
    if (pDataset) {
        NoteSurfaces(*pDataset);
        LookThrough(*pDataset);
    }
}

void CDXFNotes::LookThrough(const CIEDataset& dataset)
{
    int nPatterns = 0;
    bool bNames = false;
    bool bAttributes = false;
    for (int i = 0; const CIEObject* const pObject = dataset.GetObjectAt(i); ++i) {
        nPatterns += pObject->GetStateType() == CIEObject::InBlock;
        bNames = bNames || !pObject->GetName().empty();
        for (int k = 0; const CIECodeValues* const pCode = pObject->GetCode(k); ++k)
            bAttributes = bAttributes || pCode->GetDescription()->GetSize() > 0;
        if (m_bCodes)
            ++m_Blocks[BlockName(*pObject)];
    }
    if (nPatterns > 0)
        Add(TIENote::Changed, "job.block-patterns", {},
            IEUtils::IntToString(nPatterns) +
                " objects are parts of the definitions of blocks, and go out as if they lay on the ground");
    if (bNames && !m_bCodes)
        Add(TIENote::LeftOut, "job.name", {},
            "a name is a text beside its object, and the object is read back without it");
    if (bAttributes && !m_Job.GetSettings().m_bSingleFile)
        Add(TIENote::Changed, "job.attribute-codes", {},
            "in a file for each dataset attributes go out without the names of their codes, and are read back as ones "
            "of a code named after the file");
}

void CDXFNotes::NoteSurfaces(const CIEDataset& dataset)
{
    if (dataset.GetNumberOfSurfaces() > 0)
        Add(TIENote::Changed, "job.surfaces", {},
            "a surface goes out as faces without its name; all faces are read back as one surface, three positions for "
            "each of them");
    for (int i = 0; const CIESurface* const pSurface = dataset.GetSurfaceAt(i); ++i) {
        int nBroken = 0;
        for (int j = 0; const CIETriangle* const pTriangle = pSurface->GetTriangleAt(j); ++j) {
            for (int k = 0; k < CIETriangle::kCorners; ++k) {
                if (!pSurface->GetPositionAt(pTriangle->GetPosition(k))) {
                    ++nBroken;
                    break;
                }
            }
        }
        if (nBroken > 0)
            Add(TIENote::LeftOut, "surface.triangles", pSurface->GetName(),
                IEUtils::IntToString(nBroken) + " of its triangles have corners that it has no position for");
    }
}

void CDXFNotes::NoteColor(TIEColor color, int nIndex)
{
    const TIEColor back = CIEAutoCADUtils().Convert256ToRGB(nIndex);
    if (back != color)
        Add(TIENote::Changed, "job.color", ToHex(color),
            "of the 256 colours of a drawing the nearest is " + IEUtils::IntToString(nIndex) + ", " + ToHex(back));
}

// ---- layers

void CDXFNotes::NoteLayers()
{
    const CIEDrawDictionary& layers = *m_Job.GetIEDrawDictionary();
    std::unordered_set<CString> names;
    for (int i = 0; const CIELayer* const pLayer = layers.GetLayerAt(i); ++i) {
        const CString& strName = pLayer->GetName();
        if (!pLayer->GetDrawProperties()) {
            Add(TIENote::LeftOut, "job.layer", strName,
                "it has neither a colour nor a line type, so the drawing has no entry for it, and its objects are read "
                "back without a layer");
            continue;
        }
        m_Layers.insert(pLayer);
        NoteLayer(*pLayer);
        if (!names.insert(ToUpper(TDXFOutput::AsRead(strName))).second)
            Add(TIENote::Changed, "job.layer", strName, "a layer ahead has the same name but for its case");
    }
}

void CDXFNotes::NoteLayer(const CIELayer& layer)
{
    const CString& strName = layer.GetName();
    const CIEDrawProperties* const pProperties = layer.GetDrawProperties();
    TIEColor color = 0;
    LookAtCase(strName);
    CReasons reasons;
    reasons.Add(strName.empty(), "without a name, it goes out as the layer \"0\"");
    reasons.Add(TDXFOutput::AsRead(strName) != strName,
                "its name is read back as \"" + TDXFOutput::AsRead(strName) + "\"");
    reasons.Add(strName.find_first_of(kForbiddenInLayers) != CString::npos,
                "drawing programs refuse a file with one of " + CString(kForbiddenInLayers) +
                    " in the name of a layer");
    reasons.Add(IsWord(strName), "its name is a word of the form, by which a reader may take it for an object");
    reasons.Add(layer.IsActive() != layer.IsPlot(),
                "a layer that is off or isn't plotted goes out as off, and is read back as off and plotted");
    reasons.Add(!layer.IsActive() && !layer.IsPlot(), "it is read back as plotted");
    reasons.Add(!layer.GetNotes().empty(), "its notes are left out");
    reasons.Add(HasWidth(pProperties) || HasMarkStyle(pProperties) || IsFlooded(pProperties),
                "its width, point symbol or filling is left out");
    reasons.Add(!pProperties->GetColor(color), "without a colour, it gets the one that stands out from any sheet");
    if (!reasons.Get().empty())
        Add(TIENote::Changed, "job.layer", strName, reasons.Get());
}

void CDXFNotes::NoteLayerOf(const CIEObject& object)
{
    const CIELayer* const pLayer = object.GetLayer();
    if (pLayer && !m_Layers.contains(pLayer))
        Add(TIENote::LeftOut, "object.layer", object.GetName(),
            "the drawing has no entry for its layer \"" + pLayer->GetName() + "\"");
    const CIEDrawDictionary& layers = *m_Job.GetIEDrawDictionary();
    if (pLayer || m_bDefaultLayerTold || layers.GetNumberOfLayers() == 0)
        return;
    m_bDefaultLayerTold = true;
    const CIELayer* const pDefault = layers.GetDefaultLayer();
    Add(TIENote::Changed, "job.default-layer", {},
        "objects without a layer go out on the layer \"" + (pDefault ? pDefault : layers.GetLayerAt(0))->GetName() +
            "\"");
}

// ---- objects

void CDXFNotes::NoteObject(const CIEObject& object)
{
    if (!object.GetStation(0)) {
        Add(TIENote::LeftOut, "object.no-station", object.GetName(), "without a station, it has no place in a drawing");
        return;
    }
    NoteName(object);
    if (object.GetGroupType() == CIEObject::SheetLike || object.GetGroupType() == CIEObject::CompositeLike)
        return;
    NoteLayerOf(object);
    NoteStations(object);
    NoteRing(object);
    NoteDrawing(object);
    NoteCodes(object);
}

void CDXFNotes::NoteName(const CIEObject& object)
{
    const CString& strName = object.GetName();
    if (IsWord(strName))
        Add(TIENote::Changed, "object.word", strName,
            "its name is a word of the form, by which a reader may take it for another object");
    if (!m_bCodes)
        return;
    LookAtCase(strName);
    const CString strRead = TDXFOutput::AsRead(CCoreDXFExporter::CreateCorrectDXFName(strName, true));
    if (strRead != strName)
        Add(TIENote::Changed, "object.name", strName,
            "drawings allow no such name; it is read back as \"" + strRead + "\"");
    if (const auto block = m_Blocks.find(ToUpper(strRead)); block != m_Blocks.end() && block->second > 1)
        Add(TIENote::Changed, "object.block-name", strName,
            IEUtils::IntToString(block->second) + " objects have blocks of the name \"" + block->first +
                "\", and a reader puts all of them where each one lies");
}

void CDXFNotes::NoteStations(const CIEObject& object)
{
    const TIEJobInfo& info = *m_Job.GetJobInfo();
    const EDIST_UNITS plane = info.GetCSType() != TIEJobInfo::Geographic ? info.GetDistUnits() : EDIST_UNITS::None;
    const auto isWritten = [](double dValue, EDIST_UNITS units) {
        return std::fabs(IEUtils::FromMetersFactor(dValue, units)) < TDXFOutput::kNumberLimit;
    };
    for (int i = 0; const CIEStation* const pStation = object.GetStation(i); ++i) {
        if (isWritten(pStation->m_dNorth, plane) && isWritten(pStation->m_dEast, plane) &&
            isWritten(pStation->GetHeight(), info.GetDistUnits()))
            continue;
        Add(TIENote::Changed, "object.coordinates", object.GetName(),
            "a coordinate of 1e30 or more goes out as no number, and is read back as 0");
        return;
    }
}

void CDXFNotes::NoteRing(const CIEObject& object)
{
    if (object.GetGroupType() != CIEObject::LineLike)
        return;
    constexpr int kLeastRing = 3;
    const int nStations = object.GetNumberOfStations();
    const CString& strName = object.GetName();
    const bool bEnds = *object.GetStation(0) == *object.GetStation(nStations - 1);
    if (object.GetType() == EIEObjectsType::PolyLine) {
        if (bEnds)
            Add(TIENote::Changed, "object.ring", strName,
                nStations == 1 ? "a line of one station is read back as a polygon"
                               : "a line that ends where it starts is read back as a polygon");
    } else if (nStations >= kLeastRing) {
        Add(TIENote::Changed, "object.ring", strName,
            "its ring is read back with its first station once more at its end");
    } else if (!bEnds) {
        Add(TIENote::Changed, "object.ring", strName,
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
        Add(TIENote::LeftOut, "object.drawing", object.GetName(), reasons.Get());
}

// ---- codes

bool CDXFNotes::NoteText(const CIEObject& object, const char* pCode, std::string_view text, const char* pWhat)
{
    LookAtCase(text);
    const CString strRead = TDXFOutput::AsRead(text);
    if (strRead != text)
        Add(TIENote::Changed, pCode, object.GetName(), CString(pWhat) + " is read back as \"" + strRead + "\"");
    else if (IsWord(text))
        Add(TIENote::Changed, "object.word", object.GetName(),
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
                Add(TIENote::LeftOut, "job.dataset-extras", {}, "what the code " + strCode + " says is left out");
            m_bExtrasTold = true;
            continue;
        }
        if (!names.insert(ToUpper(strCode)).second)
            Add(TIENote::Changed, "object.codes", object.GetName(),
                "it has the code \"" + strCode + "\" twice, and both are read back as one");
        NoteDescription(*pCode->GetDescription());
        NoteCode(object, *pCode);
    }
}

void CDXFNotes::NoteCode(const CIEObject& object, const CIECodeValues& code)
{
    const CIECodeDescription& description = *code.GetDescription();
    const CString& strCode = description.GetName();
    if (description.GetSize() == 0)
        NoteText(object, "object.codes", strCode, "its code");
    if (code.GetNumberOfAttrs() != description.GetSize())
        Add(TIENote::Changed, "object.attributes", object.GetName(),
            code.GetNumberOfAttrs() < description.GetSize() ? "values that it lacks are read back as empty ones"
                                                            : "values beyond the attributes of its code are left out");
    const int nValues = std::min(code.GetNumberOfAttrs(), description.GetSize());
    for (int j = 0;
         j < nValues && !NoteText(object, "object.attributes", code.GetAttrAt(j), "the value of an attribute"); ++j) {
    }
    const int nStrings = code.GetNumberOfCodeStrings();
    for (int k = 0; k < nStrings && !NoteText(object, "object.attributes", code.GetCodeStringAt(k), "a code string");
         ++k) {
    }
    if (nStrings > 1 && m_ManyStrings.insert(&description).second)
        Add(TIENote::Changed, "job.attributes", strCode,
            "an object has several code strings of it, and it is read back with an attribute for each but the first");
}

/// What the names of a code and of its attributes come to as tags: other codes ("job.codes"), or other attributes.
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
    std::unordered_set<CString> names;
    for (int i = 0; const CIEAttrDescription* const pAttribute = description.GetAttrDescriptionAt(i); ++i) {
        const CString& strName = pAttribute->GetName();
        const CString strQuoted = "the attribute \"" + strName + "\" ";
        const CString strTag = CCoreDXFExporter::GetTagName(strName);
        const CString strUpper = ToUpper(strTag);
        LookAtCase(strTag);
        codes.Add(strTag.find(':') != CString::npos, strQuoted + "is read back as one of another code");
        codes.Add(strUpper.starts_with("CODENAME") || strUpper.starts_with("CODESTRING"),
                  strQuoted + "is read back as a code or a code string");
        attributes.Add(strTag != strName, strQuoted + "loses its first two characters");
        attributes.Add(strTag.empty(), strQuoted + "isn't read back");
        attributes.Add(TDXFOutput::AsRead(strTag) != strTag, strQuoted + "is read back otherwise");
        attributes.Add(!names.insert(strUpper).second, strQuoted + "is read back as the one of that name ahead");
        if (pAttribute->GetType() == CIEAttrDescription::LIST && !m_bListsTold) {
            m_bListsTold = true;
            Add(TIENote::Changed, "job.attribute-types", {}, "attributes with a list of values are read back as text");
        }
    }
    if (!codes.Get().empty())
        Add(TIENote::Changed, "job.codes", strCode, codes.Get());
    if (!attributes.Get().empty())
        Add(TIENote::Changed, "job.attributes", strCode, attributes.Get());
}
