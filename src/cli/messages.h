// What the program says to people, on standard error. Standard output is for data alone.
#pragma once

#include "cli/exit_codes.h"

#include <fmt/format.h>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace Cli {

/// The text with everything that could drive a terminal, or forge a line or an order of letters, as \x1B or \u202E:
/// control characters of both sets, marks of direction, separators of lines. Line ends stay with `bLineEnds`. Bytes
/// that aren't UTF-8 are shown as such.
std::string MakePrintable(std::string_view text, bool bLineEnds = false);

/// Prints a text, line ends and all, filtered if standard error is a terminal; a stream that takes nothing any more is
/// no reason to end.
void PutOnError(const std::string& text);

/// Prints data, filtered if standard output is a terminal. False, and says so, if not all of it went out.
[[nodiscard]] bool PutOnOutput(const std::string& text);

/// Speaks, and remembers why a run failed for its report.
class CMessages {
public:
    explicit CMessages(bool bQuiet) : m_bQuiet(bQuiet) {}

    /// Something good to know; not said with --quiet.
    void Say(const std::string& text) const
    {
        if (!m_bQuiet)
            Print(text);
    }
    void Warn(const std::string& text) const { Print(text); }
    /// Says why it ends here, and gives the status back.
    EExit Fail(EExit eExit, std::string text)
    {
        Print("alidade: " + text);
        m_strFailure = std::move(text);
        return eExit;
    }
    /// Empty if nothing failed.
    [[nodiscard]] const std::string& GetFailure() const { return m_strFailure; }

    /// The same with further lines behind the first.
    EExit Fail(EExit eExit, std::string text, const std::vector<std::string>& lines)
    {
        Fail(eExit, std::move(text));
        for (const std::string& line : lines) {
            Print(line);
            m_strFailure += "\n" + line;
        }
        return eExit;
    }

private:
    /// Names come from files and arguments: none of them may begin a line of its own.
    static void Print(const std::string& text) { PutOnError(MakePrintable(text) + "\n"); }

    bool m_bQuiet;
    std::string m_strFailure;
};

} // namespace Cli
