#include "formats/gis/formats.h"

namespace {

constexpr auto kIn = EIEDirection::Import;
constexpr auto kOut = EIEDirection::Export;

constexpr TIECarries kFeatures = CARRIES_POINTS | CARRIES_LINES | CARRIES_POLYGONS | CARRIES_ATTRIBUTES;
constexpr TIECarries kShapes = kFeatures | CARRIES_UNDEFINED_HEIGHTS;

EIERecognition RecognizeShapes(std::string_view head)
{
    // 9994, most significant byte first
    return head.starts_with(std::string_view("\0\0\x27\x0a", 4)) ? EIERecognition::Surely : EIERecognition::No;
}

// clang-format off
constexpr TIEFormatRow kRows[] = {
    {kIn,  1, "shapefile",   "Shapefile set",         "shp", kShapes,
     "One kind of shape a set; x is east, y is north, in the job's units. Names and station kinds come from the \".idx\" file, if there "
     "is one. The file's name is the code.",
     nullptr, nullptr, RecognizeShapes},
    {kOut, 1, "shapefile",   "Shapefile set",         "shp", kShapes,
     "A set for each kind of shape, \"_POINTS\", \"_POLYLINES\", \"_POLYGONS\"; x is east, y is north, in the job's units. The names "
     "of codes are lost."},
    {kIn,  2, "mapinfo-tab", "MapInfo table",         "tab", kFeatures,
     "x is east, y is north, in the job's units; no heights. The file's name is the code."},
    {kOut, 2, "mapinfo-tab", "MapInfo table",         "tab", kFeatures,
     "x is east, y is north, in the job's units; heights and the names of codes are lost."},
    {kIn,  3, "mapinfo-mif", "MapInfo exchange text", "mif", kFeatures,
     "x is east, y is north, in the job's units; no heights. The file's name is the code."},
    {kOut, 3, "mapinfo-mif", "MapInfo exchange text", "mif", kFeatures,
     "x is east, y is north, in the job's units; heights and the names of codes are lost."},
};
// clang-format on

} // namespace

TIEFormatRows GetGisFormats()
{
    return kRows;
}
