#include "alidade/compare/compare.h"
#include "alidade/vellumlib/utils.h"
#include "cli/commands.h"
#include "cli/input.h"
#include "cli/report.h"
#include "cli/stop.h"

#include <cstring>
#include <nlohmann/json.hpp>

namespace {

using namespace Cli;
using TJson = nlohmann::ordered_json;

/// Puts differences on standard output as they are found, so that two files that have nothing in common don't fill the
/// memory. North, east and height of one station make one line.
class CDiffPrinter : public IIEDifferenceSink {
public:
    CDiffPrinter(bool bJson, EDIST_UNITS eUnits, bool bGeographic)
        : m_bJson(bJson), m_eUnits(eUnits), m_bGeographic(bGeographic)
    {
    }

    void OnDifference(const TIEDifference& difference) override
    {
        if (m_bJson) {
            PutJson(difference);
            return;
        }
        const int nAxis = AxisOf(difference);
        if (m_bMoved && (nAxis < 0 || difference.m_pObject != m_Moved.m_pObject ||
                         difference.m_nPart != m_Moved.m_nPart || m_Shifts[static_cast<std::size_t>(nAxis)] != 0.0))
            PutMoved();
        if (nAxis < 0) {
            PutLine(difference);
            return;
        }
        m_bMoved = true;
        m_Moved = difference;
        m_Shifts[static_cast<std::size_t>(nAxis)] =
            IEUtils::StringToDouble(difference.m_strSecond) - IEUtils::StringToDouble(difference.m_strFirst);
    }

    /// Everything is out. False if standard output took no more.
    bool End()
    {
        if (m_bMoved)
            PutMoved();
        return Flush() && m_bWritten;
    }

    [[nodiscard]] const std::map<std::string, std::int64_t>& GetCounts() const { return m_Counts; }

private:
    /// Which coordinate of an object differs; -1 for anything else, and where one of the heights isn't defined.
    static int AxisOf(const TIEDifference& difference)
    {
        constexpr const char* kAxes[] = {"north", "east", "height"};
        if (difference.m_eKind != TIEDifference::Changed || !difference.m_pObject || difference.m_strFirst.empty() ||
            difference.m_strSecond.empty())
            return -1;
        for (int i = 0; i < 3; ++i) {
            if (std::strcmp(difference.m_pProperty, kAxes[i]) == 0)
                return i;
        }
        return -1;
    }

    /// Names come from files: none of them may begin a line of its own.
    static std::string Quote(const CString& text) { return "\"" + MakePrintable(text) + "\""; }

    [[nodiscard]] std::string ShowCoordinate(double dValue) const
    {
        constexpr int kDecimals = 4, kDegreeDecimals = 9;
        return m_bGeographic ? IEUtils::DoubleToString(dValue, kDegreeDecimals)
                             : IEUtils::DistByStyleToString(m_eUnits, dValue, kDecimals);
    }

    [[nodiscard]] std::string NameThing(const TIEDifference& difference) const
    {
        std::string text = fmt::format("{} {}", difference.m_pThing, Quote(difference.m_strName));
        if (difference.m_nPart >= 0)
            text += fmt::format(", {} {}", difference.m_pObject ? "station" : "part", difference.m_nPart + 1);
        if (difference.m_bPlace)
            text += fmt::format(" at {} {}", ShowCoordinate(difference.m_dNorth), ShowCoordinate(difference.m_dEast));
        return text;
    }

    void PutLine(const TIEDifference& difference)
    {
        constexpr const char* kWords[] = {"added", "gone", "changed"};
        const char* const pWord = kWords[difference.m_eKind];
        ++m_Counts[pWord];
        std::string line = fmt::format("{:<8} {}", pWord, NameThing(difference));
        if (difference.m_eKind == TIEDifference::Changed)
            line += fmt::format(": {} {} became {}", difference.m_pProperty, Quote(difference.m_strFirst),
                                Quote(difference.m_strSecond));
        Put(line + "\n");
    }

    void PutMoved()
    {
        ++m_Counts["moved"];
        const std::string height = IEUtils::DistByStyleToString(m_eUnits, m_Shifts[2], 4);
        Put(fmt::format("{:<8} {}: north {}, east {}, height {}\n", "moved", NameThing(m_Moved),
                        ShowCoordinate(m_Shifts[0]), ShowCoordinate(m_Shifts[1]), height));
        m_bMoved = false;
        m_Shifts = {};
    }

    void PutJson(const TIEDifference& difference)
    {
        constexpr const char* kWords[] = {"added", "gone", "changed"};
        ++m_Counts[kWords[difference.m_eKind]];
        TJson item = {{"kind", kWords[difference.m_eKind]},
                      {"thing", difference.m_pThing},
                      {"dataset", difference.m_strDataset},
                      {"name", difference.m_strName}};
        if (difference.m_nPart >= 0)
            item["part"] = difference.m_nPart;
        if (difference.m_bPlace)
            item["place"] = {difference.m_dNorth, difference.m_dEast};
        if (difference.m_eKind == TIEDifference::Changed) {
            item["property"] = difference.m_pProperty;
            item["first"] = difference.m_strFirst;
            item["second"] = difference.m_strSecond;
        }
        Put((m_bFirst ? "\n    " : ",\n    ") +
            item.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace));
        m_bFirst = false;
    }

