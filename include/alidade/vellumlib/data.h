// The job.
#pragma once

#include "alidade/platform/api.h"
#include "alidade/vellumlib/codes.h"
#include "alidade/vellumlib/dataset.h"
#include "alidade/vellumlib/job_info.h"
#include "alidade/vellumlib/layers.h"
#include "alidade/vellumlib/observer.h"
#include "alidade/vellumlib/road_templates.h"
#include "alidade/vellumlib/settings.h"

#include <atomic>

/// A job: datasets, codes, layers, settings. Owns all of it, but not the observer.
/// One run at a time works on a job, and the host leaves the job alone meanwhile.
class ALIDADE_API CIEData {
public:
    /// Set by the host, from any thread, to stop every run; read after each step. Nothing in the library sets or clears
    /// it.
    static std::atomic<bool> m_bStopProcess;

    CIEData();
    ~CIEData();
    CIEData(const CIEData&) = delete;
    CIEData& operator=(const CIEData&) = delete;

    [[nodiscard]] const TIESettings& GetSettings() const { return m_Settings; }
    [[nodiscard]] TIESettings GetCopyOfSettings() const { return m_Settings; }
    void SetSettings(TIESettings settings) { m_Settings = std::move(settings); }

    /// Never null.
    [[nodiscard]] TIEJobInfo* GetJobInfo() { return &m_JobInfo; }
    [[nodiscard]] const TIEJobInfo* GetJobInfo() const { return &m_JobInfo; }

    [[nodiscard]] int GetNumberOfDatasets() const { return static_cast<int>(m_Datasets.size()); }
    /// Null past the end.
    [[nodiscard]] CIEDataset* GetDatasetAt(int i) const;
    /// Adds a dataset, makes it the current one, and gives it back.
    CIEDataset* AddDataset(std::unique_ptr<CIEDataset> pDataset);
    /// Takes dataset i out and deletes it. The current dataset stays the current one; if it was this one, the first is.
    void RemoveDataset(int i);
    /// The current dataset. Null if there is none, unless `bCreate` asks for an empty one to be made.
    CIEDataset* GetCurDataset(bool bCreate);
    /// Index of the current dataset, -1 if there is none.
    [[nodiscard]] int GetCurDatasetID() const { return m_nCurDataset; }
    /// An index past the end changes nothing.
    void SetCurDataset(int i);
    [[nodiscard]] int GetNumberOfObjectsInAllDatasets() const;

    /// Names objects that have none after their first code, in every dataset. An object without a code stays as it is.
    void SetObjectNamesFromCodes();

    /// Never null.
    [[nodiscard]] CIEDataDictionary* GetIEDataDictionary() const { return m_pDataDictionary.get(); }
    /// Adds a code to the dictionary and gives it back; a name that is there already gives that one.
    CIECodeDescription* AddCodeToIEDataDictionary(std::unique_ptr<CIECodeDescription> pCode);
    /// The dictionary's code of that name; one without attributes is added if it has none.
    CIECodeDescription* TakeCode(std::string_view name);
    /// Never null.
    [[nodiscard]] CIEDrawDictionary* GetIEDrawDictionary() const { return m_pDrawDictionary.get(); }
    /// Null if the job has none.
    [[nodiscard]] CIERoadTemplatesDictionary* GetIERoadTemplatesDictionary() const { return m_pTemplates.get(); }
    /// Replaces the job's road templates, whose values count as central where no conversion has settled it. Cross
    /// sections may go on referring to the earlier ones, which live as long as the job.
    void AttachIERoadTemplatesDictionary(std::unique_ptr<CIERoadTemplatesDictionary> pTemplates);

    /// Exchanges all that makes up the two jobs' content: settings, info, dictionaries, road templates, datasets.
    /// Observers and the names of created files stay where they are.
    void SwapContent(CIEData& other) noexcept;

    /// Records a file that an exporter has created; a stopped run deletes what stands here.
    void AddFileNameToExported(const CString& strFileName) { m_CreatedFiles.push_back(strFileName); }
    [[nodiscard]] const CStringArray& GetCreatedFileNames() const { return m_CreatedFiles; }

    /// Extension, with its point, of the files of an export code; empty for a code without a format. The transfer layer
    /// supplies the list as soon as a program uses it.
    static CString GetExtForExportType(int nCode);
    using TExtensionSource = CString (*)(int nCode);
    static void SetExtensionSource(TExtensionSource source);

    /// Not owned, null by default; outlives the run.
    [[nodiscard]] IIETransferObserver* GetObserver() const { return m_pObserver; }
    void SetObserver(IIETransferObserver* pObserver) { m_pObserver = pObserver; }
    /// Hands a note to the observer, if there is one.
    void Note(const TIENote& note) const
    {
        if (m_pObserver)
            m_pObserver->OnNote(note);
    }
    /// The same from its parts; every importer and exporter tells what it has to tell by this. Without a reason it is
    /// the sentence of the code.
    void Note(TIENote::EKind eKind, EIENote eCode, const CString& strFile, TIENotePlace place, CString strRecord,
              CString strReason, std::int64_t nCount = 1) const;

private:
    TIESettings m_Settings;
    TIEJobInfo m_JobInfo;
    std::unique_ptr<CIEDataDictionary> m_pDataDictionary;
    std::unique_ptr<CIEDrawDictionary> m_pDrawDictionary;
    std::unique_ptr<CIERoadTemplatesDictionary> m_pTemplates;
    std::vector<std::unique_ptr<CIERoadTemplatesDictionary>>
        m_EarlierTemplates;                              // cross sections may still point into them
    std::vector<std::unique_ptr<CIEDataset>> m_Datasets; // behind the dictionaries that their objects point into
    CStringArray m_CreatedFiles;
    IIETransferObserver* m_pObserver = nullptr;
    int m_nCurDataset = -1;
};
