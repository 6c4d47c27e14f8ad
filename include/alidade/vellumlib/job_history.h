// What was done in a job, as tables that its data collector kept.
// Any number of threads may read such a thing while none changes it.
#pragma once

#include "alidade/vellumlib/types.h"

#include <vector>

/// A named value of a table.
struct TIEJobHistoryXMLTag {
    CString m_strName;
    CString m_strText; ///< a further text, which lists leave out
    CString m_strValue;

    bool operator==(const TIEJobHistoryXMLTag&) const = default;
};

/// One thing that was done, a staked point for one.
struct TIEJobHistoryTable {
    CString m_strTitle; ///< what was done
    CString m_strText;  ///< to what, or when
    std::vector<TIEJobHistoryXMLTag> m_Tags;

    bool operator==(const TIEJobHistoryTable&) const = default;
};

/// The history of a dataset. A copy is independent of it.
class CIEJobHistory {
public:
    using TTables = std::vector<TIEJobHistoryTable>;

    /// In the order in which things were done.
    [[nodiscard]] const TTables& GetJHTables() const { return m_Tables; }
    void AddJHTable(TIEJobHistoryTable table) { m_Tables.push_back(std::move(table)); }

private:
    TTables m_Tables;
};
