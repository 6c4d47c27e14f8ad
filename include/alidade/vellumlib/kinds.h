// Kinds of things that a job holds, told once: how they are called, which data type asks for them, which forms hold
// them. Read only; may be used from any thread.
#pragma once

#include "alidade/platform/api.h"
#include "alidade/vellumlib/types.h"

#include <cstdint>
#include <span>

/// What passes through a form, as bits.
enum EIECarries : std::uint64_t {
    CARRIES_NOTHING = 0,
    CARRIES_POINTS = 1U << 0,
    CARRIES_LINES = 1U << 1,
    CARRIES_POLYGONS = 1U << 2,
    CARRIES_ARCS = 1U << 3,
    CARRIES_SURFACES = 1U << 4,
    CARRIES_ALIGNMENTS = 1U << 5,
    CARRIES_TEMPLATES = 1U << 6,
    CARRIES_RAW_DATA = 1U << 7,
    CARRIES_CODES = 1U << 8,      ///< the names of the codes of an object
    CARRIES_ATTRIBUTES = 1U << 9, ///< values of their attributes
    CARRIES_LAYERS = 1U << 10,
    CARRIES_NOTES = 1U << 11,
    CARRIES_LOCALIZATION = 1U << 12,
    CARRIES_DICTIONARY = 1U << 13,        ///< the job's codes themselves, used or not
    CARRIES_UNDEFINED_HEIGHTS = 1U << 14, ///< a station without a height comes back without one
    CARRIES_GEOID_HEIGHTS = 1U << 15,
    CARRIES_TIME_STAMPS = 1U << 16,
    CARRIES_POINT_KINDS = 1U << 17, ///< a point-to-line point or a GPS position comes back as one
    CARRIES_DATASETS = 1U << 18,    ///< the datasets of one file come back apart, with their names
    CARRIES_SHEET_POINTS = 1U << 19,
    /// what a receiver said of a GPS position; without CARRIES_POINTS, GPS positions are the only points
    CARRIES_GPS_DATA = 1U << 20,
    CARRIES_JOB_HISTORY = 1U << 21,
    CARRIES_CODE_STRINGS = 1U << 22,
    CARRIES_CONTROL_CODES = 1U << 23,
    CARRIES_RELATIVE_POINTS = 1U << 24, ///< a point-to-line point comes back as one
    CARRIES_DRAWING = 1U << 25,         ///< how objects are drawn: colours, line types, widths
    CARRIES_COMPOSITES = 1U << 26,
};
/// Several of them.
using TIECarries = std::uint64_t;

/// A kind of objects.
struct TIEObjectKind {
    EIEObjectsType m_eType;
    EIEObjectsType m_eGroup; ///< what people count it as: every kind of point is a DesignPoint
    const char* m_pWord;     ///< "point"
    const char* m_pPlural;   ///< "points"
    EIEDataType m_eData;     ///< the data type that asks for it
    TIECarries m_nCarries;   ///< the bits each of which lets it in
};

/// All kinds of objects, points first.
ALIDADE_API std::span<const TIEObjectKind> GetObjectKinds();
/// The kind of an object's type; a type that there isn't gives that of points.
ALIDADE_API const TIEObjectKind& GetObjectKind(EIEObjectsType eType);
