// What the command line says of a job: units, layout, kinds of objects.
#pragma once

#include "alidade/vellumlib/data.h"

#include <array>
#include <optional>
#include <string>
#include <string_view>

namespace Cli {

/// Kinds of things that --types names, as bits.
enum EKinds : unsigned {
    KIND_POINTS = 1U << 0,
    KIND_LINES = 1U << 1,
    KIND_POLYGONS = 1U << 2,
    KIND_ARCS = 1U << 3,
    KIND_SURFACES = 1U << 4,
    KIND_ALIGNMENTS = 1U << 5,
    KIND_TEMPLATES = 1U << 6,
    KIND_RAW_DATA = 1U << 7,
    KIND_LOCALIZATION = 1U << 8,
    KIND_HISTORY = 1U << 9,
};

/// What isn't told stays as the job has it.
struct TJobOptions {
    std::optional<EDIST_UNITS> m_Units;
    std::optional<EDIST_UNITS> m_OutUnits;
    std::optional<EANGLE_UNITS> m_Angles;
    std::optional<TIEJobInfo::ECSType> m_Coordinates;
    std::optional<ECOORDS_STYLE> m_CoordsStyle;
    std::optional<std::array<int, 3>> m_Decimals; ///< north, east, height
    std::optional<IEAsciiFields::TFields> m_Layout;
    std::optional<IEAsciiFields::TFields> m_OutLayout;
    std::optional<char16_t> m_Delimiter;
    std::optional<char16_t> m_OutDelimiter;
    std::optional<unsigned> m_Kinds;  ///< EKinds
    std::optional<int> m_nMostCopies; ///< of objects, by block references
    std::optional<std::string> m_JobName;
    std::optional<std::string> m_Encoding;
    std::optional<std::string> m_WriteEncoding;
    bool m_bHeader = false;
    bool m_bAttributeTypes = false;
    bool m_bQuote = false;
};

/// What `own` tells, and where it tells nothing, what `common` does.
TJobOptions Merge(const TJobOptions& own, const TJobOptions& common);

/// Sets up a job for an import.
void SetUp(CIEData& job, const TJobOptions& options);
/// Sets up what an export writes: the options again, because a file may have brought others along, and those that are
/// of the output alone.
void SetUpOutput(CIEData& job, const TJobOptions& options);
/// Takes out of a job what isn't of these kinds (EKinds).
void KeepKinds(CIEData& job, unsigned nKinds);

// ---- the words of the options. Nothing is given for a word that isn't known.

std::optional<EDIST_UNITS> ReadUnits(std::string_view word);
std::optional<EANGLE_UNITS> ReadAngles(std::string_view word);
std::optional<TIEJobInfo::ECSType> ReadCoordinates(std::string_view word);
std::optional<ECOORDS_STYLE> ReadCoordsStyle(std::string_view word);
std::optional<std::array<int, 3>> ReadDecimals(std::string_view text);
std::optional<char16_t> ReadDelimiter(std::string_view word);
std::optional<unsigned> ReadKinds(std::string_view words);
/// Whether the system can turn text of this encoding into UTF-8.
bool IsKnownEncoding(const std::string& name);

std::string_view WordOf(EDIST_UNITS units);
/// How a delimiter is named in messages: "a comma", "blanks" ...
std::string DescribeDelimiter(char16_t cDelimiter);

} // namespace Cli
