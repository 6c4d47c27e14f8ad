#include "alidade/transfer/entries.h"

#include "transfer/procedures.h"

#include <new>

namespace {

using TProcedure = EIEResult (*)(std::unique_ptr<TIEThreadContext>);

std::unique_ptr<TIEThreadContext> MakeContext(CIEData* pData, const CString& strFileName, int nCode)
{
    auto pContext = std::make_unique<TIEThreadContext>();
    pContext->m_strFileName = strFileName;
    pContext->m_nCode = nCode;
    pContext->m_pData = pData;
    return pContext;
}

CIEThread* Start(TProcedure procedure, CIEData* pData, const CString& strFileName, int nCode)
{
    try {
        // shared, because the thread's procedure must be copyable; the run takes the context out of it
        auto pHolder = std::make_shared<std::unique_ptr<TIEThreadContext>>(MakeContext(pData, strFileName, nCode));
        std::unique_ptr<CIEThread> pThread = CIEThread::CreateSuspended(
            [procedure, pHolder] { return static_cast<int>(procedure(std::move(*pHolder))); });
        if (!pThread)
            return nullptr;
        pThread->Resume();
        return pThread.release();
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

} // namespace

extern "C" {

CIEThread* StartImportInSeparateThread(CIEData* pData, const CString& strFileName, int nCode)
{
    return Start(&ImportProc, pData, strFileName, nCode);
}

EIEResult ImportInTheSameThread(CIEData* pData, const CString& strFileName, int nCode)
{
    try {
        return ImportProc(MakeContext(pData, strFileName, nCode));
    } catch (const std::bad_alloc&) {
        return IE_OUT_OF_MEMORY;
    }
}

CIEThread* StartExportInSeparateThread(CIEData* pData, const CString& strFileName, EExportType eCode)
{
    return Start(&ExportProc, pData, strFileName, static_cast<int>(eCode));
}

EIEResult ExportInTheSameThread(CIEData* pData, const CString& strFileName, EExportType eCode)
{
    std::unique_ptr<CIEData> pJob(pData); // the run's from here on, whether it comes to a start or not
    try {
        std::unique_ptr<TIEThreadContext> pContext = MakeContext(pData, strFileName, static_cast<int>(eCode));
        (void)pJob.release();
        return ExportProc(std::move(pContext));
    } catch (const std::bad_alloc&) {
        return IE_OUT_OF_MEMORY;
    }
}

CRW5Generator* CreateRW5Generator(TIEJobInfo* /*pJobInfo*/)
{
    return nullptr;
}

CRW5Generator* CreateQr1RawDataGenerator(TIEJobInfo* /*pJobInfo*/)
{
    return nullptr;
}

CRW5Generator* CreateQr2Tm2RawDataGenerator(TIEJobInfo* /*pJobInfo*/)
{
    return nullptr;
}

CRW5Generator* CreateTm1RawDataGenerator(TIEJobInfo* /*pJobInfo*/)
{
    return nullptr;
}

} // extern "C"
