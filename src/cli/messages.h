// What the program says to people, on standard error. Standard output is for data alone.
#pragma once

#include "cli/exit_codes.h"

#include <cstdio>
#include <fmt/format.h>
#include <string>
#include <utility>

namespace Cli {

/// Prints a text; a stream that takes nothing any more is no reason to end.
inline void PutOnError(const std::string& text)
{
    (void)std::fputs(text.c_str(), stderr);
}

/// Prints data. False, and says so, if not all of it went out.
[[nodiscard]] inline bool PutOnOutput(const std::string& text)
{
    if (std::fputs(text.c_str(), stdout) >= 0 && std::fflush(stdout) == 0)
        return true;
    PutOnError("alidade: standard output takes no more\n");
    return false;
}

/// The text with control characters as \x1B, so that nothing out of a file drives a terminal; line ends stay.
inline std::string MakePrintable(const std::string& text)
{
    constexpr unsigned char kDelete = 0x7F;
    std::string shown;
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if ((byte < ' ' && c != '\n') || byte == kDelete)
            shown += fmt::format("\\x{:02X}", byte);
        else
            shown += c;
    }
    return shown;
}

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

private:
    static void Print(const std::string& text) { PutOnError(MakePrintable(text) + "\n"); }

    bool m_bQuiet;
    std::string m_strFailure;
};

} // namespace Cli
