#include "alidade/vellumlib/observer.h"

void CIELedger::OnProgress(std::int64_t /*nDone*/, std::int64_t /*nTotal*/) {}

void CIELedger::OnNote(const TIENote& note)
{
    m_CountByKind[note.m_eKind] += note.m_nCount;
    m_CountByCode[note.m_eCode] += note.m_nCount;
    std::size_t& nKept = m_KeptByCode[note.m_eCode];
    if (nKept < kKeptOfEachCode) {
        ++nKept;
        m_Notes.push_back(note);
    }
}

std::int64_t CIELedger::GetCount(EIENote eCode) const
{
    const auto found = m_CountByCode.find(eCode);
    return found == m_CountByCode.end() ? 0 : found->second;
}

void CIELedger::Clear()
{
    *this = CIELedger();
}
