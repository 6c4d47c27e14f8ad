#include "cli/input.h"

#include "cli/content.h"
#include "cli/hints.h"
#include "cli/report.h"
#include "cli/stop.h"

#include <cmath>
#include <filesystem>

namespace {

using namespace Cli;

/// Readers that end with their first bad record leave what stands ahead of it in the job.
bool IsPart(EIEResult eResult, const CIEData& job)
{
    return eResult == IE_BAD_CONTENT && job.GetNumberOfObjectsInAllDatasets() > 0;
}

bool IsEmptyJob(const CIEData& job)
{
    return !HasContent(job) && job.GetIEDataDictionary()->GetSize() == 0 &&
           job.GetIEDrawDictionary()->GetNumberOfLayers() == 0 && !job.GetIERoadTemplatesDictionary();
}

EExit Judge(EIEResult eResult, const CIELedger& ledger, const CIEData& job)
{
    // an importer may end a stopped run with what it has
    if (IsStopAsked())
        return EExit::Stopped;
    if (ledger.GetCount(EIENote::FileReadFailed) > 0)
        return EExit::InputUnreadable;
    // a reader may tell of a record that it lost and still end well
    if (IsPart(eResult, job) || (eResult == IE_OK && ledger.GetCount(TIENote::Refused) > 0))
        return EExit::Loss;
    // nothing at all is no job, though an empty file of the form is
    if (eResult == IE_OK && ledger.GetCount(TIENote::LeftOut) > 0 && IsEmptyJob(job))
        return EExit::BadContent;
    return ExitOfImport(eResult);
}

std::string ExplainPart(const std::string& strFile, const CIELedger& ledger)
{
    std::int64_t nLine = 0;
    for (const TIENote& note : ledger.GetNotes()) {
        if (note.m_eKind == TIENote::Refused)
            nLine = note.m_Place.m_nLine;
    }
    return fmt::format("{} was read in part: {}", strFile,
                       nLine > 0 ? fmt::format("reading ended at line {}", nLine) : std::string("reading ended early"));
}

/// Coordinates that no place on the earth has show that plane ones were taken for latitude and longitude.
void WarnOfPlaneValues(const CIEData& job, const std::string& strFile, const CMessages& messages)
{
    constexpr double kLargestLatitude = 90, kLargestLongitude = 360;
    if (job.GetJobInfo()->GetCSType() != TIEJobInfo::Geographic)
        return;
    std::int64_t nCount = 0;
    for (int i = 0; const CIEDataset* const pDataset = job.GetDatasetAt(i); ++i) {
        for (int j = 0; const CIEObject* const pObject = pDataset->GetObjectAt(j); ++j) {
            for (int k = 0; const CIEStation* const pStation = pObject->GetStation(k); ++k)
                nCount +=
                    std::abs(pStation->m_dNorth) > kLargestLatitude || std::abs(pStation->m_dEast) > kLargestLongitude
                        ? 1
                        : 0;
        }
    }
    if (nCount > 0)
        messages.Warn(
            fmt::format("{}: {} stations lie beyond 90 degrees of latitude or 360 of longitude; are these plane "
                        "coordinates (--coordinates plane)?",
                        strFile, nCount));
}

/// What a document told of itself and an option says otherwise.
void WarnOfKind(const CIEData& job, const std::string& strFile, const TJobOptions& options, const CMessages& messages)
{
    const int nType = job.GetJobInfo()->GetCSType();
    if (options.m_Coordinates && *options.m_Coordinates != nType)
        messages.Warn(fmt::format("{}: its coordinates are {}, and --coordinates takes the same numbers as {}", strFile,
                                  nType == TIEJobInfo::Geographic ? "geographic" : "plane",
                                  nType == TIEJobInfo::Geographic ? "plane" : "geographic"));
}

bool IsEmptyFile(const std::string& strFile)
{
    std::error_code error;
    return std::filesystem::file_size(strFile, error) == 0 && !error;
}

/// Whether delimited text was read by the layout that nobody told.
bool IsLayoutGuessed(const std::string& strFile, const TForm& form, const TJobOptions& options, const CIEData& job)
{
    return form.IsDelimited() && !options.m_Layout && !HasHeaderLine(strFile, job.GetSettings().m_strCodePage);
}

} // namespace

