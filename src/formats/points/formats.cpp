#include "formats/points/formats.h"

#include "alidade/formats/points/sima.h"
#include "formats/points/binary_points.h"
#include "formats/points/blocks/block_exporter.h"
#include "formats/points/blocks/block_importer.h"
#include "formats/points/blocks/block_recognize.h"
#include "formats/points/column_points.h"
#include "formats/points/comma_points.h"
#include "formats/points/cor_lev.h"
#include "formats/points/delimited.h"
#include "formats/points/fixed_columns.h"
#include "formats/points/framed_points.h"
#include "formats/points/gps_list.h"
#include "formats/points/job_history_list.h"
#include "formats/points/recognize.h"
#include "formats/points/sheet_points.h"
#include "formats/points/sima.h"
#include "frame/point_importer.h"

#include <type_traits>

namespace {

constexpr auto kIn = EIEDirection::Import;
constexpr auto kOut = EIEDirection::Export;

constexpr TIECarries kPoints = kSimaCarries;
constexpr TIECarries kCoded = CARRIES_POINTS | CARRIES_CODES;
constexpr TIECarries kStrings = kCoded | CARRIES_CODE_STRINGS;
constexpr TIECarries kControls = kStrings | CARRIES_CONTROL_CODES;
constexpr TIECarries kNoted = CARRIES_POINTS | CARRIES_CODES | CARRIES_NOTES;
/// points, and lines told by a name that several records in a row share
constexpr TIECarries kJoined = CARRIES_POINTS | CARRIES_LINES | CARRIES_POLYGONS;
constexpr TIECarries kDelimited = kJoined | CARRIES_CODES | CARRIES_ATTRIBUTES | CARRIES_CODE_STRINGS |
                                  CARRIES_CONTROL_CODES | CARRIES_NOTES | CARRIES_GEOID_HEIGHTS;

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

template <CIEBlockPointExporter::EForm eForm>
std::unique_ptr<CIEExporter> WriteBlocks(CIEData* pData, const CString& strFileName, int)
{
    return std::make_unique<CIEBlockPointExporter>(pData, strFileName, eForm);
}

/// Classes of a family are told the code, those of a single form aren't.
template <class TImporter>
std::unique_ptr<CIEImporter> Read(CIEData* pData, const CString& strFileName, int nCode)
{
    if constexpr (std::is_constructible_v<TImporter, CIEData*, const CString&, int>)
        return std::make_unique<TImporter>(pData, strFileName, nCode);
    else
        return std::make_unique<TImporter>(pData, strFileName);
}

template <class TExporter>
std::unique_ptr<CIEExporter> Write(CIEData* pData, const CString& strFileName, int nCode)
{
    if constexpr (std::is_constructible_v<TExporter, CIEData*, const CString&, int>)
        return std::make_unique<TExporter>(pData, strFileName, nCode);
    else
        return std::make_unique<TExporter>(pData, strFileName);
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
     "Name in 8 columns, north, east, height, and text to the line's end, which becomes the note; lengths in the job's units, north and "
     "east in decimal degrees if the job is geographic. Points in a row that share a name become a polyline. A row that can't be read is skipped.",
     Read<CIEFixedColumnImporter>, nullptr},
    {kOut,  7, "columns-001",         "Fixed columns, records marked 001",                          "txt", kPoints,
     "Name in 8 columns, north, east and height with 6 decimals in the job's units, and the whole name behind them, from which a reader "
     "takes the note. A number of more than 12 characters moves what follows: a reader loses "
     "digits, and refuses the row where two numbers run together.",
     nullptr, Write<CIEFixedColumnExporter>},
    {kIn,  15, "columns-code",        "Fixed columns with code string, code and name",              "txt", kStrings,
     "Code string, code and name in 8 columns each, then north, east and height in 14; lengths in the job's units. A bad row ends the import.",
     Read<CIECommaPointImporter>, nullptr},
    {kOut, 13, "columns-code",        "Fixed columns with code string, code and name",              "txt", kCoded,
     "Code string (left empty), first code and name in 8 columns each, then north, east and height in 14 with 3 decimals in the job's units.",
     nullptr, Write<CIECommaPointExporter>},
    {kIn,  36, "columns-note",        "Fixed columns with note lines",                              "txt", kControls | CARRIES_NOTES,
     "Control code, code string, code and name in 8 columns each, then north, east and height in 14, in the job's units; a line that "
     "begins with \"!\" is the point's note. Every point gets a code, be its name empty. A bad row ends the import.",
     Read<CIEColumnPointImporter>, nullptr},
    {kOut, 47, "columns-note",        "Fixed columns with note lines",                              "txt", kControls | CARRIES_NOTES,
     "Two lines a point. First control code, code string, code and name in 8 columns each, then north, east and height in 14 with 3 "
     "decimals in the job's units; the second line is \"!\" and the note, or empty without one.",
     nullptr, Write<CIEColumnListExporter>},
    {kIn,  45, "columns-control",     "Fixed columns with two control codes",                       "txt", kControls,
     "Control codes in 3 and 2 columns, code string in 4, name in 7, code in 3, north, east, height; lengths in the job's units. Every "
     "point gets a code, be its name empty. A bad row ends the import.",
     Read<CIEColumnPointImporter>, nullptr},
    {kOut, 57, "columns-control",     "Fixed columns with two control codes",                       "txt", kControls,
     "Control codes in 3 and 2 columns, code string in 4, name in 7, code in 3; north, east and height with 3 decimals in the job's units.",
     nullptr, Write<CIEColumnListExporter>},
    {kIn,  47, "columns-05",          "Fixed columns, records marked 05",                           "txt", kNoted,
     "Name, code, north, east, height, note; lengths in the job's units. An empty height is 999999.9 m. Lines of other records are "
     "passed over, and so is a number that can't be read.",
     Read<CIEColumnPointImporter>, nullptr, RecognizeMarked05},
    {kOut, 60, "columns-05",          "Fixed columns, records marked 05",                           "txt", kNoted,
     "Name in 10 columns, code in 8, north, east and height with 3 decimals in the job's units, note in 7. A height of 0 is left empty, "
     "which a reader takes for none.",
     nullptr, Write<CIEColumnListExporter>},

