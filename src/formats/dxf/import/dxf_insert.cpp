#include "formats/dxf/import/dxf_run.h"

#include "alidade/vellumlib/utils.h"

#include <algorithm>
#include <cmath>

namespace {

// group codes of a block reference and its attributes
constexpr int kValue = 1;
constexpr int kTag = 2;
constexpr int kBlockName = 2;
constexpr int kEastScale = 41;
constexpr int kNorthScale = 42;
constexpr int kHeightScale = 43;
constexpr int kAngle = 50;
constexpr int kColumns = 70;
constexpr int kRows = 71;
constexpr int kEmbedded = 101; ///< begins an object within an attribute

// an attribute so called gives the object a code, or a text of a code
constexpr std::string_view kCodeName = "CODENAME";
constexpr std::string_view kCodeString = "CODESTRING";

/// Attributes beyond these make no sense, and would make objects that take long to go through.
constexpr std::size_t kMostAttributes = 1000;
/// A code with more attributes than this is searched by hash.
constexpr int kFewAttributes = 16;
/// Of a code, and kept for every object whatever empty values stand ahead of them.
constexpr int kFreeAttributes = 32;

bool IsFinite(const CIEObject& object)
{
    for (int i = 0; const CIEStation* const pStation = object.GetStation(i); ++i) {
        if (!std::isfinite(pStation->m_dNorth) || !std::isfinite(pStation->m_dEast) ||
            !std::isfinite(pStation->m_dHeight))
            return false;
    }
    return object.GetType() != EIEObjectsType::Arc ||
           std::isfinite(static_cast<const CIEArc&>(object).GetData(CIEArc::Radius));
}

/// What takes the memory of a station: a value of an attribute, and what is long of it.
std::int64_t PartsOf(const CString& strValue)
{
    constexpr std::size_t kBytesOfPart = 64;
    return 1 + static_cast<std::int64_t>(strValue.size() / kBytesOfPart);
}
constexpr std::int64_t kPartsOfCode = 4;

/// Stations and values of an object: what it takes beyond itself.
std::int64_t CountParts(const CIEObject& object)
{
    std::int64_t nParts = object.GetNumberOfStations() + PartsOf(object.GetName()) - 1;
    for (int i = 0; const CIECodeValues* const pCode = object.GetCode(i); ++i) {
        nParts += kPartsOfCode;
        for (int j = 0; j < pCode->GetNumberOfAttrs(); ++j)
            nParts += PartsOf(pCode->GetAttrAt(j));
        for (int k = 0; k < pCode->GetNumberOfCodeStrings(); ++k)
            nParts += PartsOf(pCode->GetCodeStringAt(k));
    }
    return nParts;
}

/// Type that a tag tells behind its last colon: C for text, N with decimals for a number, N and three zeros for a whole
/// one.
CIEAttrDescription::EType TypeOf(std::string_view text)
{
    if (!text.starts_with('N'))
        return CIEAttrDescription::TEXT;
    return text.ends_with("000") ? CIEAttrDescription::INT : CIEAttrDescription::REAL;
}

} // namespace

