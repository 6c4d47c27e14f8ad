// The format table as documents.
#include "alidade/transfer/format_table.h"

#include "jobfile/json_text.h"

#include <algorithm>
#include <utility>

namespace {

constexpr std::pair<TIECarries, std::string_view> kWords[] = {
    {CARRIES_POINTS, "points"},
    {CARRIES_LINES, "lines"},
    {CARRIES_POLYGONS, "polygons"},
    {CARRIES_ARCS, "arcs"},
    {CARRIES_SURFACES, "surfaces"},
    {CARRIES_ALIGNMENTS, "alignments"},
    {CARRIES_TEMPLATES, "road templates"},
    {CARRIES_RAW_DATA, "raw data"},
    {CARRIES_CODES, "codes"},
    {CARRIES_ATTRIBUTES, "attributes"},
    {CARRIES_CODE_STRINGS, "code strings"},
    {CARRIES_CONTROL_CODES, "control codes"},
    {CARRIES_LAYERS, "layers"},
    {CARRIES_NOTES, "notes"},
    {CARRIES_LOCALIZATION, "localization"},
    {CARRIES_DICTIONARY, "code library"},
    {CARRIES_UNDEFINED_HEIGHTS, "missing heights"},
    {CARRIES_GEOID_HEIGHTS, "geoid heights"},
    {CARRIES_TIME_STAMPS, "time stamps"},
    {CARRIES_POINT_KINDS, "kinds of points"},
    {CARRIES_RELATIVE_POINTS, "point-to-line points"},
    {CARRIES_DATASETS, "datasets"},
    {CARRIES_SHEET_POINTS, "sheet points"},
    {CARRIES_GPS_DATA, "GPS data"},
    {CARRIES_JOB_HISTORY, "job history"},
    {CARRIES_DRAWING, "colours and line types"},
    {CARRIES_COMPOSITES, "composite objects"},
};

std::vector<std::string_view> GetExtensions(const TIEFormatRow& row)
{
    std::vector<std::string_view> words;
    for (std::string_view text = row.m_pExtensions; !text.empty();) {
        words.push_back(text.substr(0, text.find(' ')));
        text.remove_prefix(std::min(words.back().size() + 1, text.size()));
    }
    return words;
}

std::string Join(const std::vector<std::string_view>& words, std::string_view between)
{
    std::string text;
    for (const std::string_view word : words) {
        if (!text.empty())
            text += between;
        text += word;
    }
    return text;
}

/// A cell that a reader of the document sees as it stands.
std::string Escape(std::string_view text)
{
    std::string cell;
    for (const char c : text) {
        if (std::string_view("|\\*_<>&`").find(c) != std::string_view::npos)
            cell += '\\';
        cell += c;
    }
    return cell;
}

std::string MakeTable(EIEDirection eDirection)
{
    std::string text =
        "| Code | Key | Format | Extensions | Built | Carries | Remark |\n|---:|---|---|---|---|---|---|\n";
    for (const TIEFormatRow& row : CIEFormatTable::GetRows()) {
        if (row.m_eDirection != eDirection)
            continue;
        const std::string cells[] = {
            std::to_string(row.m_nCode),
            "`" + std::string(row.m_pKey) + "`",
            Escape(row.m_pTitle),
            Join(GetExtensions(row), ", "),
            row.IsBuilt() ? "yes" : "not yet",
            Join(CIEFormatTable::GetCarriedWords(row.m_nCarries), ", "),
            Escape(row.m_pRemark),
        };
        text += '|';
        for (const std::string& cell : cells)
            text += cell.empty() ? " |" : " " + cell + " |";
        text += '\n';
    }
    return text;
}

} // namespace

std::vector<std::string_view> CIEFormatTable::GetCarriedWords(TIECarries nCarries)
{
    std::vector<std::string_view> words;
    for (const auto& [bit, word] : kWords)
        if (nCarries & bit)
            words.push_back(word);
    return words;
}

std::string CIEFormatTable::ToMarkdown()
{
    return "# Formats\n"
           "\n"
           "Made from the format table in the sources; a change is made there, not here.\n"
           "\n"
           "A format has a code for import, a code for export, or both, and the two codes of one form share a key. "
           "Where a form is\n"
           "asked for, the key and the code serve alike. The first extension is the one that an export writes. *Built* "
           "tells\n"
           "whether the library can read or write the form today. *Carries* tells what passes through it; what a form "
           "doesn't\n"
           "carry is left out, and a run reports it.\n"
           "\n"
           "## Import\n"
           "\n" +
           MakeTable(EIEDirection::Import) +
           "\n"
           "## Export\n"
           "\n" +
           MakeTable(EIEDirection::Export);
}

std::string CIEFormatTable::ToJson()
{
    CIEJsonString sink;
    CIEJsonText text(sink);
    const auto writeText = [&text](const char* pKey, const char* pText) {
        text.Key(pKey);
        text.Text(pText);
    };
    const auto writeList = [&text](const char* pKey, const auto& list) {
        text.Key(pKey);
        text.BeginArray(CIEJsonText::Lines);
        for (const std::string_view entry : list)
            text.Text(entry);
        text.EndArray();
    };
    text.BeginArray(CIEJsonText::Lines);
    for (const TIEFormatRow& row : GetRows()) {
        text.BeginObject(CIEJsonText::Lines);
        text.Key("code");
        text.Whole(row.m_nCode);
        writeText("direction", row.m_eDirection == EIEDirection::Import ? "import" : "export");
        writeText("key", row.m_pKey);
        writeText("title", row.m_pTitle);
        writeList("extensions", GetExtensions(row));
        text.Key("built");
        text.Flag(row.IsBuilt());
        writeList("carries", GetCarriedWords(row.m_nCarries));
        writeText("remark", row.m_pRemark);
        text.EndObject();
    }
    text.EndArray();
    text.Finish();
    return std::move(sink.m_strText);
}
