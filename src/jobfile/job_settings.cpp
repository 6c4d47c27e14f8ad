// A job's settings.
#include "jobfile/job_fields.h"
#include "jobfile/job_parts.h"

#include "alidade/vellumlib/utils.h"

#include <algorithm>
#include <limits>

namespace {

using JobFields::Value;
using JobFields::Word;

constexpr TIEJobWord kCoordsStyles[] = {
    {"decimal-degrees", static_cast<int>(ECOORDS_STYLE::DecimalDegrees)},
    {"packed", static_cast<int>(ECOORDS_STYLE::Packed)},
    {"degrees-minutes", static_cast<int>(ECOORDS_STYLE::DegreesMinutes)},
    {"degrees-minutes-seconds", static_cast<int>(ECOORDS_STYLE::DegreesMinutesSeconds)},
    {"digits", static_cast<int>(ECOORDS_STYLE::Digits)},
    {"plain", static_cast<int>(ECOORDS_STYLE::Plain)},
};

constexpr TIEJobWord kDataTypes[] = {
    {"points", static_cast<int>(EIEDataType::Points)},
    {"lines", static_cast<int>(EIEDataType::Lines)},
    {"polygons", static_cast<int>(EIEDataType::Polygons)},
    {"surfaces", static_cast<int>(EIEDataType::Surfaces)},
    {"alignments", static_cast<int>(EIEDataType::Alignments)},
    {"raw-data", static_cast<int>(EIEDataType::RawData)},
    {"codes", static_cast<int>(EIEDataType::Codes)},
    {"layers", static_cast<int>(EIEDataType::Layers)},
    {"job-history", static_cast<int>(EIEDataType::JobHistory)},
    {"localization", static_cast<int>(EIEDataType::Localization)},
};
constexpr int kDataTypeBits = 32;
constexpr int kMostInt = std::numeric_limits<int>::max();

void WriteDataTypes(CIEJobWriting& out, const char* pKey, const TIESettings& settings)
{
    if (settings.HasAllDataTypes())
        return;
    out.m_Text.Key(pKey);
    out.m_Text.BeginArray();
    for (int i = 0; i < kDataTypeBits; ++i) {
        if (settings.HasDataType(static_cast<EIEDataType>(i)))
            out.WriteWord(kDataTypes, std::size(kDataTypes), i);
    }
    out.m_Text.EndArray();
}

bool ReadDataTypes(CIEJobReading& in, const CIEJsonValue& value, TIESettings& settings)
{
    settings.SetNoDataTypes();
    return JobFields::ReadList(in, value, [&](const CIEJsonValue& element) {
        int nType = 0;
        if (!in.ReadWord(element, kDataTypes, std::size(kDataTypes), nType))
            return false;
        if (nType < 0 || nType >= kDataTypeBits)
            return in.Fail(element, "Kinds of data have numbers from 0 to 31.");
        settings.SetDataType(static_cast<EIEDataType>(nType), true);
        return true;
    });
}

void WriteFieldNames(CIEJobWriting& out, const char* pKey, const TIEAsciiFormat& format)
{
    IEAsciiFields::TFields fields = format.m_Fields;
    std::erase_if(fields, [](IEAsciiFields::EType eType) { return eType < 0 || eType > IEAsciiFields::LastField; });
    if (fields.size() != format.m_Fields.size())
        out.NoteMended(pKey, "Fields that there aren't are left out.");
    out.m_Text.Key(pKey);
    out.m_Text.Text(IEAsciiFields::FieldsToString(fields));
}

bool ReadFieldNames(CIEJobReading& in, const CIEJsonValue& value, TIEAsciiFormat& format)
{
    CString text;
    if (!in.Read(value, text))
        return false;
    format.m_Fields.clear();
    return text.empty() || IEAsciiFields::StringToFields(text, format.m_Fields) ||
           in.Fail(value, "Words of fields are wanted here, as name,north,east,height,codes.");
}

bool IsDelimiter(char16_t c)
{
    const bool bControl = c < u' ' && c != u'\t';
    const bool bOfNumbers = (c >= u'0' && c <= u'9') || c == u'.' || c == u'-' || c == u'+';
    const bool bHalf = c >= 0xD800 && c <= 0xDFFF;
    return !bControl && !bOfNumbers && !bHalf;
}

void WriteDelimiter(CIEJobWriting& out, const char* pKey, const TIEAsciiFormat& format)
{
    if (format.m_cDelimiter == TIEAsciiFormat().m_cDelimiter)
        return;
    if (!IsDelimiter(format.m_cDelimiter))
        return out.NoteMended(pKey, "This character can't stand between fields; the comma does.");
    out.m_Text.Key(pKey);
    out.m_Text.Text(IEUtils::CharToString(format.m_cDelimiter));
}

bool ReadDelimiter(CIEJobReading& in, const CIEJsonValue& value, TIEAsciiFormat& format)
{
    CString text;
    if (!in.Read(value, text))
        return false;
    if (IEUtils::CharToString(IEUtils::StringToChar(text)) != text)
        return in.Fail(value, "One character is wanted here.");
    const char16_t c = IEUtils::StringToChar(text);
    if (!IsDelimiter(c))
        return in.Fail(value, "A character that no number has is wanted here, and no line end.");
    format.m_cDelimiter = c;
    return true;
}

constexpr TIEJobField<TIEAsciiFormat> kAsciiFields[] = {
    {"fields", WriteFieldNames, ReadFieldNames},
    {"delimiter", WriteDelimiter, ReadDelimiter},
    Value<TIEAsciiFormat, &TIEAsciiFormat::m_bWriteHeader>("header"),
};

void WriteAsciiFormat(CIEJobWriting& out, const char* pKey, const TIESettings& settings)
{
    if (!settings.m_pAsciiFormat)
        return;
    out.m_Text.Key(pKey);
    out.m_Text.BeginObject();
    JobFields::Write(out, *settings.m_pAsciiFormat, kAsciiFields);
    out.m_Text.EndObject();
}

bool ReadAsciiFormat(CIEJobReading& in, const CIEJsonValue& value, TIESettings& settings)
{
    settings.m_pAsciiFormat = std::make_unique<TIEAsciiFormat>();
    return JobFields::ReadObject(in, value, *settings.m_pAsciiFormat, kAsciiFields);
}

CString BordersReason(int nLeast, int nMost)
{
    return nMost == kMostInt
               ? "A number of at least " + std::to_string(nLeast) + " is wanted here."
               : "A number from " + std::to_string(nLeast) + " to " + std::to_string(nMost) + " is wanted here.";
}

/// A whole number that has borders. One beyond them is written as the nearer border.
template <auto pMember, int nLeast, int nMost>
constexpr TIEJobField<TIESettings> Bounded(const char* pKey)
{
    return {pKey,
            [](CIEJobWriting& out, const char* pName, const TIESettings& settings) {
                TIESettings bounded = settings;
                const int nValue = settings.*pMember;
                if (nValue < nLeast || nValue > nMost) {
                    bounded.*pMember = std::clamp(nValue, nLeast, nMost);
                    out.NoteMended(pName, BordersReason(nLeast, nMost));
                }
                Value<TIESettings, pMember>("").m_pWrite(out, pName, bounded);
            },
            [](CIEJobReading& in, const CIEJsonValue& value, TIESettings& settings) {
                int nValue = 0;
                if (!in.Read(value, nValue))
                    return false;
                if (nValue < nLeast || nValue > nMost)
                    return in.Fail(value, BordersReason(nLeast, nMost));
                settings.*pMember = static_cast<std::decay_t<decltype(settings.*pMember)>>(nValue);
                return true;
            }};
}

/// Decimals of coordinates; -1 leaves their number to the form. A coordinate has fewer digits than the most.
template <int TIESettings::*pMember>
constexpr TIEJobField<TIESettings> Decimals(const char* pKey)
{
    return Bounded<pMember, -1, 15>(pKey);
}

template <CString TIESettings::*pMember>
bool ReadEncoding(CIEJobReading& in, const CIEJsonValue& value, TIESettings& settings)
{
    CString name;
    if (!in.Read(value, name))
        return false;
    if (!CIETextWriter::IsEncoding(name))
        return in.Fail(value, "The name of an encoding that the system knows is wanted here, as UTF-8.");
    settings.*pMember = name;
    return true;
}

template <CString TIESettings::*pMember>
constexpr TIEJobField<TIESettings> Encoding(const char* pKey)
{
    return {pKey,
            [](CIEJobWriting& out, const char* pName, const TIESettings& settings) {
                if (CIETextWriter::IsEncoding(settings.*pMember))
                    Value<TIESettings, pMember>("").m_pWrite(out, pName, settings);
                else
                    out.NoteMended(pName, "The system knows no encoding of this name; the default stands for it.");
            },
            ReadEncoding<pMember>};
}

constexpr TIEJobField<TIESettings> kSettingsFields[] = {
    Value<TIESettings, &TIESettings::m_bSingleFile>("singleFile"),
    Word<TIESettings, kCoordsStyles, &TIESettings::m_eCoordsStyle>("coordsStyle"),
    Decimals<&TIESettings::m_nNorthDecimals>("northDecimals"),
    Decimals<&TIESettings::m_nEastDecimals>("eastDecimals"),
    Decimals<&TIESettings::m_nHeightDecimals>("heightDecimals"),
    Value<TIESettings, &TIESettings::m_bAttrTypes>("attributeTypes"),
    Value<TIESettings, &TIESettings::m_bAttrQuotes>("attributeQuotes"),
    {"asciiFormat", WriteAsciiFormat, ReadAsciiFormat},
    Bounded<&TIESettings::m_cHistoryOptions, 0, std::numeric_limits<std::uint8_t>::max()>("historyOptions"),
    {"dataTypes", WriteDataTypes, ReadDataTypes},
    Bounded<&TIESettings::m_nMostBlockCopies, 0, kMostInt>("mostBlockCopies"),
    Encoding<&TIESettings::m_strCodePage>("codePage"),
    Encoding<&TIESettings::m_strWriteEncoding>("writeEncoding"),
};

} // namespace

void JobParts::WriteSettings(CIEJobWriting& out, const char* pKey)
{
    out.m_Text.BeginOptionalObject(pKey, CIEJsonText::Lines);
    JobFields::Write(out, out.GetJob().GetSettings(), kSettingsFields);
    out.m_Text.EndObject();
}

bool JobParts::ReadSettings(CIEJobReading& in, const CIEJsonValue& value)
{
    TIESettings settings = in.GetJob().GetCopyOfSettings();
    if (!JobFields::ReadObject(in, value, settings, kSettingsFields))
        return false;
    in.GetJob().SetSettings(std::move(settings));
    return true;
}
