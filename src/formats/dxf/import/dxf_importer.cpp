#include "alidade/formats/dxf/import/dxf_importer.h"

#include "formats/dxf/import/dxf_run.h"

namespace {

// codes of the table of layers
constexpr int kName = 2;
constexpr int kLineType = 6;
constexpr int kColor = 62;
constexpr int kFlags = 70;
constexpr int kPlotted = 290;
constexpr int kLineWeight = 370;
constexpr int kTrueColor = 420;
constexpr int kNotes = 1000;

// flags of a layer
constexpr int kFrozen = 1;
constexpr int kFrozenInViews = 2;

constexpr int kVariable = 9; ///< a group of the header that names a variable

} // namespace

CDXFImporter::CDXFImporter(CIEData* pData, CString strFileName) : CIEImporter(pData, std::move(strFileName)) {}

CDXFImporter::~CDXFImporter() = default;

EIEResult CDXFImporter::Import()
{
    m_pReader = std::make_unique<CDXFReader>();
    m_bInEntities = false;
    if (!m_pReader->Open(m_strFileName)) {
        m_pReader.reset();
        return IE_CANNOT_OPEN_FILE;
    }
    m_pReader->PassOverLongLines();
    m_pRun = std::make_unique<TRun>(*this);
    bool bSection = false;
    while (ReadSections(bSection)) {
    }
    m_pRun->TellLosses(bSection);
    if (IIETransferObserver* const pObserver = m_pData->GetObserver())
        pObserver->OnProgress(m_pReader->GetPosition(), m_pReader->GetLength());
    const TRun::EEnd eEnd = m_pRun->m_eEnd;
    m_pRun.reset();
    m_pReader.reset();
    if (eEnd == TRun::NoMemory || eEnd == TRun::TooManyCopies)
        return IE_OUT_OF_MEMORY;
    return bSection ? IE_OK : IE_BAD_CONTENT;
}

/// One group outside the sections, and the section that it begins. False at the end.
bool CDXFImporter::ReadSections(bool& bSection)
{
    TToken token;
    if (!m_pRun->Next(token)) {
        bSection = bSection && m_pRun->m_eEnd != TRun::Broken;
        if (m_pRun->m_eEnd == TRun::FileEnd && m_bInEntities)
            m_pRun->m_eEnd = TRun::Going; // for want of its last word alone nothing is lost
        return false;
    }
    if (token.m_eToken == TToken::END_OF_FILE || token.m_eToken == TToken::SECTION)
        m_pRun->CountWord(token);
    if (token.m_eToken == TToken::END_OF_FILE)
        return false;
    if (token.m_eToken != TToken::SECTION) {
        if (bSection) // else it is perhaps no drawing
            m_pRun->CountOutside(token);
        return true;
    }
    m_pRun->m_bPassedOver = m_pRun->m_bSectionHead = false;
    m_pRun->m_bAnySection = m_pRun->m_bAnySection || bSection;
    if (!m_pRun->Next(token)) {
        bSection = m_pRun->m_eEnd == TRun::Stopped;
        return false;
    }
    bSection = true;
    return Section(token);
}

bool CDXFImporter::Section(const TToken& token)
{
    switch (token.m_eToken) {
    case TToken::BLOCKS:
        return Blocks();
    case TToken::CLASSES:
        return Classes();
    case TToken::ENTITIES:
        m_bInEntities = true;
        return Entities();
    case TToken::HEADER:
        return Header();
    case TToken::TABLES:
        return Tables();
    default:
        m_pRun->CountSection(token);
        m_pRun->m_bPassedOver = true;
        return true;
    }
}

/// Of the header only the encoding counts, and the units are compared with the job's.
bool CDXFImporter::Header()
{
    enum { Other, Version, CodePage, Units } eVariable = Other;
    TToken token;
    while (m_pRun->Next(token)) {
        if (token.m_eToken == TToken::ENDSEC)
            return true;
        m_pRun->LookForSection(token);
        if (token.m_nCode == kVariable)
            eVariable = token.m_eToken == TToken::ACADVER   ? Version
                        : token.GetText() == "$DWGCODEPAGE" ? CodePage
                        : token.GetText() == "$INSUNITS"    ? Units
                                                            : Other;
        else if (eVariable == Units && token.m_nCode == kFlags)
            m_pRun->m_Tally.SetUnits(token.m_Value.m_nValue, *m_pReader);
        else if (eVariable == Version && token.m_nCode == 1)
            m_pRun->m_Text.SetVersion(token.GetText());
        else if (eVariable == CodePage && token.m_nCode == 3 && !m_pRun->m_Text.SetCodePage(token.GetText()))
            m_pRun->m_Tally.Count(CDXFTally::CodePage, *m_pReader);
        m_pRun->m_Text.Prepare();
    }
    return false;
}