    {kIn,  10, "five-lines",          "Five lines a point",                                         "txt", kCoded,
     "Name, north, east, height and code, each on a line of its own; lengths in the job's units. A bad line ends the import.",
     Read<CIECommaPointImporter>, nullptr},
    {kOut,  8, "five-lines",          "Five lines a point",                                         "txt", kCoded,
     "Name, north, east, height and first code, each on a line of its own; 5 decimals in the job's units.",
     nullptr, Write<CIECommaPointExporter>},
    {kIn,  13, "comma-enh",           "Comma list: name, east, north, height, code",                "csv txt", kStrings | CARRIES_RELATIVE_POINTS,
     "Lengths in the job's units. A height may be missing, and a code string may follow the code. A line with seven fields or more is a "
     "point on a reference line, with north ahead of east. A bad line ends the import.",
     Read<CIECommaPointImporter>, nullptr},
    {kOut, 11, "comma-enh",           "Comma list: name, east, north, height, code",                "csv txt", kCoded | CARRIES_RELATIVE_POINTS,
     "4 decimals in the job's units; the first code only. A point-to-line point has its references behind; whatever the "
     "order of the form, north stands first if its coordinates are of the type point-to-line, and east if they are regular; of other types none is written.",
     nullptr, Write<CIECommaPointExporter>},
    {kIn,  14, "comma-enh-string",    "Comma list: name, east, north, height, code, code string",   "csv txt", kStrings | CARRIES_RELATIVE_POINTS,
     "The same as code 13.",
     Read<CIECommaPointImporter>, nullptr},
    {kOut, 12, "comma-enh-string",    "Comma list: name, east, north, height, code, code string",   "csv txt", kStrings | CARRIES_RELATIVE_POINTS,
     "4 decimals in the job's units; the first code only, with its first code string. A point-to-line point has its references behind; whatever the "
     "order of the form, north stands first if its coordinates are of the type point-to-line, and east if they are regular; of other types none is written.",
     nullptr, Write<CIECommaPointExporter>},
    {kIn,  28, "comma-neh",           "Comma list: name, north, east, height, code",                "csv txt", kStrings | CARRIES_RELATIVE_POINTS,
     "Lengths in the job's units. A height may be missing, and a code string may follow the code. A line with seven fields or more is a "
     "point on a reference line. A bad line ends the import.",
     Read<CIECommaPointImporter>, nullptr},
    {kOut, 36, "comma-neh",           "Comma list: name, north, east, height, code",                "csv txt", kCoded | CARRIES_RELATIVE_POINTS,
     "4 decimals in the job's units; the first code only. A point-to-line point has its references behind; whatever the "
     "order of the form, north stands first if its coordinates are of the type point-to-line, and east if they are regular; of other types none is written.",
     nullptr, Write<CIECommaPointExporter>},
    {kIn,  29, "comma-neh-string",    "Comma list: name, north, east, height, code, code string",   "csv txt", kStrings | CARRIES_RELATIVE_POINTS,
     "The same as code 28.",
     Read<CIECommaPointImporter>, nullptr},
    {kOut, 37, "comma-neh-string",    "Comma list: name, north, east, height, code, code string",   "csv txt", kStrings | CARRIES_RELATIVE_POINTS,
     "4 decimals in the job's units; the first code only, with its first code string. A point-to-line point has its references behind; whatever the "
     "order of the form, north stands first if its coordinates are of the type point-to-line, and east if they are regular; of other types none is written.",
     nullptr, Write<CIECommaPointExporter>},
    {kIn,  38, "framed-comma",        "Comma list in a frame: G, name, north, east, height, check", "txt csv", kPoints,
     "Between the lines \"A,01,Z,\" and \"Z,&,\". The file states no unit: values enter the job unchanged, as metres. The check character isn't looked at. A bad line ends the import.",
     Read<CIEFramedPointImporter>, nullptr, RecognizeFramed},
    {kOut, 49, "framed-comma",        "Comma list in a frame: G, name, north, east, height, check", "txt csv", kPoints,
     "Between the lines \"A,01,Z,\" and \"Z,&,\"; 3 decimals in the job's units, and a check character a line. The file states no unit. "
     "The line of a point-to-line point has 4 decimals, the first code and both references, and no check; a reader takes no more than the plain point.",
     nullptr, Write<CIEFramedPointExporter>},
    {kOut, 50, "comma-neh-plain",     "Comma list: name, north, east, height",                      "csv txt", kPoints | CARRIES_RELATIVE_POINTS,
     "3 decimals in the job's units, no code. A point-to-line point has 4 decimals, the first code, and its references behind. Reads back as comma-neh.",
     nullptr, Write<CIEFramedPointExporter>},
    {kOut, 51, "comma-neh-string-3",  "Comma list: name, north, east, height, code, code string, in 3 decimals", "csv txt", kStrings | CARRIES_RELATIVE_POINTS,
     "3 decimals in the job's units; the first code with its first code string. A point-to-line point has 4 decimals, and its references behind. Reads back as comma-neh-string.",
     nullptr, Write<CIEFramedPointExporter>},

