// The words that the whole library shares: text, units, kinds of objects, result codes.
// Plain values, which any thread may use.
#pragma once

#include <memory>
#include <string>
#include <vector>

/// Text is UTF-8.
using CString = std::string;
using CStringArray = std::vector<CString>;

/// Units of distance. The job itself is in metres.
enum class EDIST_UNITS : int {
    None = 0, ///< no conversion; stands for latitude and longitude where units are asked for
    Meters = 1,
    USSurveyFeet = 2,        ///< 1200/3937 m
    InternationalFeet = 3,   ///< 0.3048 m
    USInches = 4,            ///< a twelfth of the US survey foot
    InternationalInches = 5, ///< 0.0254 m
    USMiles = 6,             ///< 5280 US survey feet
};

/// Units of angle. The job itself is in decimal degrees.
enum class EANGLE_UNITS : int {
    Radians = 0,
    Grads = 1, ///< 400 to the circle
    Mils = 2,  ///< 6400 to the circle
    DecimalDegrees = 3,
    DegreesMinutesSeconds = 4, ///< packed, ddd.mmssfff
};

/// How latitude and longitude stand in a text; the forms are told at IEUtils::CoordsByStyleToString.
enum class ECOORDS_STYLE : int {
    DecimalDegrees = 0,
    Packed = 1,
    DegreesMinutes = 2,
    DegreesMinutesSeconds = 3,
    Digits = 4,
    Plain = 5,
};

/// Kinds of data that a host can ask a run for.
enum class EIEDataType : int {
    Points = 0,
    Lines = 1,
    Polygons = 2,
    Surfaces = 3,
    Alignments = 5,
    Codes = 6,
    Layers = 7,
    JobHistory = 8,
    Localization = 9,
    RawData = 13,
};

/// Kinds of objects in a dataset.
enum class EIEObjectsType : int {
    DesignPoint = 0,
    PTLPoint = 1,
    GPSPosition = 2,
    SheetPoint = 3,
    PolyLine = 4,
    Polygon = 5,
    Arc = 6,
    Composite = 10,
};

/// Result of a run, an importer or an exporter, and the lParam of the finishing message. Negative codes are failures,
/// positive ones are outcomes with a file or job result.
enum EIEResult : int {
    IE_OK = 13,                  ///< finished
    IE_VALUE_TOO_WIDE = 9,       ///< export: a coordinate didn't fit its field; the file is still written
    IE_PARTIAL = 5,              ///< file: some lines were refused, others came in; line: this line gave no object
    IE_BAD_DATASET_NAME = 3,     ///< export: a dataset's name is no valid file name, that dataset was skipped
    IE_NOTHING_DONE = -2,        ///< no usable record and no bad line, or no dataset gave a positive result
    IE_NOTHING_TO_EXPORT = -4,   ///< an exporter that needs objects found none
    IE_BAD_CONTENT = -9,         ///< the file is not of the format
    IE_ENGINE_NOT_READY = -10,   ///< DWG import: the drawing engine could not be set up
    IE_ENGINE_OPEN_FAILED = -11, ///< DWG import: the engine refused the file
    IE_CANNOT_OPEN_FILE = -12,   ///< the file could not be opened or created
    IE_NOT_SUPPORTED = -13,      ///< no class for the code, or nothing to read this file with
    IE_STOPPED = -16,            ///< CIEData::m_bStopProcess was seen set
    IE_OUT_OF_MEMORY = -17,      ///< an importer's memory check failed
    IE_NO_JOB = -19,             ///< no job, or a parser or job object that a run needs is absent
};
