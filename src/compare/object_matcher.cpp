#include "compare/object_matcher.h"

#include <algorithm>
#include <bit>
#include <cmath>

namespace {

std::uint64_t Mix(std::uint64_t nValue)
{
    // the finalizer of SplitMix64
    nValue ^= nValue >> 30U;
    nValue *= 0xBF58476D1CE4E5B9U;
    nValue ^= nValue >> 27U;
    nValue *= 0x94D049BB133111EBU;
    return nValue ^ nValue >> 31U;
}

struct TEntry {
    std::uint64_t m_nKey;
    int m_nItem;
    bool operator<(const TEntry& other) const
    {
        return m_nKey != other.m_nKey ? m_nKey < other.m_nKey : m_nItem < other.m_nItem;
    }
};

} // namespace

CIEObjectMatcher::CIEObjectMatcher(std::vector<TIEMatchItem> first, std::vector<TIEMatchItem> second, double dTolerance)
    : m_First(std::move(first)),
      m_Second(std::move(second)),
      m_dTolerance(dTolerance),
      m_Mates(m_First.size(), -1),
      m_Taken(m_Second.size())
{
    PairUnique();
    Pass(Name | Kind | Place);
    Pass(Name | Kind);
    Pass(Name);
    Pass(Kind | Place);
}

/// Cells are wider than the tolerance, so what is near lies in the same cell or in one beside it.
std::int64_t CIEObjectMatcher::CellOf(double dValue) const
{
    if (m_dTolerance <= 0.0)
        return std::bit_cast<std::int64_t>(dValue + 0.0); // no two zeros
    constexpr double kLargest = 9e18;
    const double dCell = std::floor(dValue / (2 * m_dTolerance));
    return static_cast<std::int64_t>(std::clamp(std::isfinite(dCell) ? dCell : 0.0, -kLargest, kLargest));
}

std::uint64_t CIEObjectMatcher::KeyOf(const TIEMatchItem& item, unsigned nKey, std::int64_t nNorth,
                                      std::int64_t nEast) const
{
    std::uint64_t nHash = nKey & Name ? Mix(item.m_nName) : 0;
    if (nKey & Kind)
        nHash = Mix(nHash + static_cast<std::uint64_t>(item.m_nKind) + 1);
    if (nKey & Place)
        nHash = Mix(Mix(nHash + static_cast<std::uint64_t>(nNorth)) + static_cast<std::uint64_t>(nEast));
    return nHash;
}

bool CIEObjectMatcher::IsMatch(const TIEMatchItem& first, const TIEMatchItem& second, unsigned nKey) const
{
    if ((nKey & Name && first.m_nName != second.m_nName) || (nKey & Kind && first.m_nKind != second.m_nKind))
        return false;
    return !(nKey & Place) || (std::abs(first.m_dNorth - second.m_dNorth) <= m_dTolerance &&
                               std::abs(first.m_dEast - second.m_dEast) <= m_dTolerance);
}

/// A name that both lists have once needs no place to tell whose it is. That is nearly all of most jobs, and costs a
/// sort of each list.
void CIEObjectMatcher::PairUnique()
{
    const auto sorted = [](const std::vector<TIEMatchItem>& items) {
        std::vector<TEntry> entries;
        entries.reserve(items.size());
        for (std::size_t i = 0; i < items.size(); ++i) {
            if (items[i].m_nName != 0)
                entries.push_back({items[i].m_nName, static_cast<int>(i)});
        }
        std::sort(entries.begin(), entries.end());
        return entries;
    };
    const std::vector<TEntry> first = sorted(m_First), second = sorted(m_Second);
    const auto endOf = [](const std::vector<TEntry>& entries, std::size_t i) {
        std::size_t nEnd = i + 1;
        while (nEnd < entries.size() && entries[nEnd].m_nKey == entries[i].m_nKey)
            ++nEnd;
        return nEnd;
    };
    for (std::size_t i = 0, j = 0; i < first.size() && j < second.size();) {
        if (first[i].m_nKey != second[j].m_nKey) {
            first[i].m_nKey < second[j].m_nKey ? ++i : ++j;
            continue;
        }
        const std::size_t nFirstEnd = endOf(first, i), nSecondEnd = endOf(second, j);
        const auto nOne = static_cast<std::size_t>(first[i].m_nItem),
                   nOther = static_cast<std::size_t>(second[j].m_nItem);
        if (nFirstEnd == i + 1 && nSecondEnd == j + 1) {
            m_Mates[nOne] = second[j].m_nItem;
            m_Taken[nOther] = true;
        }
        i = nFirstEnd;
        j = nSecondEnd;
    }
}

