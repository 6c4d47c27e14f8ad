#include "alidade/vellumlib/dataset.h"

#include <algorithm>
#include <atomic>
#include <mutex>
#include <unordered_map>

/// Objects of each name in the order in which they got it. It is built under a lock, because readers build it; whoever
/// changes the dataset is alone with it.
struct CIEDataset::TIndex {
    struct THash {
        using is_transparent = void;
        std::size_t operator()(std::string_view name) const { return std::hash<std::string_view>{}(name); }
    };
    using TByName = std::unordered_map<CString, std::vector<CIEObject*>, THash, std::equal_to<>>;

    static void Enter(TByName& byName, CIEObject* pObject)
    {
        if (!pObject->GetName().empty())
            byName[pObject->GetName()].push_back(pObject);
    }

    TByName m_ByName;
    std::atomic<bool> m_bBuilt = false;
    std::mutex m_Building;
};

CIEDataset::CIEDataset(CString name) : m_strName(std::move(name)), m_pIndex(std::make_unique<TIndex>()) {}

CIEDataset::~CIEDataset() = default;

CIEObject* CIEDataset::Add(std::unique_ptr<CIEObject> pObject)
{
    if (!pObject)
        return nullptr;
    CIEObject* const pAdded = m_Objects.emplace_back(std::move(pObject)).get();
    pAdded->m_pOwner = this;
    EnterIndex(pAdded);
    return pAdded;
}

CIESurface* CIEDataset::Add(std::unique_ptr<CIESurface> pSurface)
{
    return pSurface ? m_Surfaces.emplace_back(std::move(pSurface)).get() : nullptr;
}

CIEAlignment* CIEDataset::Add(std::unique_ptr<CIEAlignment> pAlignment)
{
    return pAlignment ? m_Alignments.emplace_back(std::move(pAlignment)).get() : nullptr;
}

void CIEDataset::RemoveObject(int i)
{
    if (!GetObjectAt(i))
        return;
    const auto place = m_Objects.begin() + i;
    LeaveIndex(place->get());
    ForgetStartPoint(place->get());
    m_Objects.erase(place);
}

void CIEDataset::ForgetStartPoint(const CIEObject* pObject) const
{
    for (const auto& pAlignment : m_Alignments) {
        if (pAlignment->GetStartPoint() == pObject)
            pAlignment->SetStartPoint(nullptr);
    }
}

CIEObject* CIEDataset::GetObjectAt(int i) const
{
    return i >= 0 && static_cast<std::size_t>(i) < m_Objects.size() ? m_Objects[static_cast<std::size_t>(i)].get()
                                                                    : nullptr;
}

int CIEDataset::GetNumberOfElements(int nKind, int nState, bool bStations, bool bNamed) const
{
    constexpr int kAnyKind = -1;
    constexpr int kAnyState = 2;
    if (nKind == kAnyKind && nState == kAnyState && !bStations && !bNamed)
        return static_cast<int>(m_Objects.size());
    int nCount = 0;
    for (const auto& pObject : m_Objects) {
        if (nKind != kAnyKind && nKind != static_cast<int>(pObject->GetType()))
            continue;
        if (nState != kAnyState && nState != pObject->GetStateType())
            continue;
        if (bNamed && pObject->GetName().empty())
            continue;
        nCount += bStations ? pObject->GetNumberOfStations() : 1;
    }
    return nCount;
}

CIEObject* CIEDataset::FindObject(std::string_view name) const
{
    TIndex& index = *m_pIndex;
    if (!index.m_bBuilt.load(std::memory_order_acquire)) {
        const std::scoped_lock lock(index.m_Building);
        if (!index.m_bBuilt.load(std::memory_order_relaxed)) {
            TIndex::TByName byName;
            for (const auto& pObject : m_Objects)
                TIndex::Enter(byName, pObject.get());
            index.m_ByName.swap(byName);
            index.m_bBuilt.store(true, std::memory_order_release);
        }
    }
    const auto found = index.m_ByName.find(name);
    return found == index.m_ByName.end() ? nullptr : found->second.front();
}

void CIEDataset::DropIndex()
{
    m_pIndex->m_bBuilt = false;
    m_pIndex->m_ByName.clear();
}

void CIEDataset::EnterIndex(CIEObject* pObject) const
{
    if (m_pIndex->m_bBuilt)
        TIndex::Enter(m_pIndex->m_ByName, pObject);
}

void CIEDataset::LeaveIndex(const CIEObject* pObject) const
{
    if (!m_pIndex->m_bBuilt || pObject->GetName().empty())
        return;
    const auto found = m_pIndex->m_ByName.find(pObject->GetName());
    if (found == m_pIndex->m_ByName.end())
        return;
    auto& objects = found->second;
    // from the back, because the last object is the one that is taken out again and again
    const auto place = std::find(objects.rbegin(), objects.rend(), pObject);
    if (place != objects.rend())
        objects.erase(std::next(place).base());
    if (objects.empty())
        m_pIndex->m_ByName.erase(found);
}

CIEPolygon* CIEDataset::TransformLineToPolygon(const CIEPolyLine* pLine)
{
    if (!pLine || pLine->GetType() != EIEObjectsType::PolyLine)
        return nullptr;
    const auto place =
        std::find_if(m_Objects.rbegin(), m_Objects.rend(),
                     [pLine](const std::unique_ptr<CIEObject>& pObject) { return pObject.get() == pLine; });
    if (place == m_Objects.rend())
        return nullptr;
    LeaveIndex(pLine);
    auto pPolygon = std::make_unique<CIEPolygon>(*pLine);
    CIEPolygon* const pAdded = pPolygon.get();
    *place = std::move(pPolygon);
    pAdded->m_pOwner = this;
    EnterIndex(pAdded);
    return pAdded;
}

CIESurface* CIEDataset::GetSurfaceAt(int i) const
{
    return i >= 0 && i < GetNumberOfSurfaces() ? m_Surfaces[static_cast<std::size_t>(i)].get() : nullptr;
}

CIEAlignment* CIEDataset::GetAlignmentAt(int i) const
{
    return i >= 0 && i < GetNumberOfAlignments() ? m_Alignments[static_cast<std::size_t>(i)].get() : nullptr;
}

CHeaderInfo* CIEDataset::GetHeaderInfo()
{
    if (m_bFixedBorders)
        return &m_HeaderInfo;
    m_HeaderInfo.ForgetBorders();
    for (const auto& pObject : m_Objects) {
        if (pObject->GetStateType() == CIEObject::InBlock)
            continue;
        for (int i = 0; const CIEStation* const pStation = pObject->GetStation(i); ++i)
            m_HeaderInfo.Extend(*pStation);
    }
    for (const auto& pSurface : m_Surfaces) {
        for (int i = 0; i < pSurface->GetNumberOfPositions(); ++i)
            m_HeaderInfo.Extend(*pSurface->GetPositionAt(i));
    }
    return &m_HeaderInfo;
}

void CIEDataset::FixBorders(CIEStation minimum, CIEStation maximum)
{
    m_HeaderInfo.SetBorders(std::move(minimum), std::move(maximum));
    m_bFixedBorders = true;
}

bool CIEDataset::IsCodesExist() const
{
    return std::any_of(m_Objects.begin(), m_Objects.end(),
                       [](const std::unique_ptr<CIEObject>& pObject) { return pObject->GetNumberOfCodes() > 0; });
}
