#include "formats/road/formats.h"

#include "frame/file_head.h"

namespace {

constexpr auto kIn = EIEDirection::Import;
constexpr auto kOut = EIEDirection::Export;

constexpr TIECarries kAlignment = CARRIES_ALIGNMENTS;
constexpr TIECarries kRoad = CARRIES_ALIGNMENTS | CARRIES_TEMPLATES;

EIERecognition RecognizeGenio(std::string_view head)
{
    std::string_view line;
    return CIEHeadLines(head).Next(line) && line.starts_with("GENIO") ? EIERecognition::Surely : EIERecognition::No;
}

// clang-format off
constexpr TIEFormatRow kRows[] = {
    {kIn,  19, "rd-hal-val",            "Road in .hal, .val and .rd",                 "hal val rd",      kRoad,
     "Alignment, profile and cross sections in three files with one base name, in the job's units."},
    {kOut, 24, "rd-hal-val",            "Road in .hal, .val and .rd",                 "hal val rd",      kRoad,
     "A set for each alignment, in the job's units."},
    {kIn,  26, "trd-thl-tvl",           "Road in .thl, .tvl and .trd",                "thl tvl trd",     kRoad,
     "Alignment, profile and cross sections in three files with one base name, in the job's units."},
    {kOut, 32, "trd-thl-tvl",           "Road in .thl, .tvl and .trd",                "thl tvl trd",     kRoad,
     "A set for each alignment, in the job's units."},
    {kIn,  41, "trv-alz-plt",           "Road in .PLT, .ALZ and .TRV",                "plt alz trv",     kRoad,
     "Plan, elevation and cross sections in three files with one base name, in metres and grads."},
    {kOut, 53, "trv-alz-plt",           "Road in .PLT, .ALZ and .TRV",                "plt alz trv",     kRoad,
     "A set for each alignment, in metres and grads."},
    // a set is read from the name of its horizontal file
    {kIn,  42, "soe-asc",               "Road in .ASC and .SOE",                      "asc",             kRoad,
     "Named by the horizontal file: ROADH.ASC, with ROADV.ASC and ROAD.SOE beside it; metres and grads."},
    {kOut, 54, "soe-asc",               "Road in .ASC and .SOE",                      "asc soe",         kRoad,
     "H.ASC, V.ASC and .SOE for each alignment, in metres and grads."},
    {kIn,  43, "ispol",                 "ISPOL road in .ALI, .RAS and .SC1",          "ali ras sc1",     kRoad,
     "Plan, profile and cross sections in three files with one base name, in metres and grads."},
    {kOut, 55, "ispol",                 "ISPOL road in .ALI, .RAS and .SC1",          "ali ras sc1",     kRoad,
     "A set for each alignment, in metres and grads, with Spanish headings."},
    {kIn,  21, "rd3",                   "RD3 road",                                   "rd3",             kRoad,
     "A whole road in one file, in metres."},
    {kOut, 27, "rd3",                   "RD3 road",                                   "rd3",             kRoad,
     "A file for each alignment, in metres."},
    {kIn,  23, "rd5",                   "RD5 road",                                   "rd5",             kRoad,
     "Comma records in the job's units; the templates that it names are read from their .TP5 files beside it."},
    {kOut, 29, "rd5",                   "RD5 road",                                   "rd5",             kRoad,
     "A file for each alignment and one for each template, in the job's units."},
    {kIn,  25, "tp5",                   "TP5 road template",                          "tp5",             CARRIES_TEMPLATES,
     "One template a file, named by the file; the job's units."},
    {kOut, 31, "tp5",                   "TP5 road template",                          "tp5",             CARRIES_TEMPLATES,
     "A file for each template, in the job's units with 3 decimals."},
    {kIn,  46, "vgp",                   "VGP alignment",                              "vgp",             kAlignment,
     "Plan and profile of one alignment, in metres."},
    {kOut, 58, "vgp",                   "VGP alignment",                              "vgp",             kAlignment,
     "A file for each alignment, in metres."},
    {kIn,  48, "moss",                  "MOSS alignment in .halgn and .verat",        "halgn verat",     kAlignment,
     "Horizontal alignment in the job's units; the vertical file isn't read."},
    {kOut, 61, "moss",                  "MOSS alignment in .halgn and .verat",        "halgn verat",     kAlignment,
     "Horizontal alignment alone; the vertical file stays empty."},
    {kIn,  16, "genio-points",          "GENIO string points",                        "gen",             CARRIES_POINTS | CARRIES_CODES,
     "East, north, height in the job's units. A string's name is the code, its last digits the code string.",
     nullptr, nullptr, RecognizeGenio},
    {kOut, 18, "genio-points",          "GENIO string points",                        "gen",             CARRIES_POINTS | CARRIES_CODES,
     "East, north, height with 4 decimals in the job's units, grouped into strings. Names of points are lost."},
    {kOut, 35, "genio-survey",          "GENIO survey records",                       "gen",             CARRIES_RAW_DATA | CARRIES_CODES,
     "Total-station records, in the job's units and degrees, minutes, seconds."},
    {kIn,  27, "template-list",         "Road template list",                         "csv txt",         CARRIES_TEMPLATES,
     "A row for each template with its two values, and one for each segment; the job's units. Replaces the job's templates."},
    {kOut, 33, "template-list",         "Road template list",                         "csv txt",         CARRIES_TEMPLATES,
     "A row for each template with its two values, and one for each segment; the job's units with 3 decimals."},
    {kIn,  20, "template-rows",         "Road template segments",                     "csv txt",         CARRIES_TEMPLATES,
     "A row for each segment: template, code, offset, height, in the job's units. Replaces the job's templates."},
    {kOut, 26, "template-rows",         "Road template segments",                     "csv txt",         CARRIES_TEMPLATES,
     "A row for each segment: template, code, offset, height, in the job's units with 3 decimals. The template's two values are lost."},
    {kOut, 25, "survey-cross-sections", "Survey cross-section list",                  "csv txt",         CARRIES_NOTHING,
     "Three values and a code for each survey cross section, in the job's units with 3 decimals."},
};
// clang-format on

} // namespace

TIEFormatRows GetRoadFormats()
{
    return kRows;
}
