#include "alidade/transfer/format_table.h"
#include "cli/commands.h"
#include "cli/messages.h"

#include <algorithm>
#include <string_view>

namespace {

using namespace Cli;

constexpr const char* kLine = "{:>4}  {:<{}}  {:<7}  {:<18}  {}\n";

std::string MakeTable(EIEDirection eDirection)
{
    std::size_t nKeyWidth = 0;
    for (const TIEFormatRow& row : CIEFormatTable::GetRows())
        nKeyWidth = std::max(nKeyWidth, std::string_view(row.m_pKey).size());

    std::string text = fmt::format(fmt::runtime(kLine), "Code", "Key", nKeyWidth, "Built", "Extensions", "Format");
    for (const TIEFormatRow& row : CIEFormatTable::GetRows()) {
        if (row.m_eDirection == eDirection)
            text += fmt::format(fmt::runtime(kLine), row.m_nCode, row.m_pKey, nKeyWidth,
                                row.IsBuilt() ? "yes" : "not yet", row.m_pExtensions, row.m_pTitle);
    }
    return text + fmt::format(fmt::runtime(kLine), "-", "job", nKeyWidth, "yes", "job.json",
                              "Job document: the whole job as JSON");
}

std::string MakeText()
{
    return "Forms that can be read (--from takes a key or a code):\n\n" + MakeTable(EIEDirection::Import) +
           "\nForms that can be written (--to):\n\n" + MakeTable(EIEDirection::Export);
}

} // namespace

namespace Cli {

EExit Formats(const TFormatsArguments& arguments)
{
    const std::string text = arguments.m_bJson       ? CIEFormatTable::ToJson()
                             : arguments.m_bMarkdown ? CIEFormatTable::ToMarkdown()
                                                     : MakeText();
    return PutOnOutput(text) ? EExit::Done : EExit::OutputFailed;
}

} // namespace Cli
