#include "alidade/vellumlib/utils.h"
#include "cli/commands.h"
#include "cli/content.h"
#include "cli/input.h"
#include "cli/report.h"

#include <cmath>
#include <vector>

namespace {

using namespace Cli;
using TJson = nlohmann::ordered_json;

TJson ToJson(const std::optional<TRange>& range)
{
    return range ? TJson{range->m_dLeast, range->m_dMost} : TJson(nullptr);
}

TJson ToJson(const CIEDataset& dataset)
{
    const TContent content = LookInto(dataset);
    TJson extent = nullptr;
    if (content.m_North)
        extent = {
            {"north", ToJson(content.m_North)}, {"east", ToJson(content.m_East)}, {"height", ToJson(content.m_Height)}};
    return {{"name", dataset.GetName()},           {"elements", content.m_nElements},
            {"points", content.m_nPoints},         {"polylines", content.m_nLines},
            {"polygons", content.m_nPolygons},     {"arcs", content.m_nArcs},
            {"composites", content.m_nComposites}, {"in_blocks", content.m_nInBlocks},
            {"surfaces", content.m_nSurfaces},     {"alignments", content.m_nAlignments},
            {"stations", content.m_nStations},     {"history_tables", content.m_nHistoryTables},
            {"extent", std::move(extent)}};
}

std::vector<std::string> GetCodes(const CIEData& job)
{
    std::vector<std::string> names;
    for (int i = 0; const CIECodeDescription* const pCode = job.GetIEDataDictionary()->GetCodeDescriptionAt(i); ++i)
        names.push_back(pCode->GetName());
    return names;
}

std::vector<std::string> GetLayers(const CIEData& job)
{
    std::vector<std::string> names;
    for (int i = 0; const CIELayer* const pLayer = job.GetIEDrawDictionary()->GetLayerAt(i); ++i)
        names.push_back(pLayer->GetName());
    return names;
}

bool IsGeographic(const CIEData& job)
{
    return job.GetJobInfo()->GetCSType() == TIEJobInfo::Geographic;
}

const char* WordForCoordinates(const CIEData& job)
{
    return IsGeographic(job) ? "geographic" : "plane";
}

TJson MakeDocument(const CIEData& job, const std::string& strFile, const TForm& form, EIEResult eResult,
                   const CIELedger& ledger)
{
    TJson datasets = TJson::array();
    for (int i = 0; const CIEDataset* const pDataset = job.GetDatasetAt(i); ++i)
        datasets.push_back(ToJson(*pDataset));
    TJson notes = MakeNotes();
    AddNotes(notes, ledger, "import");
    return {{"file", strFile},
            {"format", Cli::ToJson(form)},
            {"result", Cli::ToJson(eResult)},
            {"job",
             {{"name", job.GetJobInfo()->m_strJobName},
              {"units", WordOf(job.GetJobInfo()->GetDistUnits())},
              {"coordinates", WordForCoordinates(job)},
              {"datasets", std::move(datasets)},
              {"codes", GetCodes(job)},
              {"layers", GetLayers(job)}}},
            {"notes", std::move(notes)}};
}

void AddRow(std::string& text, std::string_view title, std::string_view value)
{
    text += fmt::format("  {:<12} {}\n", title, MakePrintable(value));
}

/// Heights, and coordinates of the plane, in the job's units; latitude and longitude in degrees.
void AddRange(std::string& text, std::string_view title, const std::optional<TRange>& range, const CIEData& job,
              bool bDegrees)
{
    constexpr int kDecimals = 3;
    constexpr int kDegreeDecimals = 8;
    if (!range)
        return;
    const EDIST_UNITS units = job.GetJobInfo()->GetDistUnits();
    const auto show = [&](double dValue) {
        constexpr double kReadable = 1e15;
        if (std::abs(dValue) > kReadable)
            return fmt::format("{:.6e}", dValue);
        return bDegrees ? IEUtils::DoubleToString(dValue, kDegreeDecimals)
                        : IEUtils::DistByStyleToString(units, dValue, kDecimals);
    };
    AddRow(
        text, title,
        fmt::format("{} to {} {}", show(range->m_dLeast), show(range->m_dMost), bDegrees ? "degrees" : WordOf(units)));
}

void AddCount(std::string& text, std::string_view title, int nCount)
{
    if (nCount > 0)
        AddRow(text, title, fmt::format("{}", nCount));
}

void AddDataset(std::string& text, const CIEDataset& dataset, const CIEData& job)
{
    const TContent content = LookInto(dataset);
    text += fmt::format("\nDataset \"{}\"\n", MakePrintable(dataset.GetName()));
    AddCount(text, "Points", content.m_nPoints);
    AddCount(text, "Lines", content.m_nLines);
    AddCount(text, "Polygons", content.m_nPolygons);
    AddCount(text, "Arcs", content.m_nArcs);
    AddCount(text, "Composites", content.m_nComposites);
    AddCount(text, "Within blocks", content.m_nInBlocks);
    AddCount(text, "Surfaces", content.m_nSurfaces);
    AddCount(text, "Alignments", content.m_nAlignments);
    AddCount(text, "History", content.m_nHistoryTables);
    AddRow(text, "Stations", fmt::format("{}", content.m_nStations));
    AddRange(text, "North", content.m_North, job, IsGeographic(job));
    AddRange(text, "East", content.m_East, job, IsGeographic(job));
    AddRange(text, "Height", content.m_Height, job, false);
}

std::string MakeText(const CIEData& job, const std::string& strFile, const TForm& form, EIEResult eResult,
                     const CIELedger& ledger)
{
    const auto list = [](const std::vector<std::string>& names) {
        return names.empty() ? std::string("none") : fmt::format("{}: {}", names.size(), fmt::join(names, ", "));
    };
    std::string text = MakePrintable(strFile) + "\n";
    AddRow(text, "Form", form.Describe() + ": " + form.GetTitle());
    AddRow(text, "Result", NameOf(eResult));
    if (!job.GetJobInfo()->m_strJobName.empty())
        AddRow(text, "Job", job.GetJobInfo()->m_strJobName);
    AddRow(text, "Units", WordOf(job.GetJobInfo()->GetDistUnits()));
    AddRow(text, "Coordinates", WordForCoordinates(job));
    AddRow(text, "Codes", list(GetCodes(job)));
    AddRow(text, "Layers", list(GetLayers(job)));
    AddRow(text, "Notes",
           fmt::format("{} refused, {} changed, {} left out", ledger.GetCount(TIENote::Refused),
                       ledger.GetCount(TIENote::Changed), ledger.GetCount(TIENote::LeftOut)));
    for (int i = 0; const CIEDataset* const pDataset = job.GetDatasetAt(i); ++i)
        AddDataset(text, *pDataset, job);
    return text;
}

} // namespace

namespace Cli {

EExit Info(const TInfoArguments& arguments)
{
    CMessages messages(false);
    TForm form;
    EExit eExit = ChooseInput(arguments.m_strIn, arguments.m_strFrom,
                              arguments.m_Job.m_Layout || arguments.m_Job.m_Delimiter, form, messages);
    if (eExit != EExit::Done)
        return eExit;

    CIEData job;
    CWatch watch;
    EIEResult eResult = IE_OK;
    eExit = ReadInput(job, arguments.m_strIn, form, arguments.m_Job, arguments.m_bProgress, watch, eResult, messages);
    if (arguments.m_Job.m_Kinds)
        KeepKinds(job, *arguments.m_Job.m_Kinds);
    const bool bRead = eExit == EExit::Done || eExit == EExit::Loss;
    std::string text;
    if (arguments.m_bJson)
        text = Dump(MakeDocument(job, arguments.m_strIn, form, eResult, watch.GetLedger()));
    else if (bRead)
        text = MakeText(job, arguments.m_strIn, form, eResult, watch.GetLedger());
    return PutOnOutput(text) || !bRead ? eExit : EExit::OutputFailed;
}

} // namespace Cli
