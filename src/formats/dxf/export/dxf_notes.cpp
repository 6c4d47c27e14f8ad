#include "formats/dxf/export/dxf_notes.h"

#include "alidade/vellumlib/autocad_utils.h"
#include "alidade/vellumlib/utils.h"
#include "formats/dxf/export/dxf_note_words.h"
#include "formats/dxf/export/dxf_output.h"

#include <algorithm>
#include <cmath>

using namespace DXFNoteWords;

namespace {

/// Marks that drawing programs don't take in the name of a layer.
constexpr std::string_view kForbiddenInLayers = "<>/\\\":;?*|,=`";

CString ToHex(TIEColor color)
{
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    CString text = "#";
    for (int nShift = 20; nShift >= 0; nShift -= 4)
        text += kDigits[ColorToRGB(color) >> static_cast<unsigned>(nShift) & 0xFU];
    return text;
}

} // namespace

CDXFNotes::CDXFNotes(const CIEData& job, CString strFile, bool bCodes)
    : m_Job(job),
      m_bCodes(bCodes),
      m_bBinary(TDXFOutput::IsBinaryName(strFile)),
      m_ePlaneUnits(job.GetJobInfo()->GetCSType() != TIEJobInfo::Geographic ? job.GetJobInfo()->GetDistUnits()
                                                                            : EDIST_UNITS::None),
      m_eUnits(job.GetJobInfo()->GetDistUnits())
{
    m_strFile = std::move(strFile);
}

void CDXFNotes::Add(TIENote::EKind eKind, EIENote eCode, const CString& strRecord, CString strReason)
{
    m_Job.Note(eKind, eCode, m_strFile, {}, strRecord, std::move(strReason));
}

void CDXFNotes::LookAtCase(std::string_view text)
{
    if (m_bCaseTold || std::none_of(text.begin(), text.end(), [](char c) { return c >= 'a' && c <= 'z'; }))
        return;
    m_bCaseTold = true;
    Add(TIENote::Changed, EIENote::JobUpperCase, {},
        "names, layers, codes and values are read back in upper case, \"" + TDXFOutput::AsRead(text) + "\" among them");
}

// ---- numbers

bool CDXFNotes::IsNumber(double dValue, EDIST_UNITS units) const
{
    const double dWritten = IEUtils::FromMetersFactor(dValue, units);
    return m_bBinary ? std::isfinite(dWritten) : std::fabs(dWritten) < TDXFOutput::kNumberLimit;
}

bool CDXFNotes::ArePlaceNumbers(double dNorth, double dEast, double dHeight, EDIST_UNITS plane) const
{
    return IsNumber(dNorth, plane) && IsNumber(dEast, plane) && IsNumber(dHeight, m_eUnits);
}

void CDXFNotes::AddTooLarge(EIENote eCode, const CString& strRecord)
{
    Add(TIENote::Changed, eCode, strRecord,
        m_bBinary ? "a number of it grows beyond all numbers in the drawing's units"
                  : "a number of it, of 1e30 or more in the drawing's units, goes out as no number, and is read back "
                    "as 0");
}

// ---- the file as a whole

void CDXFNotes::NoteRun(const CIEDataset* pDataset, bool bObjects, bool bSurfaces)
{
    NoteForm();
    if (m_Job.GetSettings().m_bSingleFile && m_Job.GetNumberOfDatasets() > 1)
        Add(TIENote::LeftOut, EIENote::JobDatasets, {},
            "a drawing holds one dataset, the current one; the others aren't in this file");
    NoteLayers();
    if (!pDataset)
        return;
    NoteSurfaces(*pDataset, bSurfaces);
    if (!bObjects) {
        NoteUnwantedObjects(*pDataset);
        return;
    }
    LookThrough(*pDataset);
    NoteFlatLines(*pDataset);
    NoteCodeDrawing(*pDataset);
}

/// The form of the numbers, and of the file.
void CDXFNotes::NoteForm()
{
    if (m_bBinary) {
        Add(TIENote::Changed, EIENote::JobBinaryForm, {},
            "the binary form begins with no mark by which a reader knows it; a file with the extension \"dxf\" is read "
            "everywhere");
        return;
    }
    const bool bGeographic = m_Job.GetJobInfo()->GetCSType() == TIEJobInfo::Geographic;
    if (bGeographic)
        Add(TIENote::Changed, EIENote::JobGeographic, {},
            "latitude and longitude go out with six decimals, which is some ten centimetres on the ground");
    if (m_eUnits == EDIST_UNITS::USMiles)
        Add(TIENote::Changed, EIENote::JobMiles, {},
            CString(bGeographic ? "heights" : "coordinates") +
                " in US miles go out with six decimals, which is 1.6 millimetres on the ground");
}

void CDXFNotes::NoteColor(TIEColor color, int nIndex)
{
    const TIEColor back = CIEAutoCADUtils().Convert256ToRGB(nIndex);
    if (back != color)
        Add(TIENote::Changed, EIENote::JobColor, ToHex(color),
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
            Add(TIENote::LeftOut, EIENote::JobLayer, strName,
                "it has neither a colour nor a line type, so the drawing has no entry for it, and its objects are read "
                "back without a layer");
            continue;
        }
        m_Layers.insert(pLayer);
        NoteLayer(*pLayer);
        if (!names.insert(IEUtils::ToUpper(TDXFOutput::AsRead(strName))).second)
            Add(TIENote::Changed, EIENote::JobLayer, strName, "a layer ahead has the same name but for its case");
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
    reasons.Add(!(layer.IsActive() && layer.IsPlot()) && pProperties->GetColor(color),
                "as one that is off it is read back without its colour");
    reasons.Add(!layer.GetNotes().empty(), "its notes are left out");
    reasons.Add(HasWidth(pProperties) || HasMarkStyle(pProperties) || IsFlooded(pProperties),
                "its width, point symbol or filling is left out");
    reasons.Add(!pProperties->GetColor(color), "without a colour, it gets the one that stands out from any sheet");
    if (!reasons.Get().empty())
        Add(TIENote::Changed, EIENote::JobLayer, strName, reasons.Get());
}
