#include "alidade/compare/compare.h"

#include "compare/comparer.h"
#include "compare/object_matcher.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <functional>

namespace {

/// A job's datasets that are compared with one of another job's, or with several.
using TDatasets = std::vector<const CIEDataset*>;

std::uint64_t HashOf(const CString& name)
{
    return name.empty() ? 0 : std::hash<CString>{}(name) | 1U;
}

bool IsNear(const CIEStation* pFirst, const CIEStation* pSecond, double dTolerance)
{
    if (!pFirst || !pSecond)
        return pFirst == pSecond;
    return std::abs(pFirst->m_dNorth - pSecond->m_dNorth) <= dTolerance &&
           std::abs(pFirst->m_dEast - pSecond->m_dEast) <= dTolerance;
}

/// An object with the dataset that it is told to be in.
struct TEntry {
    const CIEObject* m_pObject;
    const CIEDataset* m_pDataset;
};

std::vector<TEntry> EntriesOf(const TDatasets& datasets)
{
    std::vector<TEntry> entries;
    for (const CIEDataset* const pDataset : datasets) {
        for (int i = 0; const CIEObject* const pObject = pDataset->GetObjectAt(i); ++i)
            entries.push_back({pObject, pDataset});
    }
    return entries;
}

TIEMatchItem ItemOf(const CIEObject& object)
{
    TIEMatchItem item;
    item.m_nName = HashOf(object.GetName());
    // what lies in a block and what lies on the ground are two things
    item.m_nKind = static_cast<std::int32_t>(object.GetType()) * 2 + (object.GetStateType() == CIEObject::InBlock);
    if (const CIEStation* const pStation = object.GetStation(0)) {
        item.m_bPlace = true;
        item.m_dNorth = pStation->m_dNorth;
        item.m_dEast = pStation->m_dEast;
    }
    return item;
}

template <class TThing>
std::vector<TIEMatchItem> NamedItems(const std::vector<TThing*>& things)
{
    std::vector<TIEMatchItem> items(things.size());
    for (std::size_t i = 0; i < things.size(); ++i)
        items[i].m_nName = HashOf(things[i]->GetName()) | 1U; // nameless ones belong together in their order
    return items;
}

/// The whole of a triangle's place: its corners in an order that doesn't depend on where they are begun.
struct TTrianglePlace {
    std::array<const CIEStation*, CIETriangle::kCorners> m_Corners{};

    [[nodiscard]] TIEMatchItem MakeItem() const
    {
        TIEMatchItem item;
        item.m_bPlace = true;
        for (const CIEStation* const pCorner : m_Corners) {
            item.m_dNorth += pCorner ? pCorner->m_dNorth / CIETriangle::kCorners : 0.0;
            item.m_dEast += pCorner ? pCorner->m_dEast / CIETriangle::kCorners : 0.0;
        }
        return item;
    }
    [[nodiscard]] bool IsSame(const TTrianglePlace& other, const TIECompareOptions& options) const
    {
        std::array<int, CIETriangle::kCorners> order{0, 1, 2};
        do {
            bool bSame = true;
            for (std::size_t k = 0; k < m_Corners.size() && bSame; ++k) {
                const CIEStation* const pOther = other.m_Corners[static_cast<std::size_t>(order[k])];
                bSame = IsNear(m_Corners[k], pOther, options.m_dPlane) &&
                        (!pOther || std::abs(m_Corners[k]->GetHeight() - pOther->GetHeight()) <= options.m_dHeight);
            }
            if (bSame)
                return true;
        } while (std::next_permutation(order.begin(), order.end()));
        return false;
    }
};

class CJobComparison {
public:
    CJobComparison(const CIEData& first, const CIEData& second, const TIECompareOptions& options,
                   IIEDifferenceSink& sink)
        : m_First(first), m_Second(second), m_Comparer(options, sink)
    {
    }

    std::int64_t Run();

private:
    void CompareDatasets();
    void Compare(const TDatasets& first, const TDatasets& second);
    void CompareObjects(const TDatasets& first, const TDatasets& second);
    void CompareTriangles(const CIESurface& first, const CIESurface& second);

