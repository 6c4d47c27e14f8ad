// The marks of delimited text, shared by its reader and its writer.
#pragma once

#include <string_view>

namespace DelimitedText {

// the header line: Header>> Delimiter(,) FileFormat(name,north,east) <<
constexpr std::string_view kHeaderStart = "Header>>";
constexpr std::string_view kDelimiter = "Delimiter(";
constexpr std::string_view kFileFormat = "FileFormat(";
constexpr std::string_view kHeaderEnd = "<<";

// one code: ROAD:width.REAL=3.5$kind.TEXT="asphalt"&"note"@"c1"
constexpr char kAttributesMark = ':';
constexpr char kAttributeMark = '$';
constexpr char kTypeMark = '.';
constexpr char kValueMark = '=';
constexpr char kItemMark = '#';
constexpr char kCodeStringMark = '&';
constexpr char kControlCodeMark = '@';

constexpr std::string_view kText = "TEXT";
constexpr std::string_view kInt = "INT";
constexpr std::string_view kReal = "REAL";
constexpr std::string_view kList = "LIST";

// behind the name of a point that is given relative to a line
constexpr std::string_view kPointToLine = "<PTL>";
constexpr std::string_view kRegular = "<REG>";

} // namespace DelimitedText
