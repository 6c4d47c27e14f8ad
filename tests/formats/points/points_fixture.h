// What the tests of the point lists share: text into a job, a job into bytes, both through the entries.
#pragma once

#include "alidade/transfer/entries.h"
#include "support/files.h"
#include "support/jobs.h"

/// An import of a text.
struct TImported {
    EIEResult m_eResult = IE_OK;
    CString m_strObjects; ///< Describe
    CString m_strNotes;   ///< "line:code " for each note

    bool operator==(const TImported&) const = default;
    friend void PrintTo(const TImported& what, std::ostream* out)
    {
        *out << "result " << what.m_eResult << ", notes " << what.m_strNotes << "\n" << what.m_strObjects;
    }
};

class CPointsTest : public testing::Test {
protected:
    TImported Import(CIEData& job, int nCode, std::string_view text)
    {
        const CString strFile = m_Folder / "in.txt";
        WriteFile(strFile, text);
        CIELedger ledger;
        job.SetObserver(&ledger);
        TImported imported{ImportInTheSameThread(&job, strFile, nCode), Describe(job), {}};
        job.SetObserver(nullptr);
        for (const TIENote& note : ledger.GetNotes())
            imported.m_strNotes += std::to_string(note.m_Place.m_nLine) + ":" + note.GetWord() + " ";
        EXPECT_EQ(FindFault(job), "");
        return imported;
    }

    /// The bytes that an export of the whole job writes; m_Ledger keeps its notes.
    CString Export(std::unique_ptr<CIEData> pJob, int nCode)
    {
        const CString strFile = m_Folder / "out.txt";
        m_Ledger.Clear();
        pJob->SetObserver(&m_Ledger);
        pJob->SetCurDataset(0);
        ChangeSettings(*pJob, [](TIESettings& settings) { settings.m_bSingleFile = true; });
        EXPECT_EQ(ExportInTheSameThread(pJob.release(), strFile, EExportType(nCode)), IE_OK);
        return ReadFile(strFile);
    }

    /// "code record" for each note of the last export.
    [[nodiscard]] CStringArray Notes() const
    {
        CStringArray notes;
        for (const TIENote& note : m_Ledger.GetNotes())
            notes.push_back(CString(note.GetWord()) + " " + note.m_strRecord);
        return notes;
    }

    CTempFolder m_Folder;
    CIELedger m_Ledger;
};
