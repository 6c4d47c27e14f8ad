#include "cli/plot/svg.h"

#include "alidade/vellumlib/utils.h"

#include <cmath>
#include <fmt/format.h>

namespace {

constexpr char32_t kNoCharacter = 0xFFFFFFFF; ///< bytes that aren't UTF-8
constexpr std::string_view kReplacement = "\xEF\xBF\xBD";

/// Takes the first code point off a text. A byte that begins none is taken alone.
char32_t TakeCodePoint(std::string_view& text, std::string_view& bytes)
{
    const auto first = static_cast<unsigned char>(text.front());
    const std::size_t nBytes = first < 0x80 ? 1 : first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : first >= 0xC0 ? 2 : 1;
    bytes = text.substr(0, nBytes);
    if (!IEUtils::IsValidUtf8(bytes)) {
        bytes = text.substr(0, 1);
        text.remove_prefix(1);
        return kNoCharacter;
    }
    text.remove_prefix(bytes.size());
    if (nBytes == 1)
        return first;
    constexpr unsigned kFollowing = 0x3F;
    char32_t c = first & (0xFFU >> (nBytes + 1));
    for (const char byte : bytes.substr(1))
        c = c << 6U | (static_cast<unsigned char>(byte) & kFollowing);
    return c;
}

std::string_view EscapeOf(char32_t c)
{
    switch (c) {
    case '&':
        return "&amp;";
    case '<':
        return "&lt;";
    case '>':
        return "&gt;";
    case '"':
        return "&quot;";
    case '\'':
        return "&#39;";
    case '\n':
    case '\r':
    case '\t':
        return " ";
    default:
        return {};
    }
}

/// What may stand in no document, and the C1 controls, which may but show nothing.
bool IsForbidden(char32_t c)
{
    constexpr char32_t kDelete = 0x7F, kLastControl = 0x9F;
    return c < ' ' || (c >= kDelete && c <= kLastControl) || c == 0xFFFE || c == 0xFFFF;
}

/// Width of a character against the size of a common font without serifs.
double WidthOf(char32_t c)
{
    constexpr char32_t kFirstWide = 0x1100, kFirstForeign = 0x80;
    if (c >= kFirstWide && c != kNoCharacter && (c < 0x2000 || c > 0x2BFF))
        return 1.0;
    if (c == 'i' || c == 'l' || c == 'j' || c == '.' || c == ',' || c == ' ' || c == ':' || c == '|')
        return 0.32;
    if (c >= '0' && c <= '9')
        return 0.64; // the widest among the common fonts: a digit more or less makes another point
    return (c >= 'A' && c <= 'Z') || c >= kFirstForeign ? 0.7 : 0.58;
}

const char* NameOf(Cli::EAnchor eAnchor)
{
    return eAnchor == Cli::EAnchor::Middle ? "middle" : "end";
}

} // namespace

namespace Cli {

std::string EscapeXml(std::string_view text)
{
    std::string out;
    while (!text.empty()) {
        std::string_view bytes;
        const char32_t c = TakeCodePoint(text, bytes);
        if (c == kNoCharacter)
            out += kReplacement;
        else if (const std::string_view escape = EscapeOf(c); !escape.empty())
            out += escape;
        else if (!IsForbidden(c))
            out += bytes;
    }
    return out;
}

std::string ColorToSvg(TIEColor color)
{
    return fmt::format("#{:06x}", ColorToRGB(color));
}

void AppendPixels(std::string& out, double dValue)
{
    constexpr double kFar = 1e7;
    constexpr double kParts = 100.0;
    const double dSafe = std::abs(dValue) <= kFar ? dValue : 0.0; // false for what isn't a number
    fmt::format_to(std::back_inserter(out), "{}", std::round(dSafe * kParts) / kParts + 0.0);
}

void AppendText(std::string& out, TPixel at, std::string_view strClass, EAnchor eAnchor, std::string_view text)
{
    out += "<text x=\"";
    AppendPixels(out, at.m_dX);
    out += "\" y=\"";
    AppendPixels(out, at.m_dY);
    fmt::format_to(std::back_inserter(out), "\" class=\"{}\"", strClass);
    if (eAnchor != EAnchor::Start)
        fmt::format_to(std::back_inserter(out), " text-anchor=\"{}\"", NameOf(eAnchor));
    out += ">" + EscapeXml(text) + "</text>\n";
}

void AppendLine(std::string& out, TPixel from, TPixel to, std::string_view strClass)
{
    fmt::format_to(std::back_inserter(out), "<path class=\"{}\" d=\"M", strClass);
    AppendPixels(out, from.m_dX);
    out += ' ';
    AppendPixels(out, from.m_dY);
    out += 'L';
    AppendPixels(out, to.m_dX);
    out += ' ';
    AppendPixels(out, to.m_dY);
    out += "\"/>\n";
}

void AppendBox(std::string& out, const TBox& box, std::string_view attributes)
{
    out += "<rect x=\"";
    AppendPixels(out, box.m_dLeft);
    out += "\" y=\"";
    AppendPixels(out, box.m_dTop);
    out += "\" width=\"";
    AppendPixels(out, box.GetWidth());
    out += "\" height=\"";
    AppendPixels(out, box.GetHeight());
    fmt::format_to(std::back_inserter(out), "\" {}/>\n", attributes);
}

double EstimateWidth(std::string_view text, double dFontSize)
{
    double dWidth = 0.0;
    while (!text.empty()) {
        std::string_view bytes;
        dWidth += WidthOf(TakeCodePoint(text, bytes));
    }
    return dWidth * dFontSize;
}

std::string FitWidth(std::string_view text, double dFontSize, double dWidth)
{
    constexpr std::string_view kEllipsis = "\xE2\x80\xA6";
    double dUsed = 0.0;
    std::size_t nCut = 0; // behind the last character that leaves room for the ellipsis
    std::string_view rest = text;
    while (!rest.empty()) {
        std::string_view bytes;
        dUsed += WidthOf(TakeCodePoint(rest, bytes)) * dFontSize;
        if (dUsed > dWidth)
            return std::string(text.substr(0, nCut)).append(kEllipsis);
        if (dUsed + dFontSize <= dWidth)
            nCut = text.size() - rest.size();
    }
    return std::string(text);
}

} // namespace Cli
