// What a run tells its host while it goes: progress, and a note for each thing that didn't pass whole.
#pragma once

#include "alidade/platform/api.h"
#include "alidade/vellumlib/types.h"

#include <cstdint>
#include <map>

/// A record that was refused, changed or left out.
struct TIENote {
    enum EKind : int {
        Refused = 0, ///< import: the record gave no object
        Changed = 1, ///< the record passed, but not as it was
        LeftOut = 2  ///< the job held it and the file can't, or the file held it and the job can't
    };
    EKind m_eKind = Refused;
    const char* m_pCode = "";    ///< stable word for the reason, as "line.field-count"; text that lives for ever
    CString m_strFile;           ///< the file that was read or written
    std::int64_t m_nLine = 0;    ///< line in the file from 1; 0 where lines don't apply
    std::int64_t m_nOffset = -1; ///< byte offset in the file; -1 where it isn't known
    CString m_strRecord;         ///< name of the point, line, layer...; empty if it has none
    CString m_strReason;         ///< one sentence
};

/// Listens to a run. The host's; a job points to it and doesn't own it, and it outlives an export run, which deletes
/// its job. Called on the thread of the run. It can't change the result of a run.
class ALIDADE_API IIETransferObserver {
public:
    virtual ~IIETransferObserver() = default;
    /// How much is done: bytes on import, steps on export. `nTotal` is 0 while it isn't known. Called about once in a
    /// thousand records, and at the end.
    virtual void OnProgress(std::int64_t nDone, std::int64_t nTotal) = 0;
    virtual void OnNote(const TIENote& note) = 0;
};

/// Counts notes by kind and by code, and keeps the first thousand of each code. Not for two runs at the same time.
class ALIDADE_API CIELedger : public IIETransferObserver {
public:
    static constexpr std::size_t kKeptOfEachCode = 1000;

    void OnProgress(std::int64_t nDone, std::int64_t nTotal) override;
    void OnNote(const TIENote& note) override;

    [[nodiscard]] std::int64_t GetCount(TIENote::EKind eKind) const { return m_CountByKind[eKind]; }
    [[nodiscard]] std::int64_t GetCount(const CString& strCode) const;
    [[nodiscard]] const std::map<CString, std::int64_t>& GetCounts() const { return m_CountByCode; }
    /// The notes that were kept, in the order in which they came.
    [[nodiscard]] const std::vector<TIENote>& GetNotes() const { return m_Notes; }
    [[nodiscard]] bool IsEmpty() const { return m_CountByCode.empty(); }
    void Clear();

private:
    std::int64_t m_CountByKind[3] = {};
    std::map<CString, std::int64_t> m_CountByCode;
    std::vector<TIENote> m_Notes;
};
