#include "cli/input.h"

#include "cli/hints.h"
#include "cli/report.h"
#include "cli/stop.h"

namespace {

using namespace Cli;

EExit Judge(EIEResult eResult, const CIELedger& ledger)
{
    // an importer may end a stopped run with what it has
    if (IsStopAsked())
        return EExit::Stopped;
    if (ledger.GetCount("file.read-failed") > 0)
        return EExit::InputUnreadable;
    return ExitOfImport(eResult);
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
    if (form.IsJob())
        SetUp(job, options);

    const EExit eExit = Judge(eResult, watch.GetLedger());
    const bool bGuessed = IsLayoutGuessed(strFile, form, options, job);
    const TIEAsciiFormat& format = job.GetSettings().GetAsciiFormat();
    if (bGuessed && (eResult == IE_BAD_CONTENT || eResult == IE_PARTIAL))
        messages.Warn(SuggestLayout(strFile, job.GetSettings().m_strCodePage, format));
    else if (bGuessed && eExit == EExit::Done)
        messages.Say(fmt::format("{}: no header line, so its lines were taken as {} between {} (--layout, --delimiter)",
                                 strFile, IEAsciiFields::FieldsToString(format.m_Fields),
                                 DescribeDelimiter(format.m_cDelimiter)));
    if (eExit == EExit::Done)
        return eExit;
    if (eExit == EExit::InputUnreadable && eResult > 0)
        return messages.Fail(eExit, strFile + ": can't be read to its end");
    if (eExit == EExit::BadContent && eResult == IE_BAD_CONTENT)
        return messages.Fail(eExit, fmt::format("{}: its content isn't of the form {}{}", strFile, form.Describe(),
                                                problem.empty() ? "" : ": " + problem));
    return messages.Fail(eExit,
                         fmt::format("{} {}{}", strFile, ExplainImport(eExit == EExit::Stopped ? IE_STOPPED : eResult),
                                     problem.empty() ? "" : ": " + problem));
}

} // namespace Cli
