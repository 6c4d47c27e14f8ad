#include "alidade/vellumlib/observer.h"

void CIELedger::OnProgress(std::int64_t /*nDone*/, std::int64_t /*nTotal*/) {}

void CIELedger::OnNote(const TIENote& note)
{
    ++m_CountByKind[note.m_eKind];
    if (++m_CountByCode[note.m_pCode] <= static_cast<std::int64_t>(kKeptOfEachCode))
        m_Notes.push_back(note);
}

std::int64_t CIELedger::GetCount(const CString& strCode) const
{
    const auto found = m_CountByCode.find(strCode);
    return found == m_CountByCode.end() ? 0 : found->second;
}

void CIELedger::Clear()
{
    *this = CIELedger();
}
