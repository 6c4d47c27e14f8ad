#include "alidade/frame/importer.h"

#include "alidade/vellumlib/text_file.h"
#include "alidade/vellumlib/utils.h"

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
