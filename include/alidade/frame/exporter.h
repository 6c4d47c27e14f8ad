// What every exporter is.
#pragma once

#include "alidade/platform/api.h"
#include "alidade/vellumlib/data.h"
#include "alidade/vellumlib/kinds.h"

#include <cstdint>

/// Writes a job, or its current dataset, step by step into one file or several. Lives for one run: made by the factory,
/// run, deleted. The job must outlive it.
class ALIDADE_API CIEExporter {
public:
    CIEExporter(CIEData* pData, CString strFileName) : m_pData(pData), m_strFileName(std::move(strFileName)) {}
    virtual ~CIEExporter() = default;

    /// Runs all steps. CIEData::m_bStopProcess is read after each of them, and a step always runs to its end, so that a
    /// stop comes quickly and never within a record. IE_STOPPED after a stop, IE_CANNOT_OPEN_FILE if no file came into
    /// being, else GetResult. A step that fails to write ends the run and doesn't change the result; the observer is
    /// told.
    virtual EIEResult Export();
    /// How many steps the run has.
    [[nodiscard]] virtual int GetNumberOfSteps() = 0;
    /// One step; true: call again.
    virtual bool SingleStep() = 0;
    [[nodiscard]] virtual EIEResult GetResult() const { return m_nResult; }

    /// What the form can hold, as EIECarries bits; the observer is told of what it can't. All, unless the factory says
    /// less.
    void SetCarries(TIECarries nCarries) { m_nCarries = nCarries; }

protected:
    CIEExporter(const CIEExporter&) = default;
    CIEExporter& operator=(const CIEExporter&) = default;

    /// Tells the host of something that the file doesn't hold, or not as the job does.
    void Note(TIENote::EKind eKind, EIENote eCode, CString strRecord, CString strReason, std::int64_t nCount = 1) const
    {
        m_pData->Note(eKind, eCode, m_strFileName, {}, std::move(strRecord), std::move(strReason), nCount);
    }
    /// Tells the host what of an object a form with these EIECarries bits doesn't hold: the object itself, its codes,
    /// its layer ...
    void NoteLosses(const CIEObject& object) const;
    [[nodiscard]] TIECarries GetCarries() const { return m_nCarries; }
    /// Whether the form can hold all of these EIECarries bits.
    [[nodiscard]] bool Carries(TIECarries nBits) const { return (m_nCarries & nBits) == nBits; }

    CIEData* m_pData; // not owned
    CString m_strFileName;
    int m_nStep = -2; ///< -2 before the file exists, -1 with the file open, then the index of the object being written
    EIEResult m_nResult = IE_OK;

private:
    void NoteDatasets(int nFirst) const;

    TIECarries m_nCarries = ~TIECarries{0};
};
