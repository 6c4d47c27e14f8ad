#include "formats/points/formats.h"

#include "formats/points/delimited.h"
#include "formats/points/recognize.h"
#include "formats/points/sima.h"
#include "frame/point_importer.h"

namespace {

constexpr auto kIn = EIEDirection::Import;
constexpr auto kOut = EIEDirection::Export;

constexpr unsigned kPoints = kSimaCarries;
constexpr unsigned kCoded = CARRIES_POINTS | CARRIES_CODES;
constexpr unsigned kNoted = CARRIES_POINTS | CARRIES_CODES | CARRIES_NOTES;
/// points, and lines told by a name that several records in a row share
constexpr unsigned kJoined = CARRIES_POINTS | CARRIES_LINES | CARRIES_POLYGONS;
constexpr unsigned kDelimited = kJoined | CARRIES_CODES | CARRIES_ATTRIBUTES | CARRIES_NOTES | CARRIES_GEOID_HEIGHTS;

std::unique_ptr<CIEImporter> ReadDelimited(CIEData* pData, const CString& strFileName, int)
{
    return std::make_unique<CIEPointImporter>(pData, strFileName);
}

std::unique_ptr<CIEExporter> WriteDelimited(CIEData* pData, const CString& strFileName, int)
{
    return std::make_unique<CIEDelimitedExporter>(pData, strFileName);
}

template <bool bNumbersOnly>
std::unique_ptr<CIEImporter> ReadSima(CIEData* pData, const CString& strFileName, int)
{
    return std::make_unique<CIESimaImporter>(pData, strFileName, bNumbersOnly);
}

template <bool bNumbersOnly>
std::unique_ptr<CIEExporter> WriteSima(CIEData* pData, const CString& strFileName, int)
{
    return std::make_unique<CSimaPtExporterJ>(pData, strFileName, bNumbersOnly);
}

// clang-format off
constexpr TIEFormatRow kRows[] = {
    {kIn,   0, "delimited",           "Delimited text, fields as chosen",                           "txt csv asc", kDelimited,
     "Delimiter and fields come from the file's header line, or else from the settings. Lengths are in the job's units, angles in "
     "the style of the settings. Points in a row that share a name become a polyline, or a polygon if it closes. A line that "
     "can't be read is skipped; the first empty line ends the data.",
     ReadDelimited, nullptr, RecognizeDelimited},
    {kIn,  35, "delimited-35",        "Delimited text, fields as chosen (second code)",             "txt csv asc", kDelimited,
     "The same as code 0.",
     ReadDelimited, nullptr, RecognizeDelimited},
    {kOut,  0, "delimited",           "Delimited text, fields as chosen",                           "txt csv asc", kDelimited,
     "Delimiter, fields and decimals come from the settings; a header line tells them if asked for. Lengths are in the job's "
     "units, angles in the style of the settings. A polyline is a line for each station, all with its name. Arcs, sheet points and "
     "composite objects are left out, and so is every property that has no field.",
     nullptr, WriteDelimited},

    {kIn,  49, "sima",                "SIMA points with names",                                     "sim", kPoints,
     "Name, north, east, height. The file states no unit: values enter the job unchanged, as metres. A missing height is 0. "
     "A bad record ends the import, and the points before it stay.",
     ReadSima<false>, nullptr, RecognizeSima},
    {kIn,  50, "sima-numbers",        "SIMA points with running numbers",                           "sim", kPoints,
     "As the form with names, but the running number becomes the name.",
     ReadSima<true>, nullptr, RecognizeSimaNumbers},
    {kOut, 63, "sima",                "SIMA points with names",                                     "sim", kPoints,
     "North, east, height with 3 decimals in the job's units, north and east in decimal degrees if the job is geographic. The "
     "file states no unit, so only a job in metres reads back the same. Lines, polygons and arcs are left out, and codes, attributes and notes of the points are lost.",
     nullptr, WriteSima<false>},
    {kOut, 66, "sima-numbers",        "SIMA points with running numbers",                           "sim", kPoints,
     "As the form with names, but the names are lost: points are numbered from 1 in the order of the job.",
     nullptr, WriteSima<true>},

    {kIn,   7, "columns-001",         "Fixed columns, records marked 001",                          "txt", kJoined | CARRIES_NOTES,
     "Name in 8 columns, north, east, height, and text to the line's end; lengths in the job's units."},
    {kOut,  7, "columns-001",         "Fixed columns, records marked 001",                          "txt", kPoints,
     "Name in 8 columns, north, east and height with 6 decimals in the job's units, and the whole name behind them."},
    {kIn,  15, "columns-code",        "Fixed columns with code string, code and name",              "txt", kCoded,
     "Code string, code and name in 8 columns each, then north, east and height in 14; lengths in the job's units."},
    {kOut, 13, "columns-code",        "Fixed columns with code string, code and name",              "txt", kCoded,
     "Code string (left empty), code and name in 8 columns each, then north, east and height in 14 with 3 decimals."},
    {kIn,  36, "columns-note",        "Fixed columns with note lines",                              "txt", kNoted,
     "Control code, code string, code and name in 8 columns each, then north, east and height in 14; a line that begins with \"!\" "
     "is the point's note."},
    {kOut, 47, "columns-note",        "Fixed columns with note lines",                              "txt", kNoted,
     "Two lines a point. Control code, code string, code and name in 8 columns each, then north, east and height in 14 with 3 "
     "decimals; the second line is \"!\" and the note."},
    {kIn,  45, "columns-control",     "Fixed columns with two control codes",                       "txt", kCoded,
     "Control codes, code string, name in 7 columns, code in 3, north, east, height; lengths in the job's units."},
    {kOut, 57, "columns-control",     "Fixed columns with two control codes",                       "txt", kCoded,
     "Name in 7 columns, code in 3; north, east and height with 3 decimals in the job's units."},
    {kIn,  47, "columns-05",          "Fixed columns, records marked 05",                           "txt", kNoted,
     "Name, code, north, east, height, note; lines of other records are passed over."},
    {kOut, 60, "columns-05",          "Fixed columns, records marked 05",                           "txt", kNoted,
     "Name in 10 columns, code in 8, north, east and height with 3 decimals, note in 7."},

    {kIn,  10, "five-lines",          "Five lines a point",                                         "txt", kCoded,
     "Name, north, east, height and code, each on a line of its own; lengths in the job's units."},
    {kOut,  8, "five-lines",          "Five lines a point",                                         "txt", kCoded,
     "Name, north, east, height and code, each on a line of its own; 5 decimals in the job's units."},
    {kIn,  13, "comma-enh",           "Comma list: name, east, north, height, code",                "csv txt", kCoded,
     "Lengths in the job's units. A line with seven fields or more is a point on a reference line."},
    {kOut, 11, "comma-enh",           "Comma list: name, east, north, height, code",                "csv txt", kCoded,
     "4 decimals in the job's units; the first code only."},
    {kIn,  14, "comma-enh-string",    "Comma list: name, east, north, height, code, code string",   "csv txt", kCoded,
     "Lengths in the job's units. A line with seven fields or more is a point on a reference line."},
    {kOut, 12, "comma-enh-string",    "Comma list: name, east, north, height, code, code string",   "csv txt", kCoded,
     "4 decimals in the job's units; the first code with its first code string."},
    {kIn,  28, "comma-neh",           "Comma list: name, north, east, height, code",                "csv txt", kCoded,
     "Lengths in the job's units. A line with seven fields or more is a point on a reference line."},
    {kOut, 36, "comma-neh",           "Comma list: name, north, east, height, code",                "csv txt", kCoded,
     "4 decimals in the job's units; the first code only."},
    {kIn,  29, "comma-neh-string",    "Comma list: name, north, east, height, code, code string",   "csv txt", kCoded,
     "Lengths in the job's units. A line with seven fields or more is a point on a reference line."},
    {kOut, 37, "comma-neh-string",    "Comma list: name, north, east, height, code, code string",   "csv txt", kCoded,
     "4 decimals in the job's units; the first code with its first code string."},
    {kIn,  38, "framed-comma",        "Comma list in a frame: G, name, north, east, height, check", "txt csv", kPoints,
     "Between the lines \"A,01,Z,\" and \"Z,&,\". The file states no unit; the check character isn't looked at."},
    {kOut, 49, "framed-comma",        "Comma list in a frame: G, name, north, east, height, check", "txt csv", kPoints,
     "Between the lines \"A,01,Z,\" and \"Z,&,\"; 3 decimals in the job's units, and a check character a line."},
    {kOut, 50, "comma-neh-plain",     "Comma list: name, north, east, height",                      "csv txt", kPoints,
     "3 decimals in the job's units, no code."},
    {kOut, 51, "comma-neh-string-3",  "Comma list: name, north, east, height, code, code string, in 3 decimals", "csv txt", kCoded,
     "3 decimals in the job's units; the first code with its first code string."},

    {kIn,  11, "block-fgh",           "Blocks of 128 characters, fields f g h with a unit letter",  "txt", kJoined | CARRIES_CODES,
     "North, east, height in thousandths of a metre or US survey foot; the same records as plain lines are read too."},
    {kOut,  9, "block-fgh",           "Blocks of 128 characters, fields f g h with a unit letter",  "txt", kCoded,
     "Name in 10 characters; north, east, height in 9 digits, thousandths of a metre or US survey foot; higher digits are lost."},
    {kIn,  12, "block-xyz",           "Blocks of 128 characters, fields x y z",                     "txt", kJoined | CARRIES_CODES,
     "North, east, height in thousandths; the same records as plain lines are read too."},
    {kOut, 10, "block-xyz",           "Blocks of 128 characters, fields x y z",                     "txt", kPoints,
     "Name in 10 characters; north, east, height in 11 digits, thousandths of a metre or US survey foot, with no unit letter."},
    {kIn,  37, "block-wide",          "Blocks of 128 characters, names of 16",                      "txt", kJoined,
     "North, east, height in thousandths; the code isn't read."},
    {kOut, 48, "block-wide",          "Blocks of 128 characters, names of 16",                      "txt", kCoded,
     "Name in 16 characters; north, east, height in 9 digits, thousandths of a metre or US survey foot."},

    {kIn,  18, "binary-points",       "Binary point list",                                          "bin", kCoded,
     "Whole numbers as names, coordinates as 64-bit floats in the job's units."},
    {kOut, 20, "binary-points",       "Binary point list",                                          "bin", kCoded,
     "Whole numbers as names: a name that is none is lost and gets the next free number. Code in 16 characters."},
    {kIn,  33, "cor-lev",             "Pair of a coordinate and a level file",                      "cor lev def", kPoints,
     "East before north in the \".cor\" file, in the job's units; heights in the \".lev\" file, in metres."},
    // the two files take the name as it is given and put their extensions behind it
    {kOut, 41, "cor-lev",             "Pair of a coordinate and a level file",                      "", kPoints,
     "Writes the name given plus \".cor\" and \".lev\". East before north; metres with 4 decimals, names in 16 characters."},
    {kOut, 46, "gps-list",            "Delimited list of GPS positions",                            "txt csv", kNoted | CARRIES_ATTRIBUTES | CARRIES_GEOID_HEIGHTS,
     "The fields of the delimited text and, as chosen, accuracy, date, time, dilution of precision, solution and satellites."},
    {kOut, 15, "sheet-points",        "Delimited list of check and stakeout measurements",          "txt csv", kCoded | CARRIES_ATTRIBUTES | CARRIES_TIME_STAMPS,
     "A row for each measurement of a sheet point, with the fields chosen in the settings."},
    {kOut, 44, "job-history-list",    "Job history as a comma list",                                "csv txt", CARRIES_NOTHING,
     "A row for each table of the job history."},
};
// clang-format on

} // namespace

TIEFormatRows GetPointFormats()
{
    return kRows;
}