bool CDXFImporter::Classes()
{
    TToken token;
    while (m_pRun->Next(token)) {
        if (token.m_eToken == TToken::ENDSEC)
            return true;
        m_pRun->LookForSection(token);
    }
    return false;
}

bool CDXFImporter::Tables()
{
    TToken token;
    bool bPending = false;
    while (bPending || m_pRun->Next(token)) {
        bPending = true;
        bool bGoesOn = true;
        if (token.m_eToken == TToken::ENDSEC) {
            m_pRun->CountWord(token);
            return true;
        }
        m_pRun->LookForSection(token);
        if (token.m_eToken == TToken::LAYER)
            bGoesOn = TableLayer(token);
        else if (token.m_eToken == TToken::LTYPE && token.m_nCode == kName)
            bGoesOn = TableLType(token);
        else if (token.m_eToken == TToken::STYLE && token.m_nCode == kName)
            bGoesOn = TableStyle(token);
        else if (token.m_eToken == TToken::VIEW && token.m_nCode == kName)
            bGoesOn = TableView(token);
        else
            bPending = false;
        if (!bGoesOn)
            return false;
    }
    return false;
}

/// The head of a table or one of its entries, to the next group 0.
bool CDXFImporter::TableLayer(TToken& token)
{
    CString strName, strNotes, strLineType;
    int nColor = 0, nFlags = 1;
    double dWeight = 1;
    bool bPlotted = true;
    const CDXFTally::TPlace place = CDXFTally::PlaceOf(*m_pReader);
    while (m_pRun->Next(token) && token.m_nCode != 0) {
        m_pRun->CountValue();
        switch (token.m_nCode) {
        case kName:
            strName = m_pRun->m_Text.ToText(token.GetText());
            break;
        case kLineType:
            strLineType = token.GetText();
            break;
        case kColor:
            nColor = token.m_Value.m_nValue;
            break;
        case kFlags:
            nFlags = token.m_Value.m_nValue;
            break;
        case kTrueColor:
            if (m_pReader->HasAllValues())
                m_pRun->m_Tally.Count(CDXFTally::TrueColor, place);
            break;
        case kPlotted:
            bPlotted = !m_pReader->HasAllValues() || token.m_Value.m_nValue != 0;
            break;
        case kLineWeight:
            if (m_pReader->HasAllValues())
                dWeight = token.m_Value.m_nValue;
            break;
        case kNotes:
            strNotes = m_pRun->m_Text.ToText(token.GetText());
            break;
        default:
            break;
        }
    }
    if (m_pRun->m_eEnd != TRun::Going)
        return false;
    if (strName.empty())
        return true;
    const bool bPlot = nFlags != kFrozen && nFlags != kFrozenInViews;
    if (bPlot && (!bPlotted || (nFlags & kFrozen) != 0))
        m_pRun->m_Tally.Count(CDXFTally::LayerState, place);
    m_pRun->CountLineType(strLineType, place);
    auto pLayer = std::make_unique<CIELayer>(std::move(strName));
    pLayer->SetNotes(std::move(strNotes));
    pLayer->SetActiveStatus(nColor >= 0);
    pLayer->SetPlotStatus(bPlot);
    auto pProperties = std::make_unique<CIEDrawLineProperties>();
    if (nColor >= 0)
        pProperties->SetColor(m_AutoCADUtils.Convert256ToRGB(nColor));
    pProperties->SetDashStyle(m_AutoCADUtils.ConvertCustomLineTypeToPredefined(strLineType));
    if (dWeight > 0)
        pProperties->SetWidth(m_AutoCADUtils.ConvertLineWeightFromMMtoPixels(m_pData->GetSettings().m_hWnd, dWeight));
    pLayer->SetDrawProperties(std::move(pProperties));
    m_pData->GetIEDrawDictionary()->AddLayer(std::move(pLayer));
    return true;
}

/// To the table's end, which the next table or the end of the section is too.
bool CDXFImporter::SkipTable(TToken& token)
{
    while (m_pRun->Next(token)) {
        m_pRun->LookForSection(token);
        if (token.m_nCode == 0 &&
            (token.m_eToken == TToken::ENDTAB || token.m_eToken == TToken::TABLE || token.m_eToken == TToken::ENDSEC))
            return true;
    }
    return false;
}

bool CDXFImporter::Blocks()
{
    TToken token;
    while (m_pRun->Next(token)) {
        if (token.m_eToken == TToken::ENDSEC) {
            m_pRun->CountWord(token);
            return true;
        }
        m_pRun->LookForSection(token);
        // the end of a block on a layer of this name isn't another block
        if (token.m_eToken != TToken::BLOCK || token.m_nCode != 0)
            m_pRun->CountOutside(token);
        else if (!Block())
            return false;
    }
    return false;
}

bool CDXFImporter::Block()
{
    return Entities();
}
