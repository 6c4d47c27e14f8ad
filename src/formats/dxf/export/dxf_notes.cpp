#include "formats/dxf/export/dxf_notes.h"

#include "formats/dxf/export/dxf_note_words.h"
#include "formats/dxf/export/dxf_output.h"
#include "vellumlib/autocad_utils.h"
#include "vellumlib/utils.h"

#include <algorithm>

using namespace DXFNoteWords;

namespace {

/// Marks that drawing programs don't take in the name of a layer.
constexpr std::string_view kForbiddenInLayers = "<>/\\\":;?*|,=`";

CString ToHex(TIEColor color)
{
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    CString text = "#";
    for (int nShift = 20; nShift >= 0; nShift -= 4)
        text += kDigits[color >> static_cast<unsigned>(nShift) & 0xFU];
    return text;
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
            ++m_Blocks[BlockName(pObject->GetName())];
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