bool CDXFImporter::Insert(const CString& strBlock, TToken& token)
{
    constexpr TBase kNoBase = {};
    TEntity entity(*m_pReader, token);
    TRun::TReference reference;
    TRun::TCorner places[1];
    bool bTurned = false, bArray = false;
    const auto take = [&](const TToken& group) {
        switch (group.m_nCode) {
        case kBlockName:
            reference.m_strName = m_pRun->ToBlockName(group);
            break;
        case kEastScale:
            reference.m_dEastScale = m_pRun->Number(group, entity);
            break;
        case kNorthScale:
            reference.m_dNorthScale = m_pRun->Number(group, entity);
            break;
        case kHeightScale:
            reference.m_dHeightScale = m_pRun->Number(group, entity);
            break;
        case kAngle:
            bTurned = group.m_Value.m_dValue != 0;
            break;
        case kColumns:
        case kRows:
            bArray = bArray || group.m_Value.m_nValue > 1;
            break;
        default:
            m_pRun->TakeCorner(group, entity, places, kNoBase);
        }
    };
    if (!m_pRun->ReadEntity(token, entity, TRun::NoWidths, take))
        return false;
    m_pRun->m_bDroppedReference = entity.m_bDropped;
    if (entity.m_bDropped)
        return true;
    CStringArray names, values;
    TTypes types;
    while (token.m_eToken == TToken::ATTRIB) {
        if (!Attrib(token, names, values, types))
            return false;
    }
    reference.m_Place = m_pRun->ToStation(places[0]);
    if (entity.m_bRefused) {
        m_pRun->Refuse(entity, "one of its numbers isn't finite");
        return true;
    }
    const int nFirst = m_pRun->CountObjects();
    if (!m_pRun->AddCopies(reference, entity, m_bInEntities ? CString() : strBlock))
        return false;
    const int nEnd = m_pRun->CountObjects();
    if (nEnd == nFirst)
        return true;
    m_pRun->CountExtrusion(entity);
    m_pRun->CountByBlock(reference, entity, m_bInEntities ? CString() : strBlock);
    for (const auto& [bHolds, eLoss] : {std::pair(bTurned, CDXFTally::InsertAngle),
                                        {bArray, CDXFTally::InsertArray},
                                        {!m_bInEntities && m_pRun->m_bMovedBlock, CDXFTally::NestedBase}}) {
        if (bHolds)
            m_pRun->m_Tally.Count(eLoss, entity.m_Place);
    }
    if (!names.empty()) {
        m_pRun->m_ReferencePlace = entity.m_Place;
        AddCodeToDataDictionary(names, types, values);
        m_pRun->TakeGaps(nEnd - nFirst);
        for (int i = nFirst; i < nEnd; ++i) {
            if (!m_pRun->MayGoOn())
                return false;
            // what the first of them gets stands in the file itself, but for the gaps
            const std::int64_t nParts = i == nFirst ? m_pRun->m_nTargetGaps : m_pRun->m_nTargetParts;
            if (!m_pRun->CountCopy(entity, reference.m_strName, 0, nParts))
                return false;
            AddAttributesToIEObject(*m_pRun->m_pDataset->GetObjectAt(i), names, values);
        }
    }
    return true;
}

void CDXFImporter::TRun::CountByBlock(const TReference& reference, const TEntity& entity, const CString& strBlock)
{
    const auto found = m_ByBlock.find(reference.m_strName);
    if (found == m_ByBlock.end())
        return;
    if ((found->second & entity.m_nTold) != 0)
        m_Tally.Count(CDXFTally::ByBlock, entity.m_Place);
    if (const unsigned nPassedOn = found->second & entity.m_nByBlock; nPassedOn != 0 && !strBlock.empty())
        m_ByBlock[strBlock] |= nPassedOn;
}

/// Copies what the block holds at that moment and, should it be the block that the reference stands in, what it comes
/// to hold by that. Within block `strBlock` the copies are part of it, else they are on the ground.
bool CDXFImporter::TRun::AddCopies(const TReference& reference, const TEntity& entity, const CString& strBlock)
{
    const auto found = m_BlockObjects.find(reference.m_strName);
    if (found == m_BlockObjects.end() || found->second.empty()) {
        m_Tally.Count(CDXFTally::EmptyInsert, entity.m_Place);
        return true;
    }
    const std::vector<int>& patterns = found->second; // which may grow
    const CIELayer* const pLayer = FindLayer(entity);
    std::size_t nRefused = 0;
    for (std::size_t i = 0; i < patterns.size(); ++i) {
        const CIEObject& pattern = *m_pDataset->GetObjectAt(patterns[i]);
        if (!MayGoOn())
            return false;
        if (!CountCopy(entity, reference.m_strName, 1, CountParts(pattern)))
            return false;
        auto pCopy = pattern.clone();
        pCopy->ShiftCoords(reference.m_Place, reference.m_dNorthScale, reference.m_dEastScale,
                           reference.m_dHeightScale);
        if (!IsFinite(*pCopy)) {
            ++nRefused;
            continue;
        }
        if (pattern.GetType() == EIEObjectsType::Arc &&
            std::fabs(reference.m_dNorthScale) != std::fabs(reference.m_dEastScale))
            m_Tally.Count(CDXFTally::ArcScale, entity.m_Place);
        pCopy->SetStateType(strBlock.empty() ? CIEObject::InDrawing : CIEObject::InBlock);
        if (!strBlock.empty()) {
            pCopy->SetName(strBlock);
            EnterBlock(strBlock);
        }
        if (pLayer)
            pCopy->SetLayer(pLayer);
        m_pDataset->Add(std::move(pCopy));
    }
    if (nRefused > 0)
        Refuse(entity, IEUtils::IntToString(static_cast<std::int64_t>(nRefused)) + " of its copies would lie nowhere");
    return true;
}

