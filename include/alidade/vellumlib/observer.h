// What a run tells its host while it goes: progress, and a note for each thing that didn't pass whole.
#pragma once

#include "alidade/platform/api.h"
#include "alidade/vellumlib/notes.h"

#include <cstdint>
#include <map>

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

/// Adds up the counts of notes by kind and by code, and keeps the first thousand notes of each code. Not for two runs
/// at the same time.
class ALIDADE_API CIELedger : public IIETransferObserver {
public:
    static constexpr std::size_t kKeptOfEachCode = 1000;

    void OnProgress(std::int64_t nDone, std::int64_t nTotal) override;
    void OnNote(const TIENote& note) override;

    [[nodiscard]] std::int64_t GetCount(TIENote::EKind eKind) const { return m_CountByKind[eKind]; }
    [[nodiscard]] std::int64_t GetCount(EIENote eCode) const;
    /// How many records and objects the notes of each code tell of.
    [[nodiscard]] const std::map<EIENote, std::int64_t>& GetCounts() const { return m_CountByCode; }
    /// The notes that were kept, in the order in which they came.
    [[nodiscard]] const std::vector<TIENote>& GetNotes() const { return m_Notes; }
    [[nodiscard]] bool IsEmpty() const { return m_CountByCode.empty(); }
    void Clear();

private:
    std::int64_t m_CountByKind[3] = {};
    std::map<EIENote, std::int64_t> m_CountByCode;
    std::map<EIENote, std::size_t> m_KeptByCode;
    std::vector<TIENote> m_Notes;
};
