#include "formats/dxf/import/dxf_run.h"

#include "alidade/vellumlib/utils.h"
#include "vellumlib/encoding.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr int kSectionName = 2;
// group codes that all entities share
constexpr int kLineType = 6;
constexpr int kLayer = 8;
constexpr int kThickness = 39;
constexpr int kInvisible = 60;
constexpr int kColor = 62;
constexpr int kPaperSpace = 67;
constexpr int kExtrusionX = 210;
constexpr int kExtrusionY = 220;
constexpr int kExtrusionZ = 230;
constexpr int kLineWeight = 370;
constexpr int kTrueColor = 420;

constexpr int kHighestColor = 255;
constexpr int kWeightByBlock = -2;
constexpr int kGroupsBetweenChecks = 1000;
/// So many stations or attribute values of a copy take as much memory as a further object.
constexpr std::int64_t kPartsOfObject = 4;
/// Of memory, for a copy with what it takes beyond itself.
constexpr std::uint64_t kBytesOfCopy = 512;

// empty values ahead of others, of all objects together: a drawing with few words could make any number of them
constexpr std::int64_t kGapsAnyway = 100'000;
constexpr std::int64_t kGapsOfByte = 2;

/// In upper case, as the reader gives them.
constexpr std::string_view kOrdinaryLineTypes[] = {"BYLAYER", "BYBLOCK",    "CONTINUOUS",    "DASHED",
                                                   "DOTTED",  "DASHDOTTED", "DASHDOTDOTTED", "DASHED_CUSTOM"};

int ToWidth(double dWidth)
{
    constexpr double kMost = 1e9;
    return static_cast<int>(std::clamp(dWidth * 10, 0.0, kMost));
}

} // namespace

CDXFImporter::TRun::TRun(CDXFImporter& importer)
    : m_Importer(importer),
      m_Reader(*importer.m_pReader),
      m_Data(*importer.m_pData),
      m_pDataset(importer.m_pData->AddDataset(std::make_unique<CIEDataset>("Import dataset"))),
      m_Text(m_Data.GetSettings().m_strCodePage, m_Reader),
      m_bPlane(m_Data.GetJobInfo()->GetCSType() != TIEJobInfo::Geographic),
      m_Units(m_Data.GetJobInfo()->GetDistUnits()),
      m_nMostCopies(static_cast<std::int64_t>(
          std::min<std::uint64_t>(static_cast<std::uint64_t>(m_Data.GetSettings().m_nMostBlockCopies),
                                  IEUtils::GetFreeVirtMemory() / kBytesOfCopy))),
      m_nGaps(kGapsAnyway + kGapsOfByte * m_Reader.GetLength()),
      m_strFileCode(m_Text.ToText(IEUtils::ExtractFileNameWithoutExtFromPathName(importer.m_strFileName)))
{
    m_Text.Prepare();
}

bool CDXFImporter::TRun::EndBy(EEnd eEnd)
{
    m_eEnd = eEnd;
    return false;
}

bool CDXFImporter::TRun::HasMemory()
{
    if (m_nSinceCheck++ < kGroupsBetweenChecks)
        return true;
    m_nSinceCheck = 0;
    if (IIETransferObserver* const pObserver = m_Data.GetObserver())
        pObserver->OnProgress(m_Reader.GetPosition(), m_Reader.GetLength());
    return IEUtils::GetFreeVirtMemory() >= kLeastFreeMemory;
}

bool CDXFImporter::TRun::MayGoOn()
{
    if (!HasMemory())
        return EndBy(NoMemory);
    return !CIEData::m_bStopProcess || EndBy(Stopped);
}

void CDXFImporter::TRun::CountWord(const TToken& token)
{
    if (token.m_nCode != 0)
        m_Tally.Count(CDXFTally::Word, m_Reader);
}

void CDXFImporter::TRun::CountExtras(const TEntity& entity)
{
    if (entity.m_bDropped || (!entity.m_bThick && !entity.m_bTrueColor) || entity.m_strKind == "ATTRIB")
        return;
    if (entity.m_bThick)
        m_Tally.Count(CDXFTally::Thickness, entity.m_Place);
    if (entity.m_bTrueColor)
        m_Tally.Count(CDXFTally::TrueColor, entity.m_Place);
}

