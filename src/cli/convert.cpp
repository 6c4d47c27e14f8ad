#include "cli/commands.h"
#include "cli/content.h"
#include "cli/delivery.h"
#include "cli/input.h"
#include "cli/report.h"

namespace {

using namespace Cli;

/// One run of the command, with all that its report tells.
class CConversion {
public:
    explicit CConversion(const TConvertArguments& arguments) : m_Arguments(arguments), m_Messages(arguments.m_bQuiet) {}

    EExit Run();
    [[nodiscard]] nlohmann::ordered_json MakeReport(EExit eExit) const;
    CMessages& GetMessages() { return m_Messages; }

private:
    EExit ChooseForms();
    EExit CheckTarget();
    EExit Read(CIEData& job);
    EExit Write(std::unique_ptr<CIEData> pJob);

    const TConvertArguments& m_Arguments;
    CMessages m_Messages;
    bool m_bInForm = false;  ///< m_In is known
    bool m_bOutForm = false; ///< m_Out is known
    bool m_bRead = false;    ///< the import ran
    TForm m_In;
    TForm m_Out;
    EIEResult m_eImport = IE_OK;
    CWatch m_ImportWatch;
    CStaging m_Staging;
    CWatch m_ExportWatch{&m_Staging};
    TDelivery m_Delivery;
};

EExit CConversion::Run()
{
    EExit eExit = ChooseForms();
    if (eExit == EExit::Done)
        eExit = CheckTarget();
    if (eExit != EExit::Done)
        return eExit;

    auto pJob = std::make_unique<CIEData>();
    const EExit eRead = Read(*pJob);
    if (eRead != EExit::Done && eRead != EExit::Loss)
        return eRead;
    if (m_Arguments.m_bFailOnLoss && (eRead == EExit::Loss || HasLoss(m_ImportWatch.GetLedger())))
        return m_Messages.Fail(EExit::Loss,
                               m_Arguments.m_strOut + " wasn't written: --fail-on loss forbids what is told above");
    eExit = Write(std::move(pJob));
    return eExit == EExit::Done ? eRead : eExit;
}

EExit CConversion::ChooseForms()
{
    const TJobOptions& options = m_Arguments.m_Job;
    EExit eExit = ChooseOutput(m_Arguments.m_strOut, m_Arguments.m_strTo, m_Out, m_Messages);
    m_bOutForm = eExit == EExit::Done;
    // a layout for the output says nothing of the input
    const bool bLayout = (options.m_Layout || options.m_Delimiter) && !(m_bOutForm && m_Out.IsDelimited());
    const EExit eIn = ChooseInput(m_Arguments.m_strIn, m_Arguments.m_strFrom, bLayout, m_In, m_Messages);
    m_bInForm = eIn == EExit::Done;
    return m_bInForm ? eExit : eIn;
}

EExit CConversion::CheckTarget()
{
    if (m_Arguments.m_bPerDataset && m_Out.IsJob())
        return m_Messages.Fail(EExit::Usage, "--per-dataset: a job document holds all datasets");
    const std::string target =
        m_Arguments.m_bPerDataset ? TargetFolder(m_Arguments) + "dataset" : FollowLink(m_Arguments.m_strOut);
    const std::string obstacle = FindObstacle(target, m_Arguments.m_bOverwrite || m_Arguments.m_bPerDataset);
    return obstacle.empty() ? EExit::Done : m_Messages.Fail(EExit::OutputFailed, obstacle);
}

EExit CConversion::Read(CIEData& job)
{
    const EExit eExit = ReadInput(job, m_Arguments.m_strIn, m_In, m_Arguments.m_Job, m_Arguments.m_bProgress,
                                  m_ImportWatch, m_eImport, m_Messages);
    m_bRead = true;
    return eExit;
}

EExit CConversion::Write(std::unique_ptr<CIEData> pJob)
{
    const std::string content = DescribeContent(*pJob);
    m_Messages.Say(fmt::format("{}: read as {}: {}", m_Arguments.m_strIn, m_In.Describe(), content));
    const bool bHadContent = HasContent(*pJob);
    if (m_Arguments.m_Job.m_Kinds) {
        KeepKinds(*pJob, *m_Arguments.m_Job.m_Kinds);
        if (bHadContent && !HasContent(*pJob) && !pJob->GetIERoadTemplatesDictionary())
            return m_Messages.Fail(EExit::OutputFailed,
                                   m_Arguments.m_strOut +
                                       " wasn't written: the input holds nothing of what --types asks for");
    }
    if (!m_Out.IsJob()) {
        DropBlocks(*pJob, m_Arguments.m_strOut, m_ExportWatch);
        // a drawing of texts alone gives no list; its layers may give one of layers
        constexpr TIECarries kOfTheJob = CARRIES_LAYERS | CARRIES_DICTIONARY | CARRIES_TEMPLATES;
        if (!HasContent(*pJob) && m_ImportWatch.GetLedger().GetCount(TIENote::LeftOut) > 0 &&
            !(m_Out.m_pRow->m_nCarries & kOfTheJob))
            return m_Messages.Fail(EExit::OutputFailed,
                                   m_Arguments.m_strOut + " wasn't written: nothing that this form could hold came in");
        DropEmptyDatasets(*pJob, m_Out, m_Arguments.m_strOut, m_ExportWatch, m_Messages);
    }
    SetUpOutput(*pJob, m_Arguments.m_Job);
    if (m_Arguments.m_Job.m_bHeader && !m_Out.HasHeader())
        m_Messages.Warn(m_Arguments.m_strOut + ": this form has no header line, and --header adds none");
    const TIESettings& settings = pJob->GetSettings();
    if (m_Out.IsDelimited() && settings.m_bAttrQuotes && !settings.m_bAttrTypes)
        m_Messages.Say(m_Arguments.m_strOut +
                       ": without --attribute-types a reader keeps the quotes of attribute values");
    if (!m_In.IsJob()) {
        pJob->GetJobInfo()->m_strAppName = "alidade";
        pJob->GetJobInfo()->m_strAppVersion = ALIDADE_VERSION;
    }
    m_Delivery = Deliver(std::move(pJob), m_Arguments, m_Out, m_Staging, m_ExportWatch, m_Messages);
    return m_Delivery.m_eExit;
}

nlohmann::ordered_json CConversion::MakeReport(EExit eExit) const
{
    using TJson = nlohmann::ordered_json;
    TJson notes = MakeNotes();
    AddNotes(notes, m_ImportWatch.GetLedger(), "import");
    AddNotes(notes, m_ExportWatch.GetLedger(), "export");
    TJson in = {{"file", m_Arguments.m_strIn}, {"format", nullptr}, {"result", nullptr}};
    TJson out = {{"file", m_Arguments.m_strOut}, {"format", nullptr}, {"result", nullptr}};
    TJson result = nullptr;
    if (m_bInForm)
        in["format"] = ToJson(m_In);
    if (m_bOutForm)
        out["format"] = ToJson(m_Out);
    if (m_bRead)
        result = in["result"] = ToJson(m_eImport);
    if (m_Delivery.m_bRan)
        result = out["result"] = ToJson(m_Delivery.m_eResult);
    const std::string& failure = m_Messages.GetFailure();
    return {{"alidade-report", ALIDADE_VERSION},
            {"status", static_cast<int>(eExit)},
            {"failure", failure.empty() ? TJson(nullptr) : TJson(failure)},
            {"result", std::move(result)},
            {"import", std::move(in)},
            {"export", std::move(out)},
            {"files", m_Delivery.m_Files},
            {"notes", std::move(notes)}};
}

} // namespace

namespace Cli {

EExit Convert(const TConvertArguments& arguments)
{
    CConversion conversion(arguments);
    CMessages& messages = conversion.GetMessages();
    if (arguments.m_strReport.empty())
        return conversion.Run();

    if (IsSameFile(arguments.m_strReport, arguments.m_strIn) || IsSameFile(arguments.m_strReport, arguments.m_strOut))
        return messages.Fail(EExit::Usage, "--report names the same file as the input or the output");
    const std::string obstacle = FindReportObstacle(arguments.m_strReport, arguments.m_bOverwrite);
    if (!obstacle.empty())
        return messages.Fail(EExit::OutputFailed, obstacle);
    EExit eExit = conversion.Run();
    if (!WriteReport(conversion.MakeReport(eExit), arguments.m_strReport)) {
        const bool bDelivered = eExit == EExit::Done || eExit == EExit::Loss;
        const EExit eReport =
            messages.Fail(EExit::OutputFailed, arguments.m_strReport + ": the report couldn't be written" +
                                                   (bDelivered ? "; " + arguments.m_strOut + " was" : std::string()));
        if (eExit == EExit::Done || eExit == EExit::Loss)
            eExit = eReport;
    }
    return eExit;
}

} // namespace Cli
