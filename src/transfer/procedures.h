// The transfer procedures: the body of a run, whichever thread it is on.
#pragma once

#include "alidade/vellumlib/data.h"

#include <memory>

/// What an entry hands to the procedure.
struct TIEThreadContext {
    CString m_strFileName; ///< as the host gave it
    int m_nCode = 0;
    CIEData* m_pData = nullptr; ///< import: the host's; export: owned by the run
};

/// Runs an import, tells the host, and gives the result.
EIEResult ImportProc(std::unique_ptr<TIEThreadContext> pContext);
/// Runs an export, tells the host, deletes the job, and gives the result.
EIEResult ExportProc(std::unique_ptr<TIEThreadContext> pContext);