void CDXFImporter::TRun::CountExtrusion(const TEntity& entity)
{
    if (entity.m_bExtruded && !entity.m_bDropped)
        m_Tally.Count(CDXFTally::Extrusion, entity.m_Place);
}

void CDXFImporter::TRun::CountOutside(const TToken& token)
{
    if (token.m_nCode != 0)
        return;
    if (token.m_eToken == TToken::ENDSEC)
        m_bPassedOver = false;
    else if (!m_bPassedOver && token.m_eToken != TToken::SECTION && token.m_eToken != TToken::ENDBLK &&
             !IsCompanion(token.m_eToken, true))
        CountEntity(token);
}

void CDXFImporter::TRun::CountSection(const TToken& token)
{
    m_Tally.CountSection(token.m_nCode == kSectionName ? ToNote(token) : "nameless", m_Reader);
}

void CDXFImporter::TRun::LookForSection(const TToken& token)
{
    if (m_bSectionHead)
        CountSection(token);
    m_bSectionHead = token.m_nCode == 0 && token.m_eToken == TToken::SECTION;
}

bool CDXFImporter::TRun::Next(TToken& token)
{
    if (!MayGoOn())
        return false;
    token = m_Reader.ReadToken();
    if (token.m_nCode != -1)
        return true;
    return EndBy(token.m_eToken == TToken::END_OF_FILE ? FileEnd : Broken);
}

bool CDXFImporter::TRun::TakeShared(const TToken& token, TEntity& entity, unsigned nWidths)
{
    const auto setWidth = [&entity](int nWidth) {
        entity.m_nWidth = nWidth;
        entity.m_bWidth = true;
    };
    switch (token.m_nCode) {
    case kLayer:
        entity.m_strLayer = token.GetText();
        return true;
    case kLineType:
        entity.m_strLineType = token.GetText();
        if (entity.m_strLineType == "BYBLOCK")
            entity.m_nByBlock |= TEntity::LineType;
        else if (!entity.m_strLineType.empty() && entity.m_strLineType != "BYLAYER")
            entity.m_nTold |= TEntity::LineType;
        return true;
    case kColor:
        if (token.m_Value.m_nValue >= 1 && token.m_Value.m_nValue <= kHighestColor) {
            entity.m_nColor = token.m_Value.m_nValue;
            entity.m_nTold |= TEntity::Color;
        } else if (token.m_Value.m_nValue == 0) {
            entity.m_nByBlock |= TEntity::Color;
        }
        return true;
    case kInvisible:
    case kPaperSpace:
        entity.m_bDropped = token.m_Value.m_nValue == 1;
        if (entity.m_bDropped)
            m_Tally.Count(token.m_nCode == kInvisible ? CDXFTally::Invisible : CDXFTally::PaperSpace, m_Reader);
        return true;
    case kThickness:
        entity.m_bThick = token.m_Value.m_dValue != 0;
        return true;
    case kTrueColor:
        entity.m_bTrueColor = m_Reader.HasAllValues();
        return true;
    case kLineWeight:
        if (m_Reader.HasAllValues() && token.m_Value.m_nValue > 0) {
            setWidth(m_Importer.m_AutoCADUtils.ConvertLineWeightFromMMtoPixels(m_Data.GetSettings().m_hWnd,
                                                                               token.m_Value.m_nValue));
            entity.m_nTold |= TEntity::LineWeight;
        } else if (m_Reader.HasAllValues() && token.m_Value.m_nValue == kWeightByBlock) {
            entity.m_nByBlock |= TEntity::LineWeight;
        }
        return true;
    case kExtrusionX:
    case kExtrusionY:
    case kExtrusionZ:
        if (m_Reader.HasAllValues() && token.m_Value.m_dValue != (token.m_nCode == kExtrusionZ ? 1.0 : 0.0))
            entity.m_bExtruded = true;
        return true;
    case 40:
    case 41:
    case 43: {
        const unsigned nWidth = token.m_nCode == 40 ? Width40 : token.m_nCode == 41 ? Width41 : Width43;
        if ((nWidths & nWidth) == 0)
            return false;
        setWidth(ToWidth(token.m_Value.m_dValue));
        TakeWidth(entity, token.m_Value.m_dValue);
        return true;
    }
    default:
        return false;
    }
}

