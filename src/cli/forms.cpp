#include "cli/forms.h"

#include "alidade/platform/file.h"
#include "alidade/vellumlib/utils.h"

#include <algorithm>
#include <filesystem>
#include <vector>

namespace {

using namespace Cli;

constexpr std::string_view kJobKey = "job";
constexpr std::string_view kJobExtension = ".job.json";
constexpr std::string_view kDelimitedKey = "delimited";

bool IsNamedAsJob(std::string_view path)
{
    return IEUtils::ToLower(path).ends_with(kJobExtension);
}

/// A JSON object that has the name of the document's mark near its start.
bool LooksLikeJob(const std::string& path)
{
    constexpr std::size_t kHead = 4096;
    CIEFileReader file;
    if (!file.Open(path))
        return false;
    std::string_view head = file.Peek(kHead).substr(0, kHead);
    if (head.starts_with("\xef\xbb\xbf"))
        head.remove_prefix(3);
    const std::size_t first = head.find_first_not_of(" \t\r\n");
    return first != std::string_view::npos && head[first] == '{' && head.find("\"alidade\"") != std::string_view::npos;
}

/// True for a row that is the other under a second code, as "delimited-35" is "delimited".
bool IsSecondCode(const TIEFormatRow& row, const TIEFormatRow& of)
{
    return row.m_pKey == std::string(of.m_pKey) + "-" + std::to_string(row.m_nCode);
}

/// True if all rows behind the first are variants of it, as "sima-numbers" is of "sima".
bool AreVariants(const std::vector<const TIEFormatRow*>& rows)
{
    const std::string prefix = std::string(rows.front()->m_pKey) + "-";
    return std::all_of(rows.begin() + 1, rows.end(),
                       [&](const TIEFormatRow* pRow) { return std::string_view(pRow->m_pKey).starts_with(prefix); });
}

std::string Name(const TIEFormatRow& row)
{
    return fmt::format("{} ({})", row.m_pKey, row.m_nCode);
}

/// What speaks for a form; the same for all that are left when the best are kept.
std::string_view Why(const TIEFormatGuess& guess)
{
    if (guess.m_eByContent == EIERecognition::Surely)
        return guess.m_bByExtension ? "by its content and its extension" : "by its content";
    if (guess.m_pRow->m_pRecognize)
        return guess.m_bByExtension ? "by its extension, and its content doesn't speak against them"
                                    : "as far as its content tells";
    return "by its extension";
}

EExit FindByKey(EIEDirection eDirection, const std::string& strWanted, const char* pOption, TForm& form,
                CMessages& messages)
{
    if (strWanted == kJobKey) {
        form.m_pRow = nullptr;
        return EExit::Done;
    }
    form.m_pRow = CIEFormatTable::FindByKey(eDirection, strWanted);
    if (!form.m_pRow)
        return messages.Fail(EExit::FormUnknown,
                             fmt::format("{} {}: there is no such form to {}; \"alidade formats\" lists them", pOption,
                                         strWanted, eDirection == EIEDirection::Import ? "read" : "write"));
    if (!form.m_pRow->IsBuilt())
        return messages.Fail(EExit::NotSupported,
                             fmt::format("{} ({}) can't be {} yet", Name(*form.m_pRow), form.m_pRow->m_pTitle,
                                         eDirection == EIEDirection::Import ? "read" : "written"));
    return EExit::Done;
}

/// Leaves out what needs no question: second codes, forms that also know the extension of another whose own it is, and,
/// if the command line tells a layout, all but delimited text.
void Narrow(std::vector<TIEFormatGuess>& guesses, bool bLayout)
{
    const auto isSecond = [&](const TIEFormatGuess& guess) {
        return std::any_of(guesses.begin(), guesses.end(),
                           [&](const TIEFormatGuess& other) { return IsSecondCode(*guess.m_pRow, *other.m_pRow); });
    };
    std::vector<TIEFormatGuess> first;
    std::copy_if(guesses.begin(), guesses.end(), std::back_inserter(first), std::not_fn(isSecond));
    guesses = std::move(first);

    const auto delimited = std::find_if(guesses.begin(), guesses.end(), [](const TIEFormatGuess& guess) {
        return guess.m_pRow->m_pKey == kDelimitedKey;
    });
    const bool bMarked = std::any_of(guesses.begin(), guesses.end(), [](const TIEFormatGuess& guess) {
        return guess.m_eByContent == EIERecognition::Surely;
    });
    if (bLayout && delimited != guesses.end())
        guesses = {*delimited};
    else if (bLayout && !bMarked) // a delimiter that nobody would guess
        guesses = {{CIEFormatTable::FindByKey(EIEDirection::Import, kDelimitedKey), EIERecognition::Perhaps, false}};
}

/// Leaves the best of them: a form that name and content both speak for goes ahead of one that has the name alone, and
/// that ahead of one that only the content allows. Whether a content bears a mark has been looked at before.
void KeepBest(std::vector<TIEFormatGuess>& guesses)
{
    const auto weight = [](const TIEFormatGuess& guess) {
        return (guess.m_bByExtension ? 2 : 0) + (guess.m_pRow->m_pRecognize ? 1 : 0);
    };
    int nBest = 0;
    for (const TIEFormatGuess& guess : guesses)
        nBest = std::max(nBest, weight(guess));
    std::erase_if(guesses, [&](const TIEFormatGuess& guess) { return weight(guess) < nBest; });
}

/// If the content bears the marks of all of them, the form whose own extension the file has is meant.
void PreferOwnExtension(std::vector<TIEFormatGuess>& guesses, const std::string& strFile)
{
    const CString extension = IEUtils::GetExtension(strFile);
    const auto isOwn = [&](const TIEFormatGuess& guess) {
        const std::string_view words = guess.m_pRow->m_pExtensions;
        return !extension.empty() && words.substr(0, words.find(' ')) == extension;
    };
    const bool bSure = std::all_of(guesses.begin(), guesses.end(), [](const TIEFormatGuess& guess) {
        return guess.m_eByContent == EIERecognition::Surely;
    });
    const auto own = std::find_if(guesses.begin(), guesses.end(), isOwn);
    if (bSure && own != guesses.end() && std::count_if(guesses.begin(), guesses.end(), isOwn) == 1)
        guesses = {TIEFormatGuess(*own)};
}

/// Names the forms to choose from, one a line, and those that aren't built in a line of their
/// own.
class CChoice {
public:
    void Add(const TIEFormatRow& row)
    {
        if (row.IsBuilt())
            m_Lines.push_back(fmt::format("  {}: {}", Name(row), row.m_pTitle));
        else
            m_strUnbuilt += (m_strUnbuilt.empty() ? "" : ", ") + Name(row);
    }
    [[nodiscard]] EExit Fail(std::string text, const char* pOption, CMessages& messages) const
    {
        std::vector<std::string> lines = m_Lines;
        if (!m_strUnbuilt.empty())
            lines.push_back("  not built yet: " + m_strUnbuilt);
        lines.push_back(std::string("choose one with ") + pOption);
        return messages.Fail(EExit::FormUnknown, std::move(text), lines);
    }

private:
    std::vector<std::string> m_Lines;
    std::string m_strUnbuilt;
};

} // namespace

