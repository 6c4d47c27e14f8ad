#include "alidade/platform/file.h"
#include "alidade/vellumlib/utils.h"
#include "cli/commands.h"
#include "cli/input.h"
#include "cli/plot/legend.h"
#include "cli/plot/picture.h"
#include "cli/plot/window.h"
#include "cli/stop.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace {

using namespace Cli;

constexpr std::string_view kNoLayer = "(no layer)";

std::string ListLayers(const CIEData& job)
{
    constexpr int kMost = 30;
    std::string text;
    for (int i = 0; const CIELayer* const pLayer = job.GetIEDrawDictionary()->GetLayerAt(i); ++i) {
        if (i == kMost)
            return text + fmt::format(" and {} more, and {}", job.GetIEDrawDictionary()->GetNumberOfLayers() - kMost,
                                      kNoLayer);
        text += (i == 0 ? "" : ", ") + pLayer->GetName();
    }
    return text.empty() ? fmt::format("{} alone", kNoLayer) : fmt::format("{} and {}", text, kNoLayer);
}

/// The layers of a list with commas, and maybe blanks around the names. A layer whose name has a comma can be given as
/// the whole list. False, with the name, for one that isn't there.
bool FindLayers(const CIEData& job, const std::vector<std::string>& lists, std::vector<const CIELayer*>& layers,
                std::string& strUnknown)
{
    const auto take = [&](const std::string& name) {
        const CIELayer* const pLayer = job.GetIEDrawDictionary()->FindLayer(name);
        if (pLayer || name == kNoLayer)
            layers.push_back(pLayer);
        return pLayer || name == kNoLayer;
    };
    for (const std::string& list : lists) {
        if (take(list))
            continue;
        CStringArray names;
        IEUtils::ParseValues(list, names, u',', "");
        const auto it = std::find_if_not(names.begin(), names.end(), [&](const std::string& name) {
            return take(name) || take(std::string(IEUtils::Trim(name)));
        });
        if (it != names.end() || names.empty()) {
            strUnknown = names.empty() ? list : *it;
            return false;
        }
    }
    return true;
}

/// The name of the job, else that of the file.
std::string TitleOf(const CIEData& job, const std::string& strFile)
{
    const CString& name = job.GetJobInfo()->m_strJobName;
    return name.empty() ? strFile.substr(FolderOf(strFile).size()) : name;
}

/// The window in metres, or degrees.
TExtent ToExtent(const std::array<double, 4>& window, double dFactor)
{
    const TPlace first{window[0] / dFactor, window[1] / dFactor}, second{window[2] / dFactor, window[3] / dFactor};
    TExtent extent{first, first};
    extent.Widen(second);
    return extent;
}

/// A window as the option takes it, rounded so that nothing gets lost.
std::string WriteWindow(const TExtent& extent, double dFactor)
{
    constexpr double kFine = 0.01;
    const double dStep = RoundDown125(std::max(extent.GetNorth(), extent.GetEast()) * dFactor * kFine);
    const int nDecimals = std::max(0, static_cast<int>(std::ceil(-std::log10(dStep))));
    const auto write = [&](double dValue, double (*round)(double)) {
        return IEUtils::DoubleToString(round(dValue * dFactor / dStep) * dStep, nDecimals);
    };
    return fmt::format("--window={},{},{},{}", write(extent.m_Least.m_dNorth, std::floor),
                       write(extent.m_Least.m_dEast, std::floor), write(extent.m_Most.m_dNorth, std::ceil),
                       write(extent.m_Most.m_dEast, std::ceil));
}

EExit CheckTarget(const TPlotArguments& arguments, CMessages& messages)
{
    const CString extension = IEUtils::GetExtension(arguments.m_strOut);
    if (!extension.empty() && extension != "svg")
        return messages.Fail(EExit::Usage,
                             fmt::format("{}: a picture is an SVG file; name it .svg", arguments.m_strOut));
    if (IsSameFile(arguments.m_strIn, arguments.m_strOut))
        return messages.Fail(EExit::Usage, "--output names the same file as the input");
    const std::string obstacle = FindObstacle(FollowLink(arguments.m_strOut), arguments.m_bOverwrite);
    return obstacle.empty() ? EExit::Done : messages.Fail(EExit::OutputFailed, obstacle);
}