void CDXFImporter::TRun::TakeWidth(TEntity& entity, double dWidth)
{
    entity.m_bWidthVaries = entity.m_bWidthVaries || (entity.m_GroundWidth && *entity.m_GroundWidth != dWidth);
    entity.m_GroundWidth = dWidth;
}

void CDXFImporter::TRun::CountLineType(std::string_view name, const CDXFTally::TPlace& place)
{
    if (!name.empty() &&
        std::find(std::begin(kOrdinaryLineTypes), std::end(kOrdinaryLineTypes), name) == std::end(kOrdinaryLineTypes))
        m_Tally.Count(CDXFTally::LineType, place);
}

double CDXFImporter::TRun::Number(const TToken& token, TEntity& entity) const
{
    if (m_Reader.GetNumberState() == CDXFReader::ENumber::NotFinite)
        entity.m_bRefused = true;
    return token.m_Value.m_dValue;
}

double CDXFImporter::TRun::ToMeters(double dValue) const
{
    return m_Units == EDIST_UNITS::Meters ? dValue : IEUtils::ToMetersFactor(dValue, m_Units);
}

CIEStation CDXFImporter::TRun::ToStation(const TCorner& corner, bool bAlwaysMeters) const
{
    const auto toGround = [&](double dValue) { return m_bPlane || bAlwaysMeters ? ToMeters(dValue) : dValue; };
    return {toGround(corner.m_Values[1]), toGround(corner.m_Values[0]), ToMeters(corner.m_Values[2])};
}

const CIELayer* CDXFImporter::TRun::FindLayer(const TEntity& entity)
{
    if (entity.m_strLayer.empty())
        return nullptr;
    const CIELayer* const pLayer =
        m_Data.GetIEDrawDictionary()->FindLayer(m_Text.View(entity.m_strLayer, m_strScratch));
    if (!pLayer && entity.m_strLayer != "0") // which every drawing has, described or not
        m_Tally.Count(CDXFTally::NoLayer, entity.m_Place);
    return pLayer;
}

std::unique_ptr<CIEDrawProperties> CDXFImporter::TRun::MakePointProperties(const TEntity& entity) const
{
    if (entity.m_nColor == 0)
        return nullptr;
    auto pProperties = std::make_unique<CIEDrawPointProperties>();
    pProperties->SetColor(m_Importer.m_AutoCADUtils.Convert256ToRGB(entity.m_nColor));
    return pProperties;
}

std::unique_ptr<CIEDrawProperties> CDXFImporter::TRun::MakeLineProperties(const TEntity& entity) const
{
    const CIEAutoCADUtils& utils = m_Importer.m_AutoCADUtils;
    auto eStyle = CIEDrawLineProperties::ByLayer;
    if (!entity.m_strLineType.empty())
        eStyle = utils.ConvertCustomLineTypeToPredefined(entity.m_strLineType);
    if (entity.m_nColor == 0 && !entity.m_bWidth && eStyle == CIEDrawLineProperties::ByLayer)
        return nullptr;
    auto pProperties = std::make_unique<CIEDrawLineProperties>();
    if (entity.m_nColor > 0)
        pProperties->SetColor(utils.Convert256ToRGB(entity.m_nColor));
    pProperties->SetDashStyle(eStyle);
    if (entity.m_bWidth)
        pProperties->SetWidth(entity.m_nWidth);
    return pProperties;
}