    void Put(const std::string& text)
    {
        constexpr std::size_t kChunk = 1U << 16U;
        m_Text += text;
        if (m_Text.size() >= kChunk)
            m_bWritten = Flush() && m_bWritten;
    }
    bool Flush()
    {
        const bool bWritten = m_Text.empty() || PutOnOutput(m_Text);
        m_Text.clear();
        return bWritten;
    }

    bool m_bJson;
    EDIST_UNITS m_eUnits;
    bool m_bGeographic;
    bool m_bFirst = true;
    bool m_bWritten = true;
    bool m_bMoved = false; ///< m_Moved is waiting for its further coordinates
    TIEDifference m_Moved;
    std::array<double, 3> m_Shifts{};
    std::string m_Text;
    std::map<std::string, std::int64_t> m_Counts;
};

/// One of the two files.
struct TSide {
    TForm m_Form;
    CIEData m_Job;

    [[nodiscard]] bool HoldsDatasets() const
    {
        return m_Form.IsJob() || (m_Form.m_pRow->m_nCarries & CARRIES_DATASETS);
    }
};

EExit Read(TSide& side, const TDiffArguments& arguments, const TDiffSide& words, CMessages& messages)
{
    const TJobOptions options = Merge(words.m_Job, arguments.m_Job);
    const EExit eExit = ChooseInput(words.m_strFile, words.m_strFrom.empty() ? arguments.m_strFrom : words.m_strFrom,
                                    options.m_Layout || options.m_Delimiter, side.m_Form, messages);
    if (eExit != EExit::Done)
        return eExit;
    CWatch watch;
    EIEResult eResult = IE_OK;
    const EExit eRead =
        ReadInput(side.m_Job, words.m_strFile, side.m_Form, options, arguments.m_bProgress, watch, eResult, messages);
    if (options.m_Kinds)
        KeepKinds(side.m_Job, *options.m_Kinds);
    return eRead;
}

std::string Summarize(const TDiffArguments& arguments, const CDiffPrinter& printer)
{
    std::string counts;
    for (const auto& [word, nCount] : printer.GetCounts())
        counts += fmt::format("{}{} {}", counts.empty() ? "" : ", ", nCount, word);
    return fmt::format("{} and {}: {}", arguments.m_First.m_strFile, arguments.m_Second.m_strFile,
                       counts.empty() ? "no difference" : counts);
}

} // namespace

namespace Cli {

EExit Diff(const TDiffArguments& arguments)
{
    // a minute of latitude is a nautical mile
    constexpr double kMetersOfADegree = 60 * 1852.0;
    CMessages messages(arguments.m_bQuiet);
    TSide first, second;
    for (auto [pSide, pWords] : {std::pair(&first, &arguments.m_First), {&second, &arguments.m_Second}}) {
        const EExit eExit = Read(*pSide, arguments, *pWords, messages);
        if (eExit != EExit::Done)
            return eExit == EExit::Loss ? EExit::BadContent : eExit; // a part of a file is nothing to compare
    }
    const bool bGeographic = first.m_Job.GetJobInfo()->GetCSType() == TIEJobInfo::Geographic;
    if (bGeographic != (second.m_Job.GetJobInfo()->GetCSType() == TIEJobInfo::Geographic))
        return messages.Fail(EExit::Usage, "one file has plane coordinates and the other latitude and longitude "
                                           "(--a-coordinates, --b-coordinates)");
    TIECompareOptions options;
    options.m_dHeight = options.m_dNumber = arguments.m_dTolerance;
    options.m_dPlane = bGeographic ? arguments.m_dTolerance / kMetersOfADegree : arguments.m_dTolerance;
    options.m_bDatasets = first.HoldsDatasets() && second.HoldsDatasets();
    options.m_bInfo = first.m_Form.IsJob() && second.m_Form.IsJob();

    CDiffPrinter printer(arguments.m_bJson, first.m_Job.GetJobInfo()->GetDistUnits(), bGeographic);
    bool bWritten = true;
    if (arguments.m_bJson) {
        const TJson head = {{"first", arguments.m_First.m_strFile},
                            {"second", arguments.m_Second.m_strFile},
                            {"tolerance", arguments.m_dTolerance}};
        const std::string text = head.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace);
        bWritten = PutOnOutput(text.substr(0, text.size() - 2) + ",\n  \"differences\": [");
    }
    const std::int64_t nCount = CompareJobs(first.m_Job, second.m_Job, options, printer);
    bWritten = printer.End() && bWritten;
    if (arguments.m_bJson)
        bWritten =
            PutOnOutput(fmt::format("{}],\n  \"count\": {}\n}}\n", nCount > 0 ? "\n  " : "", nCount)) && bWritten;
    if (!bWritten)
        return EExit::OutputFailed;
    if (IsStopAsked())
        return messages.Fail(EExit::Stopped, "stopped; not everything was compared");
    messages.Say(Summarize(arguments, printer));
    return nCount == 0 ? EExit::Done : EExit::Loss;
}

} // namespace Cli
