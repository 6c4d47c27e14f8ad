// What an object has and a chosen layout has no field for.
#pragma once

#include "alidade/vellumlib/ascii_fields.h"

#include <cstddef>
#include <string_view>

/// One thing that objects may have, the field that holds it, and how its loss is told.
template <class TObject>
struct TIELayoutGap {
    /// For what no field holds.
    static constexpr auto kNoField = static_cast<IEAsciiFields::EType>(-1);

    IEAsciiFields::EType m_eField;
    EIENote m_eCode; ///< of the note; rows of one code stand together and make one note
    const char* m_pWord;
    bool (*m_pHas)(const TObject& object);
};

/// Calls `note(code, words)` for each code of the table under which the object has something that the layout doesn't
/// hold, with the words between commas.
template <class TObject, std::size_t n, class TNote>
void ForEachLayoutGap(const TIELayoutGap<TObject> (&gaps)[n], const IEAsciiFields::TFields& layout,
                      const TObject& object, TNote note)
{
    CString strWords;
    for (std::size_t i = 0; i < n; ++i) {
        const TIELayoutGap<TObject>& gap = gaps[i];
        if (IEAsciiFields::FindTypeInArray(gap.m_eField, layout) < 0 && gap.m_pHas(object))
            strWords.append(strWords.empty() ? "" : ", ").append(gap.m_pWord);
        const bool bLast = i + 1 == n || gaps[i + 1].m_eCode != gap.m_eCode;
        if (bLast && !strWords.empty())
            note(gap.m_eCode, strWords);
        if (bLast)
            strWords.clear();
    }
}