/// One attribute, to the next group 0. One that is invisible isn't kept.
bool CDXFImporter::Attrib(TToken& token, CStringArray& names, CStringArray& values, TTypes& types)
{
    TEntity entity(*m_pReader, token);
    CString strTag, strValue;
    bool bEmbedded = false; // a text of several lines follows, which isn't the value
    const auto take = [&](const TToken& group) {
        bEmbedded = bEmbedded || group.m_nCode == kEmbedded;
        if (bEmbedded)
            return;
        if (group.m_nCode == kTag)
            strTag = m_pRun->m_Text.ToText(group.GetText());
        else if (group.m_nCode == kValue)
            strValue = m_pRun->m_Text.ToText(group.GetText());
    };
    if (!m_pRun->ReadEntity(token, entity, TRun::AllWidths, take))
        return false;
    if (entity.m_bDropped)
        return true;
    if (names.size() == kMostAttributes) {
        m_pRun->m_Tally.Count(CDXFTally::Attribute, entity.m_Place);
        return true;
    }
    CIEAttrDescription::EType eType = CIEAttrDescription::TEXT;
    const std::size_t nColon = strTag.rfind(':');
    if (nColon != CString::npos && nColon >= 1 && !strTag.starts_with(kCodeString)) {
        eType = TypeOf(std::string_view(strTag).substr(nColon + 1));
        strTag.resize(nColon);
    }
    names.push_back(std::move(strTag));
    values.push_back(std::move(strValue));
    types.push_back(eType);
    return true;
}

/// Finds out where each value belongs, and adds what the dictionary lacks for that.
void CDXFImporter::AddCodeToDataDictionary(const CStringArray& names, const TTypes& types, const CStringArray& values)
{
    std::vector<TRun::TTarget>& targets = m_pRun->m_Targets;
    targets.clear();
    for (std::size_t i = 0; i < names.size(); ++i) {
        const TRun::TTarget target = m_pRun->FindTarget(names[i], types[i], values[i]);
        if (target.m_bBeyond) {
            m_pRun->m_Tally.Count(CDXFTally::Attribute, m_pRun->m_ReferencePlace);
        } else if (!target.m_pCode) {
            m_pRun->m_Tally.Count(CDXFTally::CodeName, m_pRun->m_ReferencePlace);
        } else if (target.m_nAttribute >= 0) {
            const auto same = std::find(targets.begin(), targets.end(), target);
            if (same != targets.end() && values[static_cast<std::size_t>(same - targets.begin())] != values[i])
                m_pRun->m_Tally.Count(CDXFTally::SameAttribute, m_pRun->m_ReferencePlace);
        }
        targets.push_back(target);
    }
    m_pRun->CountTargetParts(values);
}

/// What the values take of each object: themselves, their codes, and empty values ahead of those with a high index.
void CDXFImporter::TRun::CountTargetParts(const CStringArray& values)
{
    std::unordered_map<const CIECodeDescription*, int> valuesOfCodes; // how many each code comes to have
    m_nTargetParts = m_nTargetGaps = 0;
    for (std::size_t i = 0; i < values.size(); ++i) {
        m_nTargetParts += PartsOf(values[i]);
        m_nTargetGaps -= m_Targets[i].m_nAttribute >= 0;
        int& nValues = valuesOfCodes[m_Targets[i].m_pCode];
        nValues = std::max(nValues, m_Targets[i].m_nAttribute + 1);
    }
    for (const auto& [pCode, nValues] : valuesOfCodes)
        m_nTargetGaps += nValues;
    m_nTargetGaps = std::max<std::int64_t>(m_nTargetGaps, 0); // below 0 by values of one attribute
    m_nTargetParts += m_nTargetGaps + kPartsOfCode * static_cast<std::int64_t>(valuesOfCodes.size());
}