void CDXFImporter::TRun::AddObject(std::unique_ptr<CIEObject> pObject, const TEntity& entity, const CString& strBlock,
                                   std::unique_ptr<CIEDrawProperties> pProperties)
{
    if (!strBlock.empty()) {
        pObject->SetName(strBlock);
        pObject->SetStateType(CIEObject::InBlock);
        EnterBlock(strBlock);
        if (entity.m_nByBlock != 0)
            m_ByBlock[strBlock] |= entity.m_nByBlock;
    }
    pObject->SetLayer(FindLayer(entity));
    if (pObject->GetGroupType() != CIEObject::PointLike)
        CountLineType(entity.m_strLineType, entity.m_Place);
    pObject->SetDrawProperties(std::move(pProperties));
    m_pDataset->Add(std::move(pObject));
}

CString CDXFImporter::TRun::ToBlockName(const TToken& token)
{
    constexpr std::size_t kLongestName = 255;
    CString strName = m_Text.ToText(token.GetText());
    if (strName.size() <= kLongestName)
        return strName;
    m_Tally.Count(CDXFTally::LongName, m_Reader);
    strName.resize(kLongestName);
    strName.resize(strName.size() - Encoding::UnfinishedTail(strName));
    return strName;
}

void CDXFImporter::TRun::RemoveLast(const CString& strBlock)
{
    if (!strBlock.empty())
        m_BlockObjects[strBlock].pop_back();
    m_pDataset->RemoveObject(CountObjects() - 1);
}

bool CDXFImporter::TRun::CountCopy(const TEntity& insert, const CString& strName, std::int64_t nObjects,
                                   std::int64_t nParts)
{
    m_nCopies += nObjects + nParts / kPartsOfObject;
    if (m_nCopies <= m_nMostCopies)
        return true;
    const bool bSettings = m_nMostCopies == m_Data.GetSettings().m_nMostBlockCopies;
    TIENote note = CDXFTally::MakeNote(TIENote::LeftOut, EIENote::DrawingTooManyCopies, insert.m_Place,
                                       CString("block references have made as many copies as ") +
                                           (bSettings ? "the settings allow" : "there is memory for") +
                                           "; nothing from here on was read");
    note.m_strRecord = strName;
    Tell(std::move(note));
    return EndBy(TooManyCopies);
}

void CDXFImporter::TRun::Tell(TIENote note) const
{
    note.m_strFile = m_Importer.m_strFileName;
    m_Data.Note(note);
}

void CDXFImporter::TRun::Refuse(const TEntity& entity, CString strReason) const
{
    if (!m_Data.GetObserver())
        return;
    TIENote note =
        CDXFTally::MakeNote(TIENote::Refused, EIENote::DrawingCoordinates, entity.m_Place, std::move(strReason));
    note.m_strRecord = entity.m_strKind;
    Tell(std::move(note));
}

void CDXFImporter::TRun::TellLosses(bool bSection) const
{
    const auto tell = [this](TIENote::EKind eKind, EIENote eCode, const CDXFTally::TPlace& place, CString strReason) {
        Tell(CDXFTally::MakeNote(eKind, eCode, place, std::move(strReason)));
    };
    if (!m_Data.GetObserver())
        return;
    m_Tally.Tell(m_bPlane, m_Units, [this](const TIENote& note) { Tell(note); });
    if (m_Text.GetMended() > 0)
        tell(TIENote::Changed, EIENote::DrawingBadCharacters, m_Text.GetFirstMended(),
             "bytes or escapes without a meaning became U+FFFD in " + IEUtils::IntToString(m_Text.GetMended()) +
                 " texts");
    const CDXFTally::TPlace end = CDXFTally::PlaceOf(m_Reader);
    if (m_Reader.HasFailed())
        tell(TIENote::Refused, EIENote::FileReadFailed, end, "the rest of the file can't be read");
    else if (m_Reader.IsForeignBinary())
        tell(TIENote::Refused, EIENote::DrawingOtherBinary, end, "the binary form of this drawing is another one");
    else if (m_eEnd == Broken)
        tell(TIENote::Refused, EIENote::DrawingBroken, end, "the file is broken from here on");
    else if (!bSection && !m_bAnySection)
        tell(TIENote::Refused, EIENote::DrawingNoSection, end, "the file has no section of a drawing");
    else if (m_eEnd == FileEnd || !bSection)
        tell(TIENote::Changed, EIENote::DrawingCut, end, "the file ends within a section, or ahead of its entities");
}
