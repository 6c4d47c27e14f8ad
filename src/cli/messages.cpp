#include "cli/messages.h"

#include "alidade/vellumlib/utils.h"

#include <algorithm>
#include <cstdio>
#include <unistd.h>

namespace {

struct TRange {
    char32_t m_cFirst, m_cLast;
};
/// What isn't shown as it is. The marks of direction are those of Unicode's bidirectional algorithm.
constexpr TRange kHidden[] = {{0x00, 0x1F},     {0x7F, 0x9F},     {0x061C, 0x061C}, {0x200B, 0x200F},  {0x2028, 0x202E},
                              {0x2060, 0x2069}, {0xFEFF, 0xFEFF}, {0xFFF9, 0xFFFB}, {0xE0000, 0xE007F}};

/// The character at the start of a text that is valid UTF-8.
char32_t FirstCharacter(std::string_view text)
{
    const auto first = static_cast<unsigned char>(text[0]);
    if (text.size() == 1)
        return first;
    char32_t c = first & (0x7FU >> text.size());
    for (const char byte : text.substr(1))
        c = c << 6U | (static_cast<unsigned char>(byte) & 0x3FU);
    return c;
}

} // namespace

namespace Cli {

std::string MakePrintable(std::string_view text, bool bLineEnds)
{
    std::string shown;
    shown.reserve(text.size());
    while (!text.empty()) {
        const std::string_view one = IEUtils::Left(text, 1);
        text.remove_prefix(one.size());
        if (!IEUtils::IsValidUtf8(one)) {
            for (const char c : one)
                shown += fmt::format("\\x{:02X}", static_cast<unsigned char>(c));
            continue;
        }
        const char32_t c = FirstCharacter(one);
        const bool bHidden = std::any_of(std::begin(kHidden), std::end(kHidden), [c](const TRange& range) {
            return c >= range.m_cFirst && c <= range.m_cLast;
        });
        if (!bHidden || (bLineEnds && c == '\n'))
            shown += one;
        else
            shown += c <= 0xFF ? fmt::format("\\x{:02X}", static_cast<unsigned>(c))
                               : fmt::format("\\u{:04X}", static_cast<unsigned>(c));
    }
    return shown;
}

void PutOnError(const std::string& text)
{
    static const bool bTerminal = isatty(STDERR_FILENO) != 0;
    (void)std::fputs((bTerminal ? MakePrintable(text, true) : text).c_str(), stderr);
}

bool PutOnOutput(const std::string& text)
{
    static const bool bTerminal = isatty(STDOUT_FILENO) != 0;
    const std::string shown = bTerminal ? MakePrintable(text, true) : std::string();
    const std::string& out = bTerminal ? shown : text;
    if (std::fwrite(out.data(), 1, out.size(), stdout) == out.size() && std::fflush(stdout) == 0)
        return true;
    PutOnError("alidade: standard output takes no more\n");
    return false;
}

} // namespace Cli
