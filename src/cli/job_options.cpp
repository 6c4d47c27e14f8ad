#include "cli/job_options.h"

#include "alidade/vellumlib/kinds.h"
#include "alidade/vellumlib/utils.h"

#include <algorithm>
#include <cctype>
#include <iconv.h>
#include <iterator>
#include <unordered_set>

namespace {

using namespace Cli;

template <class T>
struct TWord {
    std::string_view m_Word;
    T m_Value;
};

constexpr TWord<EDIST_UNITS> kUnits[] = {
    {"metres", EDIST_UNITS::Meters},        {"meters", EDIST_UNITS::Meters},
    {"us-feet", EDIST_UNITS::USSurveyFeet}, {"feet", EDIST_UNITS::InternationalFeet},
    {"us-inches", EDIST_UNITS::USInches},   {"inches", EDIST_UNITS::InternationalInches},
    {"us-miles", EDIST_UNITS::USMiles},
};

constexpr TWord<EANGLE_UNITS> kAngles[] = {
    {"radians", EANGLE_UNITS::Radians},
    {"grads", EANGLE_UNITS::Grads},
    {"gon", EANGLE_UNITS::Grads},
    {"mils", EANGLE_UNITS::Mils},
    {"degrees", EANGLE_UNITS::DecimalDegrees},
    {"dms", EANGLE_UNITS::DegreesMinutesSeconds},
};

constexpr TWord<TIEJobInfo::ECSType> kCoordinates[] = {
    {"plane", TIEJobInfo::Plane},
    {"geographic", TIEJobInfo::Geographic},
};

constexpr TWord<ECOORDS_STYLE> kStyles[] = {
    {"decimal", ECOORDS_STYLE::DecimalDegrees}, {"packed", ECOORDS_STYLE::Packed},
    {"dm", ECOORDS_STYLE::DegreesMinutes},      {"dms", ECOORDS_STYLE::DegreesMinutesSeconds},
    {"digits", ECOORDS_STYLE::Digits},          {"plain", ECOORDS_STYLE::Plain},
};

constexpr TWord<char16_t> kDelimiters[] = {
    {"comma", u','}, {"semicolon", u';'}, {"tab", u'\t'}, {"blank", u' '}, {"space", u' '}, {"pipe", u'|'},
};

/// A kind with what the library calls it; arcs go with lines there, and templates with alignments.
struct TKind {
    std::string_view m_Word;
    unsigned m_nKind;
    EIEDataType m_eType;
};

constexpr TKind kKinds[] = {
    {"points", KIND_POINTS, EIEDataType::Points},
    {"lines", KIND_LINES, EIEDataType::Lines},
    {"polygons", KIND_POLYGONS, EIEDataType::Polygons},
    {"arcs", KIND_ARCS, EIEDataType::Lines},
    {"surfaces", KIND_SURFACES, EIEDataType::Surfaces},
    {"alignments", KIND_ALIGNMENTS, EIEDataType::Alignments},
    {"templates", KIND_TEMPLATES, EIEDataType::Alignments},
    {"raw-data", KIND_RAW_DATA, EIEDataType::RawData},
    {"localization", KIND_LOCALIZATION, EIEDataType::Localization},
    {"history", KIND_HISTORY, EIEDataType::JobHistory},
};

template <class T, std::size_t N>
std::optional<T> Find(const TWord<T> (&words)[N], std::string_view word)
{
    const CString lower = IEUtils::ToLower(word);
    for (const TWord<T>& known : words) {
        if (known.m_Word == lower)
            return known.m_Value;
    }
    return std::nullopt;
}

/// The number of an enumerator between two others.
template <class T>
std::optional<T> ReadNumber(std::string_view word, T first, T last)
{
    int nValue = 0;
    if (!IEUtils::StringToInt(word, nValue) || nValue < static_cast<int>(first) || nValue > static_cast<int>(last))
        return std::nullopt;
    return static_cast<T>(nValue);
}

unsigned KindOf(const CIEObject& object)
{
    switch (GetObjectKind(object.GetType()).m_eGroup) {
    case EIEObjectsType::PolyLine:
        return KIND_LINES;
    case EIEObjectsType::Polygon:
        return KIND_POLYGONS;
    case EIEObjectsType::Arc:
        return KIND_ARCS;
    case EIEObjectsType::Composite: {
        const auto& composite = static_cast<const CIECompositeObject&>(object);
        unsigned nKinds = 0;
        for (int i = 0; const CIEObject* const pPart = composite.GetPartAt(i); ++i)
            nKinds |= KindOf(*pPart);
        return nKinds;
    }
    default:
        return KIND_POINTS;
    }
}

void SetFormat(TIESettings& settings, const std::optional<IEAsciiFields::TFields>& layout,
               const std::optional<char16_t>& delimiter, bool bHeader)
{
    if (!layout && !delimiter && !bHeader)
        return;
    TIEAsciiFormat format = settings.GetAsciiFormat();
    if (layout)
        format.m_Fields = *layout;
    if (delimiter)
        format.m_cDelimiter = *delimiter;
    if (bHeader)
        format.m_bWriteHeader = true;
    settings.m_pAsciiFormat = std::make_unique<TIEAsciiFormat>(std::move(format));
}

/// Codes and layers come with the objects, so they are always among the data asked for.
void SetTypes(TIESettings& settings, unsigned nKinds)
{
    settings.SetNoDataTypes();
    settings.SetDataType(EIEDataType::Codes, true);
    settings.SetDataType(EIEDataType::Layers, true);
    for (const TKind& kind : kKinds) {
        if (nKinds & kind.m_nKind)
            settings.SetDataType(kind.m_eType, true);
    }
}

using TUsedCodes = std::unordered_set<const CIECodeDescription*>;

TUsedCodes FindUsedCodes(const CIEData& job)
{
    TUsedCodes used;
    for (int i = 0; const CIEDataset* const pDataset = job.GetDatasetAt(i); ++i) {
        for (int j = 0; const CIEObject* const pObject = pDataset->GetObjectAt(j); ++j) {
            for (int k = 0; const CIECodeValues* const pCode = pObject->GetCode(k); ++k)
                used.insert(pCode->GetDescription());
        }
    }
    return used;
}

} // namespace

