#include "cli/hints.h"

#include "alidade/vellumlib/utils.h"

#include <algorithm>
#include <fmt/format.h>
#include <optional>

namespace {

using namespace Cli;

struct TSplit {
    char16_t m_cDelimiter;
    const char* m_pWord; ///< as --delimiter takes it
    std::vector<std::string_view> m_Fields;
};

/// The delimiter that gives the most fields; nothing if none gives three.
std::optional<TSplit> SplitBest(std::string_view line)
{
    constexpr std::size_t kFewestFields = 3;
    std::optional<TSplit> best;
    for (const auto& [c, word] :
         {std::pair{u',', "comma"}, {u';', "semicolon"}, {u'\t', "tab"}, {u'|', "pipe"}, {u' ', "blank"}}) {
        TSplit split{c, word, {}};
        IEUtils::ParseValuesInQuotes(line, split.m_Fields, c);
        if (split.m_Fields.size() >= kFewestFields && (!best || split.m_Fields.size() > best->m_Fields.size()))
            best = std::move(split);
    }
    return best;
}

bool IsNumber(std::string_view text)
{
    double dValue = 0.0;
    return IEUtils::StringToDouble(text, dValue, false);
}

/// A layout for that many fields. Whether north or east comes first, no program can tell.
const char* LayoutFor(const std::vector<std::string_view>& fields)
{
    const auto nNumbers = std::count_if(fields.begin(), fields.end(), IsNumber);
    if (fields.size() == 3)
        return nNumbers == 3 ? "north,east,height" : "name,north,east";
    if (fields.size() == 4)
        return IsNumber(fields[3]) ? "name,north,east,height" : "north,east,height,codes";
    return "name,north,east,height,codes";
}

CString FirstLine(const std::string& strFile, const CString& strCodePage)
{
    CIETextFile file;
    std::string_view line;
    if (file.Open(strFile, strCodePage))
        (void)file.ReadLine(line);
    constexpr int kLookedAt = 4096; // characters
    return CString(IEUtils::Left(line, kLookedAt));
}

} // namespace

namespace Cli {

bool HasHeaderLine(const std::string& strFile, const CString& strCodePage)
{
    return FirstLine(strFile, strCodePage).find("Header>>") != CString::npos;
}

std::string SuggestLayout(const std::string& strFile, const CString& strCodePage, const TIEAsciiFormat& format)
{
    constexpr int kShown = 60; // characters of the line
    const CString line = FirstLine(strFile, strCodePage);
    std::string text =
        fmt::format("the lines of {} aren't {} between {}", strFile, IEAsciiFields::FieldsToString(format.m_Fields),
                    DescribeDelimiter(format.m_cDelimiter));
    const std::optional<TSplit> split = SplitBest(line);
    if (!split)
        return text + "; --layout tells what its fields are, and --delimiter what stands between them";
    const std::string_view shown = IEUtils::Left(line, kShown);
    text += fmt::format("; the first one, \"{}{}\", has {} fields between {}", shown,
                        shown.size() < line.size() ? "..." : "", split->m_Fields.size(),
                        DescribeDelimiter(split->m_cDelimiter));
    const char* const pLayout = LayoutFor(split->m_Fields);
    IEAsciiFields::TFields fields;
    IEAsciiFields::StringToFields(pLayout, fields);
    if (split->m_cDelimiter == format.m_cDelimiter && fields == format.m_Fields)
        return text + ".\n--layout tells what its fields are, and --delimiter what stands between them";
    text +=
        fmt::format(".\nTry --delimiter {} --layout {}, or with east ahead of north if that is the order of the file",
                    split->m_pWord, pLayout);
    return text;
}

} // namespace Cli