namespace Cli {

std::string TForm::Describe() const
{
    return m_pRow ? Name(*m_pRow) : std::string(kJobKey);
}

bool TForm::IsDelimited() const
{
    return m_pRow && std::string_view(m_pRow->m_pKey).starts_with(kDelimitedKey);
}

bool TForm::HasHeader() const
{
    const std::string_view key = m_pRow ? m_pRow->m_pKey : "";
    return IsDelimited() || key == "gps-list" || key == "sheet-points";
}

EExit ChooseInput(const std::string& strFile, const std::string& strWanted, bool bLayout, TForm& form,
                  CMessages& messages)
{
    std::error_code error;
    CIEFileReader file;
    if (!file.Open(strFile))
        return messages.Fail(EExit::InputUnreadable,
                             strFile + (!Platform::FileExists(strFile) ? ": there is no such file"
                                        : !std::filesystem::is_regular_file(strFile, error)
                                            ? ": can't be opened for reading; it isn't a plain file"
                                            : ": can't be opened for reading"));
    const bool bEmpty = file.GetLength() == 0;
    file.Close();
    if (!strWanted.empty())
        return FindByKey(EIEDirection::Import, strWanted, "--from", form, messages);
    if (IsNamedAsJob(strFile) || LooksLikeJob(strFile)) {
        form.m_pRow = nullptr;
        return EExit::Done;
    }

    if (bEmpty)
        return messages.Fail(EExit::FormUnknown, strFile + ": the file is empty");
    std::vector<TIEFormatGuess> guesses = CIEFormatTable::Guess(strFile);
    Narrow(guesses, bLayout);
    KeepBest(guesses);
    if (guesses.size() > 1)
        PreferOwnExtension(guesses, strFile);
    if (guesses.empty())
        return messages.Fail(EExit::FormUnknown,
                             strFile + ": neither its content nor its extension tells a form that is known; "
                                       "--from names one, as --from delimited --layout name,north,east,height, and "
                                       "\"alidade formats\" lists them");
    if (guesses.size() > 1) {
        CChoice choice;
        for (const TIEFormatGuess& guess : guesses)
            choice.Add(*guess.m_pRow);
        // no content speaks for it, but a layout may
        const TIEFormatRow* const pDelimited = CIEFormatTable::FindByKey(EIEDirection::Import, kDelimitedKey);
        if (!guesses.front().m_pRow->m_pRecognize)
            choice.Add(*pDelimited);
        return choice.Fail(fmt::format("{}: several forms fit this file {}:", strFile, Why(guesses.front())), "--from",
                           messages);
    }
    return FindByKey(EIEDirection::Import, guesses.front().m_pRow->m_pKey, "--from", form, messages);
}

EExit ChooseOutput(const std::string& strFile, const std::string& strWanted, TForm& form, CMessages& messages)
{
    if (!strWanted.empty())
        return FindByKey(EIEDirection::Export, strWanted, "--to", form, messages);
    if (IsNamedAsJob(strFile)) {
        form.m_pRow = nullptr;
        return EExit::Done;
    }
    const CString extension = IEUtils::GetExtension(strFile);
    const std::vector<const TIEFormatRow*> rows = CIEFormatTable::FindByExtension(EIEDirection::Export, extension);
    if (extension.empty() || rows.empty()) {
        std::string text = strFile + ": ";
        text += extension.empty() ? "without an extension its form is unknown"
                                  : "no form to write has the extension " + extension;
        // a form of several files reads by their extensions and is written by its key
        for (const TIEFormatRow* const pRead : CIEFormatTable::FindByExtension(EIEDirection::Import, extension)) {
            const TIEFormatRow* const pWrite = CIEFormatTable::FindByKey(EIEDirection::Export, pRead->m_pKey);
            if (pWrite && pWrite->IsBuilt())
                text += fmt::format("; --to {} writes what is read from it", pWrite->m_pKey);
        }
        return messages.Fail(EExit::FormUnknown, text + "; --to names a form, and \"alidade formats\" lists them");
    }
    if (rows.size() > 1 && !AreVariants(rows)) {
        CChoice choice;
        for (const TIEFormatRow* pRow : rows)
            choice.Add(*pRow);
        return choice.Fail(fmt::format("{}: several forms have the extension {}:", strFile, extension), "--to",
                           messages);
    }
    if (rows.size() > 1) {
        std::string others;
        for (std::size_t i = 1; i < rows.size(); ++i)
            others += (i > 1 ? ", " : "") + Name(*rows[i]);
        messages.Say(fmt::format("{}: taken as {}: {}; its variants with the same extension are {} (--to)", strFile,
                                 Name(*rows.front()), rows.front()->m_pTitle, others));
    }
    return FindByKey(EIEDirection::Export, rows.front()->m_pKey, "--to", form, messages);
}

} // namespace Cli
