#include "alidade/frame/importer.h"

#include "alidade/vellumlib/text_file.h"
#include "alidade/vellumlib/utils.h"

void CIEImporter::Note(TIENote::EKind eKind, const char* pCode, std::int64_t nLine, CString strRecord,
                       CString strReason) const
{
    if (!m_pData->GetObserver())
        return;
    TIENote note;
    note.m_eKind = eKind;
    note.m_pCode = pCode;
    note.m_strFile = m_strFileName;
    note.m_nLine = nLine;
    note.m_strRecord = std::move(strRecord);
    note.m_strReason = std::move(strReason);
    m_pData->Note(note);
}

void CIEImporter::Progress(const CIETextFile& file) const
{
    if (IIETransferObserver* const pObserver = m_pData->GetObserver())
        pObserver->OnProgress(static_cast<std::int64_t>(file.GetPosition()),
                              static_cast<std::int64_t>(file.GetLength()));
}

CIEMemoryCheck::EAnswer CIEMemoryCheck::Look(std::uint64_t nLeast)
{
    EAnswer eAnswer = NotLooked;
    if (m_nCount > kRecordsBetween) {
        if (IEUtils::GetFreeVirtMemory() < nLeast)
            return TooLittle;
        m_nCount = 0;
        eAnswer = Enough;
    }
    ++m_nCount;
    return eAnswer;
}
