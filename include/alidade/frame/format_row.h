// One row of the format table: what the library knows of a format code before it runs.
#pragma once

#include "alidade/platform/api.h"
#include "alidade/vellumlib/types.h"

#include <memory>
#include <span>
#include <string_view>

class CIEData;
class CIEExporter;
class CIEImporter;

enum class EIEDirection : int { Import, Export };

/// What passes through a form, as bits.
enum EIECarries : unsigned {
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

/// How surely a file's first bytes are of a form.
enum class EIERecognition : int {
    No,      ///< they can't be
    Perhaps, ///< nothing speaks against it
    Surely   ///< they bear its mark
};

struct TIEFormatRow {
    using TMakeImporter = std::unique_ptr<CIEImporter> (*)(CIEData* pData, const CString& strFileName, int nCode);
    using TMakeExporter = std::unique_ptr<CIEExporter> (*)(CIEData* pData, const CString& strFileName, int nCode);
    /// `head` is the start of the file as it stands on the disk, at most 64 KB.
    using TRecognize = EIERecognition (*)(std::string_view head);

    EIEDirection m_eDirection;
    int m_nCode;          ///< import code 0 to 50 or export code 0 to 66
    const char* m_pKey;   ///< short stable word for people; both directions of one form share it; unique in a direction
    const char* m_pTitle; ///< what it is, for a list
    const char*
        m_pExtensions;   ///< "txt csv": lower case, without points; the first is the one that is written; "" for none
    unsigned m_nCarries; ///< EIECarries
    const char* m_pRemark = ""; ///< axes, units, decimals and losses in a sentence or two, for the documents
    TMakeImporter m_pMakeImporter = nullptr; ///< null while the format isn't built, and on export rows
    TMakeExporter m_pMakeExporter = nullptr; ///< null while the format isn't built, and on import rows
    TRecognize m_pRecognize = nullptr;       ///< import: null where content tells nothing

    [[nodiscard]] bool IsBuilt() const { return m_pMakeImporter || m_pMakeExporter; }
};

using TIEFormatRows = std::span<const TIEFormatRow>;