namespace Cli {

TJobOptions Merge(const TJobOptions& own, const TJobOptions& common)
{
    TJobOptions all = common;
    const auto take = [&](auto TJobOptions::*pOption) {
        if (own.*pOption)
            all.*pOption = own.*pOption;
    };
    take(&TJobOptions::m_Units);
    take(&TJobOptions::m_Angles);
    take(&TJobOptions::m_Coordinates);
    take(&TJobOptions::m_CoordsStyle);
    take(&TJobOptions::m_Layout);
    take(&TJobOptions::m_Delimiter);
    take(&TJobOptions::m_Kinds);
    take(&TJobOptions::m_nMostCopies);
    take(&TJobOptions::m_Encoding);
    take(&TJobOptions::m_bAttributeTypes);
    take(&TJobOptions::m_bQuote);
    return all;
}

void SetUp(CIEData& job, const TJobOptions& options)
{
    TIEJobInfo& info = *job.GetJobInfo();
    if (options.m_Units)
        info.SetDistUnits(*options.m_Units);
    if (options.m_Angles)
        info.SetAngleUnits(*options.m_Angles);
    if (options.m_Coordinates)
        info.SetCSType(*options.m_Coordinates);
    if (options.m_JobName)
        info.m_strJobName = *options.m_JobName;

    TIESettings settings = job.GetCopyOfSettings();
    if (options.m_CoordsStyle)
        settings.m_eCoordsStyle = *options.m_CoordsStyle;
    if (options.m_Decimals) {
        settings.m_nNorthDecimals = (*options.m_Decimals)[0];
        settings.m_nEastDecimals = (*options.m_Decimals)[1];
        settings.m_nHeightDecimals = (*options.m_Decimals)[2];
    }
    SetFormat(settings, options.m_Layout, options.m_Delimiter, options.m_bHeader);
    if (options.m_Kinds)
        SetTypes(settings, *options.m_Kinds);
    if (options.m_nMostCopies)
        settings.m_nMostBlockCopies = *options.m_nMostCopies;
    if (options.m_Encoding)
        settings.m_strCodePage = *options.m_Encoding;
    if (options.m_WriteEncoding)
        settings.m_strWriteEncoding = *options.m_WriteEncoding;
    settings.m_bAttrTypes = settings.m_bAttrTypes || options.m_bAttributeTypes;
    settings.m_bAttrQuotes = settings.m_bAttrQuotes || options.m_bQuote;
    job.SetSettings(std::move(settings));
}

void SetUpOutput(CIEData& job, const TJobOptions& options)
{
    SetUp(job, options);
    if (options.m_OutUnits)
        job.GetJobInfo()->SetDistUnits(*options.m_OutUnits);
    TIESettings settings = job.GetCopyOfSettings();
    SetFormat(settings, options.m_OutLayout, options.m_OutDelimiter, options.m_bHeader);
    job.SetSettings(std::move(settings));
}

void KeepKinds(CIEData& job, unsigned nKinds)
{
    const TUsedCodes before = FindUsedCodes(job);
    for (int i = 0; CIEDataset* const pDataset = job.GetDatasetAt(i); ++i) {
        pDataset->RemoveObjectsIf([nKinds](const CIEObject& object) { return !(KindOf(object) & nKinds); });
        if (!(nKinds & KIND_SURFACES))
            pDataset->RemoveSurfaces();
        if (!(nKinds & KIND_ALIGNMENTS))
            pDataset->RemoveAlignments();
        if (!(nKinds & KIND_HISTORY))
            pDataset->SetJobHistory(nullptr);
    }
    if (!(nKinds & KIND_TEMPLATES))
        job.AttachIERoadTemplatesDictionary(nullptr);
    // codes go with the objects that had them; those that none had stay
    const TUsedCodes after = FindUsedCodes(job);
    job.GetIEDataDictionary()->RemoveCodesIf(
        [&](const CIECodeDescription& code) { return before.contains(&code) && !after.contains(&code); });
}

std::optional<EDIST_UNITS> ReadUnits(std::string_view word)
{
    const auto number = ReadNumber(word, EDIST_UNITS::Meters, EDIST_UNITS::USMiles);
    return number ? number : Find(kUnits, word);
}

std::optional<EANGLE_UNITS> ReadAngles(std::string_view word)
{
    const auto number = ReadNumber(word, EANGLE_UNITS::Radians, EANGLE_UNITS::DegreesMinutesSeconds);
    return number ? number : Find(kAngles, word);
}

std::optional<TIEJobInfo::ECSType> ReadCoordinates(std::string_view word)
{
    return Find(kCoordinates, word);
}

std::optional<ECOORDS_STYLE> ReadCoordsStyle(std::string_view word)
{
    const auto number = ReadNumber(word, ECOORDS_STYLE::DecimalDegrees, ECOORDS_STYLE::Plain);
    return number ? number : Find(kStyles, word);
}

std::optional<std::array<int, 3>> ReadDecimals(std::string_view text)
{
    constexpr int kMostDecimals = 15; // more than a coordinate has digits
    CStringArray parts;
    IEUtils::ParseValues(text, parts, u',', {});
    std::array<int, 3> decimals{};
    if (parts.size() != 1 && parts.size() != decimals.size())
        return std::nullopt;
    for (std::size_t i = 0; i < decimals.size(); ++i) {
        const CString& part = parts.size() == 1 ? parts[0] : parts[i];
        if (!IEUtils::StringToInt(part, decimals[i]) || decimals[i] < 0 || decimals[i] > kMostDecimals)
            return std::nullopt;
    }
    return decimals;
}

std::optional<char16_t> ReadDelimiter(std::string_view word)
{
    if (const auto known = Find(kDelimiters, word))
        return known;
    const char16_t c = IEUtils::StringToChar(word);
    // a quote, a letter or a digit would tear names and numbers apart
    const bool bFit = IEUtils::Length(word) == 1 && c > u' ' && c != u'"' && c != u'.' && c != u'-' && c != u'+' &&
                      !(c < 0x80 && std::isalnum(static_cast<unsigned char>(c)));
    return bFit ? std::optional(c) : std::nullopt;
}

std::optional<unsigned> ReadKinds(std::string_view words)
{
    CStringArray parts;
    IEUtils::ParseValues(IEUtils::ToLower(words), parts, u',', {});
    unsigned nKinds = 0;
    for (const CString& part : parts) {
        const auto* const pKind = std::find_if(std::begin(kKinds), std::end(kKinds), [&part](const TKind& kind) {
            return kind.m_Word == IEUtils::Trim(part);
        });
        if (pKind == std::end(kKinds))
            return std::nullopt;
        nKinds |= pKind->m_nKind;
    }
    return nKinds == 0 ? std::nullopt : std::optional(nKinds);
}

bool IsKnownEncoding(const std::string& name)
{
    if (name.empty())
        return false; // which iconv takes for the one of the locale
    iconv_t converter = iconv_open("UTF-8", name.c_str());
    // NOLINTNEXTLINE(performance-no-int-to-ptr): the interface tells a failure so
    if (converter == reinterpret_cast<iconv_t>(-1))
        return false;
    iconv_close(converter);
    return true;
}

std::string_view WordOf(EDIST_UNITS units)
{
    const auto* const pWord =
        std::find_if(std::begin(kUnits), std::end(kUnits), [units](const auto& word) { return word.m_Value == units; });
    return pWord == std::end(kUnits) ? std::string_view("none") : pWord->m_Word;
}

std::string DescribeDelimiter(char16_t cDelimiter)
{
    switch (cDelimiter) {
    case u' ':
        return "blanks";
    case u'\t':
        return "tabs";
    case u',':
        return "commas";
    case u';':
        return "semicolons";
    default:
        return "\"" + IEUtils::CharToString(cDelimiter) + "\"";
    }
}

} // namespace Cli