    void CompareOne(const TEntry& first, const TEntry& second)
    {
        m_Comparer.Begin(first.m_pDataset->GetName(), *first.m_pObject, second.m_pObject);
        m_Comparer.Objects(*first.m_pObject, *second.m_pObject);
    }
    void TellAlone(const TEntry& entry, TIEDifference::EKind eKind)
    {
        m_Comparer.Begin(entry.m_pDataset->GetName(), *entry.m_pObject, nullptr);
        m_Comparer.TellAlone(eKind);
    }
    /// Things that belong together by their names, in order where several share one.
    template <class TThing, class TCompare>
    void CompareNamed(const char* pThing, const CString& strDataset, const std::vector<TThing*>& first,
                      const std::vector<TThing*>& second, TCompare compare);
    /// All things of a kind out of several datasets.
    template <class TGet>
    [[nodiscard]] static auto Collect(const TDatasets& datasets, TGet get)
    {
        std::vector<std::remove_pointer_t<decltype(get(*datasets[0], 0))>*> things;
        for (const CIEDataset* const pDataset : datasets) {
            for (int i = 0; auto* const pThing = get(*pDataset, i); ++i)
                things.push_back(pThing);
        }
        return things;
    }

    const CIEData& m_First;
    const CIEData& m_Second;
    CIEComparer m_Comparer;
};

template <class TThing, class TCompare>
void CJobComparison::CompareNamed(const char* pThing, const CString& strDataset, const std::vector<TThing*>& first,
                                  const std::vector<TThing*>& second, TCompare compare)
{
    const CIEObjectMatcher matcher(NamedItems(first), NamedItems(second), 0.0);
    for (std::size_t i = 0; i < first.size(); ++i) {
        m_Comparer.Begin(pThing, strDataset, first[i]->GetName());
        const int nMate = matcher.GetMates()[i];
        if (nMate < 0)
            m_Comparer.TellAlone(TIEDifference::Gone);
        else
            compare(*first[i], *second[static_cast<std::size_t>(nMate)]);
    }
    for (std::size_t i = 0; i < second.size(); ++i) {
        if (matcher.IsTaken(i))
            continue;
        m_Comparer.Begin(pThing, strDataset, second[i]->GetName());
        m_Comparer.TellAlone(TIEDifference::Added);
    }
}

std::int64_t CJobComparison::Run()
{
    if (m_Comparer.GetOptions().m_bInfo) {
        m_Comparer.Begin("job", {}, m_First.GetJobInfo()->m_strJobName);
        m_Comparer.Infos(*m_First.GetJobInfo(), *m_Second.GetJobInfo());
    }
    const auto codes = [](const CIEData& job) {
        std::vector<const CIECodeDescription*> all;
        for (int i = 0; const CIECodeDescription* const p = job.GetIEDataDictionary()->GetCodeDescriptionAt(i); ++i)
            all.push_back(p);
        return all;
    };
    CompareNamed("code", {}, codes(m_First), codes(m_Second),
                 [this](const auto& one, const auto& other) { m_Comparer.Codes(one, other); });
    const auto layers = [](const CIEData& job) {
        std::vector<const CIELayer*> all;
        for (int i = 0; const CIELayer* const p = job.GetIEDrawDictionary()->GetLayerAt(i); ++i)
            all.push_back(p);
        return all;
    };
    CompareNamed("layer", {}, layers(m_First), layers(m_Second),
                 [this](const auto& one, const auto& other) { m_Comparer.Layers(one, other); });
    const auto templates = [](const CIEData& job) {
        std::vector<const CIERoadTemplate*> all;
        if (const CIERoadTemplatesDictionary* const p = job.GetIERoadTemplatesDictionary()) {
            CIERoadTemplatesDictionary::TPosition position = p->GetStartPosition();
            while (const CIERoadTemplate* const pTemplate = p->GetNextRoadTemplate(position)) {
                all.push_back(pTemplate);
                if (position == 0)
                    break;
            }
        }
        return all;
    };
    CompareNamed("template", {}, templates(m_First), templates(m_Second),
                 [this](const auto& one, const auto& other) { m_Comparer.Templates(one, other); });
    CompareDatasets();
    return m_Comparer.GetCount();
}

void CJobComparison::CompareDatasets()
{
    const auto all = [](const CIEData& job) {
        TDatasets datasets;
        for (int i = 0; const CIEDataset* const pDataset = job.GetDatasetAt(i); ++i)
            datasets.push_back(pDataset);
        return datasets;
    };
    const TDatasets first = all(m_First), second = all(m_Second);
    if (!m_Comparer.GetOptions().m_bDatasets) {
        Compare(first, second);
        return;
    }
    const CIEObjectMatcher matcher(NamedItems(first), NamedItems(second), 0.0);
    std::vector<int> mates = matcher.GetMates();
    // what has no name in common belongs together in its order
    std::size_t nNext = 0;
    for (std::size_t i = 0; i < first.size(); ++i) {
        while (mates[i] < 0 && nNext < second.size()) {
            const std::size_t nSecond = nNext++;
            if (!matcher.IsTaken(nSecond))
                mates[i] = static_cast<int>(nSecond);
        }
        m_Comparer.Begin("dataset", first[i]->GetName(), first[i]->GetName());
        if (mates[i] < 0) {
            m_Comparer.TellAlone(TIEDifference::Gone);
            Compare({first[i]}, {});
            continue;
        }
        const CIEDataset* const pMate = second[static_cast<std::size_t>(mates[i])];
        m_Comparer.Text("name", first[i]->GetName(), pMate->GetName());
        Compare({first[i]}, {pMate});
    }
    for (; nNext < second.size(); ++nNext) {
        if (matcher.IsTaken(nNext))
            continue;
        m_Comparer.Begin("dataset", second[nNext]->GetName(), second[nNext]->GetName());
        m_Comparer.TellAlone(TIEDifference::Added);
        Compare({}, {second[nNext]});
    }
}

void CJobComparison::Compare(const TDatasets& first, const TDatasets& second)
{
    CompareObjects(first, second);
    const CString strDataset = first.empty() ? CString() : first[0]->GetName();
    const auto surface = [](const CIEDataset& dataset, int i) { return dataset.GetSurfaceAt(i); };
    CompareNamed("surface", strDataset, Collect(first, surface), Collect(second, surface),
                 [this](const CIESurface& one, const CIESurface& other) { CompareTriangles(one, other); });
    const auto alignment = [](const CIEDataset& dataset, int i) { return dataset.GetAlignmentAt(i); };
    CompareNamed("alignment", strDataset, Collect(first, alignment), Collect(second, alignment),
                 [this](const CIEAlignment& one, const CIEAlignment& other) { m_Comparer.Alignments(one, other); });
    const auto history = [](const CIEDataset& dataset, int i) { return i == 0 ? dataset.GetJobHistory() : nullptr; };
    const auto histories = Collect(first, history), others = Collect(second, history);
    for (std::size_t i = 0; i < std::max(histories.size(), others.size()); ++i) {
        m_Comparer.Begin("job history", strDataset, strDataset);
        m_Comparer.Histories(i < histories.size() ? histories[i] : nullptr, i < others.size() ? others[i] : nullptr);
    }
}

/// What stands at the same index under the same name and at the same place belongs together without a search; mostly
/// that is all there is.
void CJobComparison::CompareObjects(const TDatasets& first, const TDatasets& second)
{
    const std::vector<TEntry> entries = EntriesOf(first), others = EntriesOf(second);
    const double dTolerance = m_Comparer.GetOptions().m_dPlane;
    const auto isSame = [&](const TEntry& one, const TEntry& other) {
        return one.m_pObject->GetType() == other.m_pObject->GetType() &&
               one.m_pObject->GetStateType() == other.m_pObject->GetStateType() &&
               one.m_pObject->GetName() == other.m_pObject->GetName() &&
               IsNear(one.m_pObject->GetStation(0), other.m_pObject->GetStation(0), dTolerance);
    };
    const std::size_t nCommon = std::min(entries.size(), others.size());
    std::size_t nHead = 0;
    while (nHead < nCommon && isSame(entries[nHead], others[nHead]) && !CIEData::m_bStopProcess) {
        CompareOne(entries[nHead], others[nHead]);
        ++nHead;
    }
    std::size_t nTail = 0;
    while (nHead + nTail < nCommon && isSame(entries[entries.size() - 1 - nTail], others[others.size() - 1 - nTail]))
        ++nTail;

    const auto items = [&](const std::vector<TEntry>& all) {
        std::vector<TIEMatchItem> rest;
        rest.reserve(all.size() - nHead - nTail);
        for (std::size_t i = nHead; i < all.size() - nTail; ++i)
            rest.push_back(ItemOf(*all[i].m_pObject));
        return rest;
    };
    const CIEObjectMatcher matcher(items(entries), items(others), dTolerance);
    for (std::size_t i = nHead; i < entries.size() - nTail && !CIEData::m_bStopProcess; ++i) {
        const int nMate = matcher.GetMates()[i - nHead];
        if (nMate < 0)
            TellAlone(entries[i], TIEDifference::Gone);
        else
            CompareOne(entries[i], others[nHead + static_cast<std::size_t>(nMate)]);
    }
    for (std::size_t i = nHead; i < others.size() - nTail && !CIEData::m_bStopProcess; ++i) {
        if (!matcher.IsTaken(i - nHead))
            TellAlone(others[i], TIEDifference::Added);
    }
    for (std::size_t i = nTail; i > 0 && !CIEData::m_bStopProcess; --i)
        CompareOne(entries[entries.size() - i], others[others.size() - i]);
}

void CJobComparison::CompareTriangles(const CIESurface& first, const CIESurface& second)
{
    const auto places = [](const CIESurface& surface) {
        std::vector<TTrianglePlace> all(static_cast<std::size_t>(surface.GetNumberOfTriangles()));
        for (std::size_t i = 0; i < all.size(); ++i) {
            for (int k = 0; k < CIETriangle::kCorners; ++k)
                all[i].m_Corners[static_cast<std::size_t>(k)] =
                    surface.GetPositionAt(surface.GetTriangleAt(static_cast<int>(i))->GetPosition(k));
        }
        return all;
    };
    const TIECompareOptions& options = m_Comparer.GetOptions();
    const std::vector<TTrianglePlace> ones = places(first), others = places(second);
    std::vector<TIEMatchItem> items, otherItems;
    std::vector<std::size_t> restOfOnes, restOfOthers;
    for (std::size_t i = 0; i < std::max(ones.size(), others.size()); ++i) {
        if (i < ones.size() && i < others.size() && ones[i].IsSame(others[i], options))
            continue;
        if (i < ones.size()) {
            items.push_back(ones[i].MakeItem());
            restOfOnes.push_back(i);
        }
        if (i < others.size()) {
            otherItems.push_back(others[i].MakeItem());
            restOfOthers.push_back(i);
        }
    }
    const CIEObjectMatcher matcher(std::move(items), std::move(otherItems), options.m_dPlane);
    std::int64_t nLost = 0, nNew = 0;
    for (std::size_t i = 0; i < restOfOnes.size(); ++i) {
        const int nMate = matcher.GetMates()[i];
        const bool bSame =
            nMate >= 0 && ones[restOfOnes[i]].IsSame(others[restOfOthers[static_cast<std::size_t>(nMate)]], options);
        nLost += bSame ? 0 : 1;
        nNew += nMate >= 0 && !bSame ? 1 : 0;
    }
    for (std::size_t i = 0; i < restOfOthers.size(); ++i)
        nNew += matcher.IsTaken(i) ? 0 : 1;
    m_Comparer.Integer("triangles lost", nLost, 0);
    m_Comparer.Integer("triangles new", 0, nNew);
}

} // namespace

std::int64_t CompareJobs(const CIEData& first, const CIEData& second, const TIECompareOptions& options,
                         IIEDifferenceSink& sink)
{
    return CJobComparison(first, second, options, sink).Run();
}

void CIEDifferenceCounter::OnDifference(const TIEDifference& difference)
{
    ++m_nTotal;
    if (static_cast<std::size_t>(++m_Counts[{difference.m_eKind, difference.m_pThing, difference.m_pProperty}]) <=
        kKeptOfEach)
        m_Kept.push_back(difference);
}