    {kIn,  11, "block-fgh",           "Blocks of 128 characters, fields f g h with a unit letter",  "txt", kJoined | CARRIES_CODES,
     "North, east, height in thousandths of a metre, or of a US survey foot where the letter says so; the same records as plain "
     "lines are read too. Points in a row that share a name become a polyline, or a polygon if it closes. A bad record ends the "
     "import, and the points before it stay.",
     Read<CIEBlockPointImporter>, nullptr, RecognizeBlockFgh},
    {kOut,  9, "block-fgh",           "Blocks of 128 characters, fields f g h with a unit letter",  "txt", kCoded,
     "Name in 10 characters, of a longer one its last; north, east, height in 9 digits, thousandths of a metre, or of a US survey "
     "foot for a job in any other unit; higher digits are lost. The codes stand behind them.",
     nullptr, WriteBlocks<CIEBlockPointExporter::EForm::Fgh>},
    {kIn,  12, "block-xyz",           "Blocks of 128 characters, fields x y z",                     "txt", kJoined | CARRIES_CODES,
     "The same reader as of the fields f g h: it takes either letters. Numbers without the letter of feet are thousandths of a metre.",
     Read<CIEBlockPointImporter>, nullptr, RecognizeBlockXyz},
    {kOut, 10, "block-xyz",           "Blocks of 128 characters, fields x y z",                     "txt", kPoints,
     "Name in 10 characters, of a longer one its last; north, east, height in 11 digits, thousandths of a metre, or of a US survey "
     "foot for a job in any other unit. The file states no unit, so only a job in metres reads back the same.",
     nullptr, WriteBlocks<CIEBlockPointExporter::EForm::Xyz>},
    {kIn,  37, "block-wide",          "Blocks of 128 characters, names of 16",                      "txt", kJoined,
     "North, east, height in thousandths of a metre, or of a US survey foot where a letter says so. The height ends a record, so "
     "that codes aren't read, and a height with a code right behind it reads as 0. A bad record ends the import, and the points "
     "before it stay.",
     Read<CIEWideBlockPointImporter>, nullptr, RecognizeBlockWide},
    {kOut, 48, "block-wide",          "Blocks of 128 characters, names of 16",                      "txt", kCoded,
     "Name in 16 characters, of a longer one its last; north, east, height in 9 digits or more, thousandths of a metre, or of a US "
     "survey foot for a job in any other unit; texts in the code page of the settings. The file states no unit, so only a job in "
     "metres reads back the same, and a reader takes neither the codes nor the heights of points that have some.",
     nullptr, Write<CIEWideBlockPointExporter>},

