// Finds which things of two lists are the same thing.
#pragma once

#include <cstdint>
#include <vector>

/// What a thing is known by.
struct TIEMatchItem {
    std::uint64_t m_nName = 0; ///< hash of its name; 0 if it has none
    std::int32_t m_nKind = 0;
    bool m_bPlace = false; ///< it has a place
    double m_dNorth = 0.0;
    double m_dEast = 0.0;
};

/// Pairs the items of two lists: those whose name each list has once, those of one name, kind and place, then of one
/// name and kind, of one name, and last of one kind and place. Within a pass, items come in the order of their lists.
/// The work is that of sorting both lists.
class CIEObjectMatcher {
public:
    /// Places up to `dTolerance` apart in north and in east are one.
    CIEObjectMatcher(std::vector<TIEMatchItem> first, std::vector<TIEMatchItem> second, double dTolerance);

    /// For each item of the first list its mate in the second, -1 for none.
    [[nodiscard]] const std::vector<int>& GetMates() const { return m_Mates; }
    /// Whether an item of the second list has a mate.
    [[nodiscard]] bool IsTaken(std::size_t i) const { return m_Taken[i]; }

private:
    enum EKey : unsigned { Name = 1, Kind = 2, Place = 4 };

    void PairUnique();
    void Pass(unsigned nKey);
    [[nodiscard]] std::int64_t CellOf(double dValue) const;
    [[nodiscard]] std::uint64_t KeyOf(const TIEMatchItem& item, unsigned nKey, std::int64_t nNorth,
                                      std::int64_t nEast) const;
    [[nodiscard]] bool IsMatch(const TIEMatchItem& first, const TIEMatchItem& second, unsigned nKey) const;

    std::vector<TIEMatchItem> m_First;
    std::vector<TIEMatchItem> m_Second;
    double m_dTolerance;
    std::vector<int> m_Mates;
    std::vector<bool> m_Taken;
};
