#include "cli/report.h"

#include "alidade/platform/file.h"
#include "cli/staging.h"

#include <filesystem>
#include <map>
#include <system_error>

namespace {

constexpr std::string_view kReportMark = "\"alidade-report\"";

const char* WordFor(TIENote::EKind eKind)
{
    switch (eKind) {
    case TIENote::Refused:
        return "refused";
    case TIENote::Changed:
        return "changed";
    case TIENote::LeftOut:
        break;
    }
    return "left out";
}

const char* KeyFor(TIENote::EKind eKind)
{
    return eKind == TIENote::LeftOut ? "left_out" : WordFor(eKind);
}

std::string ToLine(const TIENote& note)
{
    std::string text = note.m_strFile;
    if (note.m_Place.m_nLine > 0)
        text += fmt::format(":{}", note.m_Place.m_nLine);
    else if (note.m_Place.m_nOffset >= 0)
        text += fmt::format(": at byte {}", note.m_Place.m_nOffset);
    text += fmt::format(": {}: ", WordFor(note.m_eKind));
    if (note.m_Place.m_nLine <= 0 && !note.m_strRecord.empty())
        text += fmt::format("\"{}\": ", note.m_strRecord);
    return text + fmt::format("{} ({})", note.m_strReason, note.GetWord());
}

} // namespace

namespace Cli {

void PrintNotes(const CIELedger& ledger, const CMessages& messages)
{
    constexpr std::size_t kPrinted = 20;
    std::map<EIENote, std::int64_t> rest = ledger.GetCounts();
    std::size_t nPrinted = 0;
    for (const TIENote& note : ledger.GetNotes()) {
        if (nPrinted++ == kPrinted)
            break;
        messages.Warn(ToLine(note));
        rest[note.m_eCode] -= note.m_nCount;
    }
    std::int64_t nRest = 0;
    std::string counts;
    for (const auto& [code, nCount] : rest) {
        nRest += nCount;
        if (nCount > 0)
            counts += fmt::format("{}{} {}", counts.empty() ? "" : ", ", nCount, GetNoteWord(code));
    }
    if (nRest > 0)
        messages.Warn(fmt::format("and {} more: {}", nRest, counts));
}

nlohmann::ordered_json MakeNotes()
{
    return {{"refused", 0},
            {"changed", 0},
            {"left_out", 0},
            {"by_code", nlohmann::ordered_json::object()},
            {"items_kept_of_each_code", CIELedger::kKeptOfEachCode},
            {"items", nlohmann::ordered_json::array()}};
}

void AddNotes(nlohmann::ordered_json& notes, const CIELedger& ledger, std::string_view phase)
{
    for (const TIENote::EKind eKind : {TIENote::Refused, TIENote::Changed, TIENote::LeftOut})
        notes[KeyFor(eKind)] = notes[KeyFor(eKind)].get<std::int64_t>() + ledger.GetCount(eKind);
    nlohmann::ordered_json& byCode = notes["by_code"];
    for (const auto& [code, nCount] : ledger.GetCounts())
        byCode[GetNoteWord(code)] = byCode.value(GetNoteWord(code), std::int64_t{0}) + nCount;
    for (const TIENote& note : ledger.GetNotes()) {
        nlohmann::ordered_json item = {
            {"phase", phase},         {"kind", KeyFor(note.m_eKind)}, {"code", note.GetWord()},
            {"count", note.m_nCount}, {"file", note.m_strFile},       {"line", nullptr},
            {"offset", nullptr},      {"record", note.m_strRecord},   {"reason", note.m_strReason}};
        if (note.m_Place.m_nLine > 0)
            item["line"] = note.m_Place.m_nLine;
        if (note.m_Place.m_nOffset >= 0)
            item["offset"] = note.m_Place.m_nOffset;
        notes["items"].push_back(std::move(item));
    }
}

nlohmann::ordered_json ToJson(EIEResult eResult)
{
    return {{"code", static_cast<int>(eResult)}, {"name", NameOf(eResult)}};
}

nlohmann::ordered_json ToJson(const TForm& form)
{
    nlohmann::ordered_json json = {{"code", nullptr}, {"key", form.GetKey()}};
    if (!form.IsJob())
        json["code"] = form.m_pRow->m_nCode;
    return json;
}

std::string Dump(const nlohmann::ordered_json& document)
{
    return document.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace) + "\n";
}

std::string FindReportObstacle(const std::string& strPath, bool bOverwrite)
{
    std::string obstacle = FindObstacle(strPath, bOverwrite);
    if (obstacle.empty() || !FindObstacle(strPath, true).empty())
        return obstacle;
    constexpr std::size_t kHead = 256;
    CIEFileReader file;
    const bool bReport =
        file.Open(strPath) && file.Peek(kHead).substr(0, kHead).find(kReportMark) != std::string_view::npos;
    return bReport ? std::string() : obstacle;
}

bool WriteReport(const nlohmann::ordered_json& document, const std::string& strPath)
{
    namespace fs = std::filesystem;
    const auto write = [&document](const std::string& strFile) {
        CIEFileWriter file;
        return file.Create(strFile) && file.Write(Dump(document)) && file.Close();
    };
    const std::string target = FollowLink(strPath);
    std::error_code error;
    const fs::file_type eType = fs::status(target, error).type();
    if (eType != fs::file_type::regular && eType != fs::file_type::not_found)
        return write(target); // a pipe, a terminal
    // as safe as the output: made under a name that nobody can foresee, so that a full disk leaves an earlier report as
    // it is and nothing that lies there is written through
    CStaging staging;
    std::string reason;
    std::vector<std::string> delivered;
    return staging.Make(FolderOf(target), reason) && write(staging.PathOf(target.substr(FolderOf(target).size()))) &&
           staging.Deliver(true, delivered, reason);
}

} // namespace Cli