    {kIn,  18, "binary-points",       "Binary point list",                                          "bin", kCoded,
     "Whole numbers from -100000 to 100000 as names; north, east, height as 64-bit floats in the job's units, latitude and "
     "longitude in decimal degrees; a code in the code page of the settings. A bad record refuses the whole file.",
     Read<CIEBinaryPointImporter>, nullptr, RecognizeBinaryPoints},
    {kOut, 20, "binary-points",       "Binary point list",                                          "bin", kCoded,
     "North, east, height in full in the job's units, latitude and longitude in decimal degrees. Whole numbers as names: a name "
     "that is none is lost, and its point gets the next free number. The first code, in 16 bytes. A host that stops a run finds "
     "the unfinished file in its place.",
     nullptr, Write<CIEBinaryPointExporter>},
    {kIn,  33, "cor-lev",             "Pair of a coordinate and a level file",                      "cor lev def", kPoints,
     "East before north in the \".cor\" file, in the job's units; heights in the \".lev\" file, in metres. Names in 16 characters "
     "join the two, capitals or not. A bad line ends the import, and the points before it stay.",
     Read<CIECorLevImporter>},
    // the two files take the name as it is given and put their extensions behind it
    {kOut, 41, "cor-lev",             "Pair of a coordinate and a level file",                      "", kPoints,
     "Writes the name given plus \".cor\" and \".lev\". East before north; metres with 4 decimals, latitude and longitude in "
     "degrees; names in 16 characters, of a longer one its last. Only a job in metres reads back the same.",
     nullptr, Write<CIECorLevExporter>},
    {kOut, 46, "gps-list",            "Delimited list of GPS positions",                            "txt csv", kGPSListCarries,
     "A line for each GPS position; all other objects are left out. The fields of the delimited text and, as chosen, horizontal and "
     "vertical accuracy in the job's units, date, time, dilution of precision, each with 3 decimals, solution and numbers of "
     "satellites. North, east and heights as in the delimited text. Covariances and GDOP are lost.",
     nullptr, Write<CIEGPSListExporter>},
    {kOut, 15, "sheet-points",        "Delimited list of check and stakeout measurements",          "txt csv", kSheetPointsCarries,
     "A line for each measurement of a sheet point, with the fields from sheet-name to distance that the settings choose; any other "
     "stays empty. Lengths are in the job's units, north and east of a geographic job in the style of the settings; decimals are "
     "those of the settings, and 3 along and off a line. All other objects are left out, and so is a sheet point without a "
     "measurement.",
     nullptr, Write<CIESheetPointExporter>},
    {kOut, 44, "job-history-list",    "Job history as a comma list",                                "csv txt", kJobHistoryListCarries,
     "A line for each table of the current dataset's job history: number, two texts, and the tags that have a value as name{value}; "
     "commas in values become blanks. Without a job history no file is written. All objects are left out.",
     nullptr, Write<CIEJobHistoryListExporter>},
};
// clang-format on

} // namespace

TIEFormatRows GetPointFormats()
{
    return kRows;
}
