#include "formats/reports/formats.h"

namespace {

constexpr auto kOut = EIEDirection::Export;

constexpr TIECarries kSheet = CARRIES_POINTS | CARRIES_CODES | CARRIES_ATTRIBUTES;

// clang-format off
constexpr TIEFormatRow kRows[] = {
    {kOut, 14, "data-sheet-cut-fill",         "Data sheet: stakeout with cut and fill",       "txt", kSheet,
     "Each design point with its stakeout measurements and their differences; 3 decimals in the job's units."},
    {kOut, 16, "data-sheet-check",            "Data sheet: check measurements",               "txt", kSheet,
     "Each observed point with its check measurements and their differences; 3 decimals in the job's units."},
    {kOut, 17, "data-sheet-ptl",              "Data sheet: points on reference lines",        "txt", kSheet,
     "A table of north, east, height and codes; 3 decimals in the job's units."},
    {kOut, 34, "chainage",                    "Chainage report",                              "txt", CARRIES_NOTHING,
     "Chainage, offset, coordinates and cut of points along a road."},
    {kOut, 43, "job-history",                 "Job history report",                           "txt", CARRIES_NOTHING,
     "Resections, stakeouts and surveyed points with the units of their time."},
    {kOut, 62, "german-coordinates-measured", "German list of measured satellite positions",  "txt", CARRIES_RAW_DATA | CARRIES_CODES,
     "Latitude, longitude, accuracy, satellites and status, three lines a GPS record."},
    {kOut, 64, "german-coordinates-plane",    "German list of plane coordinates",             "txt", CARRIES_RAW_DATA | CARRIES_CODES | CARRIES_NOTES,
     "East before north, 3 decimals in the job's units, a line a GPS record; the means of points measured more than once stand last."},
};
// clang-format on

} // namespace

TIEFormatRows GetReportFormats()
{
    return kRows;
}
