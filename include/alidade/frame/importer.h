// What every importer is.
#pragma once

#include "alidade/platform/api.h"
#include "alidade/vellumlib/data.h"

#include <cstdint>

class CIETextFile;

/// Reads one file, or one family of files, into a job. Lives for one run: made by the factory, asked once, deleted.
/// What it has given to the job stays there, also when it fails later. The job must outlive it.
class CIEImporter {
public:
    CIEImporter(CIEData* pData, CString strFileName) : m_pData(pData), m_strFileName(std::move(strFileName)) {}
    virtual ~CIEImporter() = default;
    virtual EIEResult Import() = 0;

protected:
    /// Free memory below this ends an import with IE_OUT_OF_MEMORY.
    static constexpr std::uint64_t kLeastFreeMemory = 0x400000;

    CIEImporter(const CIEImporter&) = default;
    CIEImporter& operator=(const CIEImporter&) = default;

    /// Tells the host of a record that gave nothing, or not all that it held, in the file that was named.
    void Note(TIENote::EKind eKind, EIENote eCode, TIENotePlace place, CString strRecord, CString strReason,
              std::int64_t nCount = 1) const
    {
        m_pData->Note(eKind, eCode, m_strFileName, place, std::move(strRecord), std::move(strReason), nCount);
    }
    /// Tells the host how many of the file's bytes are read.
    void Progress(const CIETextFile& file) const;

    CIEData* m_pData; // not owned
    CString m_strFileName;
};

/// Counts records, and looks at the free memory once in about a thousand of them.
class CIEMemoryCheck {
public:
    enum EAnswer { NotLooked, Enough, TooLittle };
    /// To be asked at the start of each record.
    EAnswer Look(std::uint64_t nLeast);

private:
    static constexpr int kRecordsBetween = 1000;
    int m_nCount = 0;
};
