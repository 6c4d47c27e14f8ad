// What tests over the format table share: the built rows, and runs of them through the entries.
#pragma once

#include "alidade/transfer/entries.h"
#include "alidade/transfer/format_table.h"
#include "support/files.h"
#include "support/jobs.h"

/// A form that is written and read.
struct TFormPair {
    const TIEFormatRow* m_pOut;
    const TIEFormatRow* m_pIn;
};

inline std::vector<const TIEFormatRow*> BuiltRows(EIEDirection eDirection)
{
    std::vector<const TIEFormatRow*> rows;
    for (const TIEFormatRow& row : CIEFormatTable::GetRows()) {
        if (row.m_eDirection == eDirection && row.IsBuilt())
            rows.push_back(&row);
    }
    return rows;
}

inline std::vector<TFormPair> BuiltPairs()
{
    std::vector<TFormPair> pairs;
    for (const TIEFormatRow* const pOut : BuiltRows(EIEDirection::Export)) {
        const TIEFormatRow* const pIn = CIEFormatTable::FindByKey(EIEDirection::Import, pOut->m_pKey);
        if (pIn && pIn->IsBuilt())
            pairs.push_back({pOut, pIn});
    }
    return pairs;
}

inline bool IsKnownResult(EIEResult eResult)
{
    constexpr EIEResult kKnown[] = {IE_OK,
                                    IE_VALUE_TOO_WIDE,
                                    IE_PARTIAL,
                                    IE_BAD_DATASET_NAME,
                                    IE_NOTHING_DONE,
                                    IE_NOTHING_TO_EXPORT,
                                    IE_BAD_CONTENT,
                                    IE_ENGINE_NOT_READY,
                                    IE_ENGINE_OPEN_FAILED,
                                    IE_CANNOT_OPEN_FILE,
                                    IE_NOT_SUPPORTED,
                                    IE_STOPPED,
                                    IE_OUT_OF_MEMORY,
                                    IE_NO_JOB};
    return std::find(std::begin(kKnown), std::end(kKnown), eResult) != std::end(kKnown);
}

/// These readers give what their records gave when they are stopped, and not IE_STOPPED.
inline bool HidesAStop(const TIEFormatRow& row)
{
    constexpr const char* kFamilies[] = {
        "sima",         "comma-",     "five-lines", "framed-comma", "columns-code", "columns-control",
        "columns-note", "columns-05", "block-",     "dxf"};
    return std::any_of(std::begin(kFamilies), std::end(kFamilies),
                       [&](const char* pStart) { return CString(row.m_pKey).starts_with(pStart); });
}

/// Text in a code page that it may name itself; 16-bit text is none.
inline bool IsDrawing(const TIEFormatRow& row)
{
    return CString(row.m_pKey) == "dxf";
}

/// Bytes rather than lines: a block ends with a line feed, and with nothing else.
inline bool IsStreamOfBlocks(const TIEFormatRow& row)
{
    return CString(row.m_pKey).starts_with("block-");
}

/// A stopped run leaves its file, of which the job isn't told.
inline bool LeavesItsFile(const TIEFormatRow& row)
{
    return CString(row.m_pKey) == "binary-points";
}

/// The files that an export writes when it is given this name. Its reader takes the first.
inline CStringArray FilesOf(const TIEFormatRow& row, const CString& strFile)
{
    if (CString(row.m_pKey) == "cor-lev")
        return {strFile + ".cor", strFile + ".lev"};
    return {strFile};
}

/// The bytes of all of them.
inline CString ReadFiles(const TIEFormatRow& row, const CString& strFile)
{
    CString bytes;
    for (const CString& strName : FilesOf(row, strFile))
        bytes += ReadFile(strName);
    return bytes;
}

class CRowTest : public testing::Test {
protected:
    /// Where a run writes and reads. Forms of several files put theirs beside it.
    [[nodiscard]] CString FileOf(const TIEFormatRow& row) const
    {
        const CString words = row.m_pExtensions;
        return m_Folder / ("file." + (words.empty() ? "x" : words.substr(0, words.find(' '))));
    }

    EIEResult Export(std::unique_ptr<CIEData> pJob, const TIEFormatRow& row, const CString& strFile)
    {
        pJob->SetObserver(&m_Ledger);
        m_Ledger.Clear();
        ChangeSettings(*pJob, [](TIESettings& settings) { settings.m_bSingleFile = true; });
        return ExportInTheSameThread(pJob.release(), strFile, EExportType(row.m_nCode));
    }

    /// A plain job that every form can write: two points, of which no more than the ASCII name and the place are told,
    /// and a job history.
    static std::unique_ptr<CIEData> MakePlainJob()
    {
        auto pJob = std::make_unique<CIEData>();
        CIEDataset& dataset = *pJob->AddDataset(std::make_unique<CIEDataset>("Site"));
        AddPoint(dataset, "1", 1.5, 2.25, 3.125);
        AddPoint(dataset, "2", -4, 5, 6);
        dataset.SetJobHistory(MakeHistory(2));
        return pJob;
    }

    TStopGuard m_Guard;
    CTempFolder m_Folder;
    CIELedger m_Ledger;
};