EExit WritePicture(const std::string& strSvg, const TPlotArguments& arguments, CMessages& messages)
{
    const std::string target = FollowLink(arguments.m_strOut);
    CStaging staging;
    std::string error;
    if (!staging.Make(FolderOf(target), error))
        return messages.Fail(EExit::OutputFailed, error);
    CIEFileWriter file;
    if (!file.Create(staging.PathOf(target.substr(FolderOf(target).size()))) || !file.Write(strSvg) || !file.Close())
        return messages.Fail(EExit::OutputFailed,
                             arguments.m_strOut + ": couldn't be written to its end; nothing was left behind");
    if (IsStopAsked())
        return messages.Fail(EExit::Stopped, fmt::format("{} {}", arguments.m_strOut, ExplainExport(IE_STOPPED)));
    std::vector<std::string> delivered;
    if (!staging.Deliver(arguments.m_bOverwrite, delivered, error))
        return messages.Fail(EExit::OutputFailed, error);
    return EExit::Done;
}

} // namespace

namespace Cli {

EExit Plot(const TPlotArguments& arguments)
{
    CMessages messages(arguments.m_bQuiet);
    TForm form;
    EExit eExit = ChooseInput(arguments.m_strIn, arguments.m_strFrom,
                              arguments.m_Job.m_Layout || arguments.m_Job.m_Delimiter, form, messages);
    if (eExit == EExit::Done)
        eExit = CheckTarget(arguments, messages);
    if (eExit != EExit::Done)
        return eExit;

    CIEData job;
    CWatch watch;
    EIEResult eResult = IE_OK;
    const EExit eRead =
        ReadInput(job, arguments.m_strIn, form, arguments.m_Job, arguments.m_bProgress, watch, eResult, messages);
    if (eRead != EExit::Done && eRead != EExit::Loss)
        return eRead;
    if (arguments.m_Job.m_Kinds)
        KeepKinds(job, *arguments.m_Job.m_Kinds);

    TSceneOptions sceneOptions;
    if (!arguments.m_Layers.empty()) {
        std::string unknown;
        if (!FindLayers(job, arguments.m_Layers, sceneOptions.m_Layers.emplace(), unknown))
            return messages.Fail(EExit::Usage, fmt::format("{}: there is no layer \"{}\"; there are {}",
                                                           arguments.m_strIn, unknown, ListLayers(job)));
    }
    const bool bGeographic = job.GetJobInfo()->GetCSType() == TIEJobInfo::Geographic;
    const double dFactor = bGeographic ? 1.0 : IEUtils::FromMetersFactor(1.0, job.GetJobInfo()->GetDistUnits());
    if (arguments.m_Window)
        sceneOptions.m_Window = ToExtent(*arguments.m_Window, dFactor);
    const TScene scene = MakeScene(job, sceneOptions);
    if (IsStopAsked())
        return messages.Fail(EExit::Stopped, fmt::format("{} {}", arguments.m_strOut, ExplainExport(IE_STOPPED)));
    const TPicture picture = DrawPicture(scene, job, TitleOf(job, arguments.m_strIn), arguments.m_Picture);
    eExit = WritePicture(picture.m_strSvg, arguments, messages);
    if (eExit != EExit::Done)
        return eExit;
    if (picture.m_bNothing)
        messages.Warn(fmt::format("{}: there is nothing to draw, and the picture says so", arguments.m_strIn));
    for (const std::string& remark : picture.m_Remarks)
        messages.Say(fmt::format("{}: {}", arguments.m_strOut, remark));
    if (const std::optional<TExtent> core = arguments.m_Window ? std::nullopt : FindCore(scene, bGeographic))
        messages.Say(fmt::format("{}: little lies far off; {} draws the rest larger", arguments.m_strOut,
                                 WriteWindow(*core, dFactor)));
    messages.Say(
        fmt::format("{}: a picture of {}, read as {}", arguments.m_strOut, DescribeDrawn(scene), form.Describe()));
    return eRead;
}

} // namespace Cli
