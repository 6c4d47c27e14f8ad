#include "cli/exit_codes.h"

#include <algorithm>
#include <iterator>

namespace {

using Cli::EExit;

struct TRow {
    EIEResult m_eResult;
    std::string_view m_Name;
    EExit m_eImport;
    EExit m_eExport;
    std::string_view m_ImportWords;
    std::string_view m_ExportWords;
};

// clang-format off
constexpr TRow kRows[] = {
    {IE_OK, "ok", EExit::Done, EExit::Done, "was read", "was written"},
    {IE_VALUE_TOO_WIDE, "value-too-wide", EExit::Loss, EExit::Loss,
     "was read in part", "was written, but a coordinate didn't fit its field"},
    {IE_PARTIAL, "partial", EExit::Loss, EExit::Loss, "was read in part", "was written in part"},
    {IE_BAD_DATASET_NAME, "bad-dataset-name", EExit::Loss, EExit::Loss,
     "was read in part", "lacks a dataset whose name can't name a file"},
    {IE_NOTHING_DONE, "nothing-done", EExit::BadContent, EExit::OutputFailed,
     "holds nothing that could be used", "couldn't be written: the job holds nothing for it"},
    {IE_NOTHING_TO_EXPORT, "nothing-to-export", EExit::BadContent, EExit::OutputFailed,
     "holds nothing that could be used", "couldn't be written: the job holds nothing for it"},
    {IE_BAD_CONTENT, "bad-content", EExit::BadContent, EExit::BadContent,
     "isn't of this form", "couldn't be written: the job isn't fit for this form"},
    {IE_ENGINE_NOT_READY, "engine-not-ready", EExit::Internal, EExit::Internal,
     "couldn't be read: the drawing engine didn't start", "couldn't be written: the drawing engine didn't start"},
    {IE_ENGINE_OPEN_FAILED, "engine-open-failed", EExit::BadContent, EExit::OutputFailed,
     "isn't a drawing that can be read", "couldn't be written: the drawing engine refused it"},
    {IE_CANNOT_OPEN_FILE, "cannot-open-file", EExit::InputUnreadable, EExit::OutputFailed,
     "can't be opened", "couldn't be created"},
    {IE_NOT_SUPPORTED, "not-supported", EExit::NotSupported, EExit::NotSupported,
     "can't be read: its form isn't supported", "can't be written: its form isn't supported"},
    {IE_STOPPED, "stopped", EExit::Stopped, EExit::Stopped, "wasn't read to its end: stopped", "wasn't written: stopped"},
    {IE_OUT_OF_MEMORY, "out-of-memory", EExit::OutOfMemory, EExit::OutOfMemory,
     "couldn't be read: out of memory", "couldn't be written: out of memory"},
    {IE_NO_JOB, "no-job", EExit::Internal, EExit::Internal,
     "couldn't be read: there is no job", "couldn't be written: there is no job"},
};
// clang-format on

constexpr TRow kOther = {
    IE_NO_JOB, "unknown", EExit::Internal, EExit::Internal, "gave an unknown result", "gave an unknown result"};

const TRow& Find(EIEResult eResult)
{
    const auto* const pRow = std::find_if(std::begin(kRows), std::end(kRows),
                                          [eResult](const TRow& row) { return row.m_eResult == eResult; });
    return pRow == std::end(kRows) ? kOther : *pRow;
}

} // namespace

namespace Cli {

EExit ExitOfImport(EIEResult eResult)
{
    return Find(eResult).m_eImport;
}

EExit ExitOfExport(EIEResult eResult)
{
    return Find(eResult).m_eExport;
}

std::string_view NameOf(EIEResult eResult)
{
    return Find(eResult).m_Name;
}

std::string_view ExplainImport(EIEResult eResult)
{
    return Find(eResult).m_ImportWords;
}

std::string_view ExplainExport(EIEResult eResult)
{
    return Find(eResult).m_ExportWords;
}

} // namespace Cli