/// Leaves out the attributes of a reference that would make more empty values than there may be.
void CDXFImporter::TRun::TakeGaps(int nObjects)
{
    m_nGaps -= m_nTargetGaps * nObjects;
    if (m_nGaps >= 0)
        return;
    m_nGaps += m_nTargetGaps * nObjects;
    m_nTargetParts -= m_nTargetGaps;
    m_nTargetGaps = 0;
    for (TTarget& target : m_Targets) {
        if (target.m_nAttribute >= kFreeAttributes) {
            m_Tally.Count(CDXFTally::Attribute, m_ReferencePlace);
            target = {};
        }
    }
}

CDXFImporter::TRun::TTarget CDXFImporter::TRun::FindTarget(std::string_view name, CIEAttrDescription::EType eType,
                                                           const CString& strValue)
{
    std::string_view attribute = name, code = m_strFileCode;
    if (const std::size_t nColon = name.find(':'); nColon != name.npos) {
        attribute = name.substr(0, nColon);
        code = name.substr(nColon + 1);
    } else if (name.starts_with(kCodeName)) {
        attribute = kCodeName;
        code = strValue;
    }
    if (code.empty() || attribute.empty())
        return {};
    TTarget target;
    target.m_pCode = m_Data.TakeCode(code);
    target.m_bCodeString = attribute.starts_with(kCodeString);
    if (attribute != kCodeName && attribute != kCodeString) {
        const int nAttribute = TakeAttribute(*target.m_pCode, attribute, eType);
        target.m_nAttribute = target.m_bCodeString ? -1 : nAttribute;
        if (nAttribute < 0 && !target.m_bCodeString)
            return {.m_bBeyond = true};
    }
    return target;
}

/// Index of the code's attribute of that name, which is added if it isn't there; -1 if that would make too many empty
/// values.
int CDXFImporter::TRun::TakeAttribute(CIECodeDescription& code, std::string_view attribute,
                                      CIEAttrDescription::EType eType)
{
    int nIndex = -1;
    TByName<int>* pNames = nullptr;
    if (code.GetSize() < kFewAttributes) {
        nIndex = code.FindAttrDescription(attribute);
    } else {
        pNames = &m_ManyAttributes[&code];
        if (pNames->empty()) {
            for (int i = 0; i < code.GetSize(); ++i)
                pNames->try_emplace(code.GetAttrDescriptionAt(i)->GetName(), i);
        }
        const auto found = pNames->find(attribute);
        nIndex = found == pNames->end() ? -1 : found->second;
    }
    if (nIndex >= 0)
        return nIndex;
    if (code.GetSize() >= kFreeAttributes && m_nGaps < code.GetSize())
        return -1;
    code.AddAttrDescription(CIEAttrDescription(CString(attribute), eType));
    if (pNames)
        pNames->try_emplace(CString(attribute), code.GetSize() - 1);
    return code.GetSize() - 1;
}

void CDXFImporter::AddAttributesToIEObject(CIEObject& object, const CStringArray& names, const CStringArray& values)
{
    for (std::size_t i = 0; i < names.size(); ++i) {
        const TRun::TTarget& target = m_pRun->m_Targets[i];
        if (!target.m_pCode)
            continue;
        int nCode = object.GetCodePos(target.m_pCode);
        if (nCode < 0) {
            nCode = object.GetNumberOfCodes();
            object.AddCode(CIECodeValues(target.m_pCode));
        }
        CIECodeValues& code = *object.GetCode(nCode);
        if (target.m_bCodeString)
            code.AddCodeString(values[i]);
        else if (target.m_nAttribute >= 0)
            code.SetAttrAt(target.m_nAttribute, values[i]);
    }
}
