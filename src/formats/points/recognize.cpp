#include "formats/points/recognize.h"

#include "frame/file_head.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <span>

namespace {

enum class ESima { None, Named, Numbers };

ESima LookAtSima(std::string_view head)
{
    CIEHeadLines lines(head);
    std::string_view line;
    if (!lines.Next(line) || !line.starts_with("G00,") || !lines.Next(line) || !line.starts_with("A00,"))
        return ESima::None;

    while (lines.Next(line)) {
        if (!line.starts_with("A01,"))
            continue;
        // tag, running number, name
        const std::size_t number = line.find(',', 4);
        const std::string_view name = number == line.npos ? std::string_view() : line.substr(number + 1);
        const std::size_t first = name.find_first_not_of(' ');
        return first == name.npos || name[first] == ',' ? ESima::Numbers : ESima::Named;
    }
    return ESima::Named;
}

bool IsDelimitedHeader(std::string_view line)
{
    const std::size_t start = line.find("Header>>");
    if (start == line.npos)
        return false;
    const std::size_t delimiter = line.find("Delimiter(", start);
    return delimiter != line.npos && line.find("<<", delimiter) != line.npos;
}

bool IsDigit(char c)
{
    return c >= '0' && c <= '9';
}

/// A number or an angle in any of its written forms: 4512.34, 45.30151, 45d30'15.1"N.
bool LooksNumeric(std::string_view field)
{
    const std::size_t first = field.find_first_not_of(' ');
    if (first == field.npos)
        return false;
    field.remove_prefix(first);
    if (field[0] == '+' || field[0] == '-')
        field.remove_prefix(1);
    if (field.starts_with('.'))
        field.remove_prefix(1);
    if (field.empty() || !IsDigit(field[0]))
        return false;
    return std::all_of(field.begin(), field.end(), [](char c) {
        // bytes above ASCII: the sign of a degree, whatever its encoding
        return static_cast<unsigned char>(c) >= 0x80 ||
               std::string_view("0123456789.+-eEdDnNsSwW'\"? ").find(c) != std::string_view::npos;
    });
}

constexpr std::size_t kLooked = 64; ///< fields of a line, and lines
using TNumeric = std::uint64_t;     ///< bit i: field i looks like a number

/// Splits outside double quotes. A quote behind a digit is the sign of seconds.
std::size_t CountFields(std::string_view line, char delimiter, TNumeric& numeric)
{
    std::size_t fields = 0, start = 0;
    bool quoted = false;
    numeric = 0;
    for (std::size_t i = 0; i <= line.size(); ++i) {
        if (i < line.size() && line[i] == '"')
            quoted = !quoted && (i == 0 || !IsDigit(line[i - 1]));
        if (i < line.size() && (quoted || line[i] != delimiter))
            continue;
        if (fields < kLooked && LooksNumeric(line.substr(start, i - start)))
            numeric |= TNumeric{1} << fields;
        ++fields;
        start = i + 1;
    }
    return fields;
}

bool FitDelimiter(std::span<const std::string_view> lines, char delimiter)
{
    TNumeric everywhere = ~TNumeric{0};
    for (std::size_t i = 0; i < lines.size(); ++i) {
        TNumeric numeric = 0;
        if (CountFields(lines[i], delimiter, numeric) < 3)
            return false;
        const bool heading = i == 0 && numeric == 0 && lines.size() > 1;
        if (!heading)
            everywhere &= numeric;
    }
    return (everywhere & (everywhere - 1)) != 0; // two bits at least
}

} // namespace

EIERecognition RecognizeSima(std::string_view head)
{
    return LookAtSima(head) == ESima::Named ? EIERecognition::Surely : EIERecognition::No;
}

EIERecognition RecognizeSimaNumbers(std::string_view head)
{
    return LookAtSima(head) == ESima::Numbers ? EIERecognition::Surely : EIERecognition::No;
}

EIERecognition RecognizeDelimited(std::string_view head)
{
    CIEHeadLines lines(head);
    std::array<std::string_view, kLooked> looked;
    std::size_t count = 0;
    // the first empty line ends the data
    while (count < looked.size() && lines.Next(looked[count]) && !looked[count].empty()) {
        if (looked[count].find('\0') != std::string_view::npos)
            return EIERecognition::No;
        ++count;
    }
    if (count == 0)
        return EIERecognition::No;
    if (IsDelimitedHeader(looked[0]))
        return EIERecognition::Surely;

    const std::span<const std::string_view> data(looked.data(), count);
    constexpr std::string_view kDelimiters = ",;\t ";
    const bool fits =
        std::any_of(kDelimiters.begin(), kDelimiters.end(), [&](char c) { return FitDelimiter(data, c); });
    return fits ? EIERecognition::Perhaps : EIERecognition::No;
}

EIERecognition RecognizeFramed(std::string_view head)
{
    CIEHeadLines lines(head);
    std::string_view line;
    return lines.Next(line) && line == "A,01,Z," ? EIERecognition::Surely : EIERecognition::No;
}

EIERecognition RecognizeMarked05(std::string_view head)
{
    constexpr std::size_t kHeightColumn = 49;
    CIEHeadLines lines(head);
    std::string_view line;
    return lines.Next(line) && line.starts_with(" 05 ") && line.size() > kHeightColumn ? EIERecognition::Surely
                                                                                       : EIERecognition::No;
}
