// Texts of the job that a delimited row can't hold as they are.
#pragma once

#include "alidade/vellumlib/utils.h"

#include <string_view>
#include <vector>

/// Whether a text of `nParts` parts comes out of a row otherwise: it has a delimiter outside double quotes that
/// separates none of its parts, or a line end, which is written as a blank.
inline bool BreaksRow(std::string_view text, char16_t cDelimiter, int nParts = 1)
{
    if (text.find_first_of("\r\n") != std::string_view::npos)
        return true;
    if (text.find(IEUtils::CharToString(cDelimiter)) == std::string_view::npos)
        return false;
    std::vector<std::string_view> parts;
    IEUtils::ParseValuesInQuotes(text, parts, cDelimiter);
    return parts.size() > static_cast<std::size_t>(nParts);
}