namespace Cli {

EExit ReadInput(CIEData& job, const std::string& strFile, const TForm& form, const TJobOptions& options, bool bProgress,
                CWatch& watch, EIEResult& eResult, CMessages& messages)
{
    SetUp(job, options);
    std::string problem;
    eResult = RunImport(job, strFile, form, watch, bProgress, problem);
    PrintNotes(watch.GetLedger(), messages);
    // a document replaced what was set up
    if (form.IsJob()) {
        if (eResult == IE_OK)
            WarnOfKind(job, strFile, options, messages);
        SetUp(job, options);
    }
    WarnOfPlaneValues(job, strFile, messages);

    const EExit eExit = Judge(eResult, watch.GetLedger(), job);
    const bool bGuessed = IsLayoutGuessed(strFile, form, options, job);
    const TIEAsciiFormat& format = job.GetSettings().GetAsciiFormat();
    const bool bUnfit = watch.GetLedger().GetCount(TIENote::Refused) > job.GetNumberOfObjectsInAllDatasets();
    if (bGuessed && bUnfit && (eResult == IE_BAD_CONTENT || eResult == IE_PARTIAL)) {
        messages.Warn(SuggestLayout(strFile, job.GetSettings().m_strCodePage, format));
    } else if (bGuessed && (eExit == EExit::Done || eExit == EExit::Loss)) {
        const std::string text =
            fmt::format("{}: no header line, so its lines were taken as {} between {} (--layout, --delimiter)", strFile,
                        IEAsciiFields::FieldsToString(format.m_Fields), DescribeDelimiter(format.m_cDelimiter));
        // a heading that was refused may name the fields in another order
        eExit == EExit::Done ? messages.Say(text) : messages.Warn(text);
    }
    if (eExit == EExit::Done)
        return eExit;
    if (eExit == EExit::InputUnreadable && eResult > 0)
        return messages.Fail(eExit, strFile + ": can't be read to its end");
    if (eExit == EExit::Loss && IsPart(eResult, job))
        return messages.Fail(eExit, ExplainPart(strFile, watch.GetLedger()));
    if (eExit == EExit::Loss && eResult == IE_OK)
        return messages.Fail(eExit, strFile + " was read, but not all of it");
    if (eExit == EExit::BadContent && IsEmptyFile(strFile))
        return messages.Fail(eExit, strFile + ": the file is empty");
    if (eExit == EExit::BadContent && eResult == IE_OK)
        return messages.Fail(eExit, fmt::format("{} {}", strFile, ExplainImport(IE_NOTHING_DONE)));
    if (eResult == IE_CANNOT_OPEN_FILE && !watch.GetLedger().IsEmpty())
        return messages.Fail(eExit, strFile + ": a file that belongs to it can't be opened");
    if (eExit == EExit::BadContent && eResult == IE_BAD_CONTENT)
        return messages.Fail(eExit, fmt::format("{}: its content isn't of the form {}{}", strFile, form.Describe(),
                                                problem.empty() ? "" : ": " + problem));
    if (eResult == IE_OUT_OF_MEMORY && watch.GetLedger().GetCount(EIENote::DrawingTooManyCopies) > 0)
        return messages.Fail(eExit, strFile + " wasn't read to its end: its block references make too many copies "
                                              "(--most-copies)");
    return messages.Fail(eExit,
                         fmt::format("{} {}{}", strFile, ExplainImport(eExit == EExit::Stopped ? IE_STOPPED : eResult),
                                     problem.empty() ? "" : ": " + problem));
}

} // namespace Cli