void CIEObjectMatcher::Pass(unsigned nKey)
{
    const auto isIn = [nKey](const TIEMatchItem& item) {
        return !(nKey & Name && item.m_nName == 0) && !(nKey & Place && !item.m_bPlace);
    };
    std::vector<TEntry> entries;
    for (std::size_t i = 0; i < m_Second.size(); ++i) {
        const TIEMatchItem& item = m_Second[i];
        if (!m_Taken[i] && isIn(item))
            entries.push_back({KeyOf(item, nKey, CellOf(item.m_dNorth), CellOf(item.m_dEast)), static_cast<int>(i)});
    }
    if (entries.empty() || std::find(m_Mates.begin(), m_Mates.end(), -1) == m_Mates.end())
        return;
    std::sort(entries.begin(), entries.end());
    // where the next free entry of a run stands, so that a run of one key isn't walked again for each item
    std::vector<int> next(entries.size() + 1);
    for (std::size_t i = 0; i < next.size(); ++i)
        next[i] = static_cast<int>(i);
    const auto findFree = [&next](int n) {
        while (next[static_cast<std::size_t>(n)] != n) {
            int& nNext = next[static_cast<std::size_t>(n)];
            nNext = next[static_cast<std::size_t>(nNext)];
            n = nNext;
        }
        return n;
    };
    // items that share a cell but are farther apart than the tolerance are few; a crowd of them isn't walked to its end
    constexpr int kMostTries = 16;
    const auto take = [&](std::size_t nFirst, std::uint64_t nHash) {
        const auto start = std::lower_bound(entries.begin(), entries.end(), TEntry{nHash, -1});
        int n = findFree(static_cast<int>(start - entries.begin()));
        for (int nTry = 0; nTry < kMostTries; ++nTry) {
            if (static_cast<std::size_t>(n) >= entries.size() || entries[static_cast<std::size_t>(n)].m_nKey != nHash)
                return false;
            const int nSecond = entries[static_cast<std::size_t>(n)].m_nItem;
            if (IsMatch(m_First[nFirst], m_Second[static_cast<std::size_t>(nSecond)], nKey)) {
                m_Mates[nFirst] = nSecond;
                m_Taken[static_cast<std::size_t>(nSecond)] = true;
                next[static_cast<std::size_t>(n)] = n + 1;
                return true;
            }
            n = findFree(n + 1);
        }
        return false;
    };
    for (std::size_t i = 0; i < m_First.size(); ++i) {
        const TIEMatchItem& item = m_First[i];
        if (m_Mates[i] >= 0 || !isIn(item))
            continue;
        const std::int64_t nNorth = CellOf(item.m_dNorth), nEast = CellOf(item.m_dEast);
        const int nAround = (nKey & Place) && m_dTolerance > 0.0 ? 1 : 0;
        if (take(i, KeyOf(item, nKey, nNorth, nEast)))
            continue;
        bool bTaken = false;
        for (int dn = -nAround; dn <= nAround && !bTaken; ++dn) {
            for (int de = -nAround; de <= nAround && !bTaken; ++de)
                bTaken = (dn != 0 || de != 0) && take(i, KeyOf(item, nKey, nNorth + dn, nEast + de));
        }
    }
}
