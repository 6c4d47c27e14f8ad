#include "transfer/factory.h"

#include "alidade/transfer/format_table.h"

#include <new>

std::unique_ptr<CIEImporter> CreateImporter(CIEData* pData, const CString& strFileName, int nCode)
{
    try {
        const TIEFormatRow* pRow = CIEFormatTable::Find(EIEDirection::Import, nCode);
        return pRow && pRow->m_pMakeImporter ? pRow->m_pMakeImporter(pData, strFileName, nCode) : nullptr;
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

std::unique_ptr<CIEExporter> CreateExporter(CIEData* pData, const CString& strFileName, int nCode)
{
    try {
        const TIEFormatRow* pRow = CIEFormatTable::Find(EIEDirection::Export, nCode);
        if (!pRow || !pRow->m_pMakeExporter)
            return nullptr;
        std::unique_ptr<CIEExporter> pExporter = pRow->m_pMakeExporter(pData, strFileName, nCode);
        pExporter->SetCarries(pRow->m_nCarries);
        return pExporter;
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}
