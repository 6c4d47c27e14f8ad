#include "alidade/vellumlib/kinds.h"

#include <algorithm>
#include <iterator>

namespace {

using enum EIEObjectsType;

constexpr TIECarries kGPS = CARRIES_POINTS | CARRIES_GPS_DATA;

// clang-format off
constexpr TIEObjectKind kKinds[] = {
    {DesignPoint, DesignPoint, "point",               "points", EIEDataType::Points,   CARRIES_POINTS},
    {PTLPoint,    DesignPoint, "point-to-line point", "point-to-line points", EIEDataType::Points,   CARRIES_POINTS},
    {GPSPosition, DesignPoint, "GPS position",        "GPS positions", EIEDataType::Points,   kGPS},
    {SheetPoint,  DesignPoint, "sheet point",         "sheet points", EIEDataType::Points,   CARRIES_SHEET_POINTS},
    {PolyLine,    PolyLine,    "line",                "lines", EIEDataType::Lines,    CARRIES_LINES},
    {Polygon,     Polygon,     "polygon",             "polygons", EIEDataType::Polygons, CARRIES_POLYGONS},
    {Arc,         Arc,         "arc",                 "arcs", EIEDataType::Lines,    CARRIES_ARCS},
    {Composite,   Composite,   "composite object",    "composite objects", EIEDataType::Lines,    CARRIES_COMPOSITES},
};
// clang-format on

} // namespace

std::span<const TIEObjectKind> GetObjectKinds()
{
    return kKinds;
}

const TIEObjectKind& GetObjectKind(EIEObjectsType eType)
{
    const auto* const pKind =
        std::find_if(std::begin(kKinds), std::end(kKinds), [eType](const auto& kind) { return kind.m_eType == eType; });
    return pKind == std::end(kKinds) ? kKinds[0] : *pKind;
}
