#include "alidade/vellumlib/utils.h"
#include "vellumlib/rounding.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <numbers>

namespace {

/// Larger angles than this, in degrees, are no angles.
constexpr double kMostDegrees = 1e6;
/// Decimals of a minute or a second that are written and read; one more is beyond what a double holds of a degree.
constexpr int kMostDecimals = 12;
constexpr std::uint64_t kPicoPerSecond = 1'000'000'000'000U;

std::uint64_t PowerOfTen(int nPower)
{
    std::uint64_t nValue = 1;
    for (; nPower > 0; --nPower)
        nValue *= 10;
    return nValue;
}

bool IsDigit(char c)
{
    return c >= '0' && c <= '9';
}

// ---- writing

/// An angle rounded to a whole number of parts of a degree.
struct TParts {
    bool m_bNegative = false;
    std::uint64_t m_nDegrees = 0;
    std::uint64_t m_nParts = 0; ///< less than the parts of a degree
};

/// Rounds once, on the part of the degree alone, which loses nothing when the degrees are taken off. A value that isn't
/// an angle is 0, and what rounds to 0 has no sign.
TParts SplitDegrees(double dDegrees, std::uint64_t nPartsOfDegree)
{
    if (!(std::fabs(dDegrees) <= kMostDegrees))
        dDegrees = 0;
    const double dMagnitude = std::fabs(dDegrees);
    const double dWhole = std::floor(dMagnitude);
    TParts parts;
    parts.m_nDegrees = static_cast<std::uint64_t>(dWhole);
    parts.m_nParts = RoundedProduct(dMagnitude - dWhole, static_cast<double>(nPartsOfDegree));
    if (parts.m_nParts == nPartsOfDegree) {
        ++parts.m_nDegrees;
        parts.m_nParts = 0;
    }
    parts.m_bNegative = dDegrees < 0 && (parts.m_nDegrees != 0 || parts.m_nParts != 0);
    return parts;
}

/// Appends a number with zeros ahead of it up to the width.
void AppendPadded(CString& out, std::uint64_t nValue, int nWidth)
{
    char digits[24];
    const auto written = std::to_chars(digits, digits + sizeof digits, nValue);
    const auto nCount = static_cast<int>(written.ptr - digits);
    out.append(static_cast<std::size_t>(std::max(nWidth - nCount, 0)), '0');
    out.append(digits, written.ptr);
}

void AppendDegrees(CString& out, const TParts& parts, int nWidth)
{
    if (parts.m_bNegative)
        out += '-';
    AppendPadded(out, parts.m_nDegrees, nWidth);
}

/// Appends two digits and the decimals of a number of minutes or seconds, told in units of its last decimal.
void AppendSixtieths(CString& out, std::uint64_t nValue, int nDecimals)
{
    const std::uint64_t nUnit = PowerOfTen(nDecimals);
    AppendPadded(out, nValue / nUnit, 2);
    if (nDecimals > 0) {
        out += '.';
        AppendPadded(out, nValue % nUnit, nDecimals);
    }
}

CString ToPacked(double dDegrees, int nDecimals)
{
    // what one step of the last digit shown makes of a degree: degrees, tens of minutes, minutes, tens of seconds
    constexpr std::array<std::uint64_t, 4> kCoarseParts = {1, 6, 60, 360};
    nDecimals = nDecimals < 0 ? 9 : std::min(nDecimals, 4 + kMostDecimals);
    const int nSecondDecimals = std::max(nDecimals - 4, 0);
    const std::uint64_t nSecond = PowerOfTen(nSecondDecimals);
    const std::uint64_t nPartsOfDegree =
        nDecimals < 4 ? kCoarseParts[static_cast<std::size_t>(nDecimals)] : 3600 * nSecond;
    const TParts parts = SplitDegrees(dDegrees, nPartsOfDegree);

    CString text;
    AppendDegrees(text, parts, 1);
    if (nDecimals == 0)
        return text;
    const std::uint64_t nSeconds = parts.m_nParts * (3600 * nSecond / nPartsOfDegree);
    CString digits;
    AppendPadded(digits, nSeconds / (60 * nSecond), 2);
    AppendPadded(digits, nSeconds % (60 * nSecond), 2 + nSecondDecimals);
    return text.append(1, '.').append(digits, 0, static_cast<std::size_t>(nDecimals));
}

CString ToDegreesMinutes(double dDegrees, int nDecimals)
{
    nDecimals = nDecimals < 0 ? 7 : std::min(nDecimals, kMostDecimals);
    const TParts parts = SplitDegrees(dDegrees, 60 * PowerOfTen(nDecimals));
    CString text;
    AppendDegrees(text, parts, 1);
    text += "\u00B0";
    AppendSixtieths(text, parts.m_nParts, nDecimals);
    return text += '\'';
}

CString ToDegreesMinutesSeconds(double dDegrees, int nDecimals)
{
    nDecimals = nDecimals < 0 ? 5 : std::min(nDecimals, kMostDecimals);
    const std::uint64_t nMinute = 60 * PowerOfTen(nDecimals);
    const TParts parts = SplitDegrees(dDegrees, 60 * nMinute);
    CString text;
    AppendDegrees(text, parts, 1);
    text += "\u00B0";
    AppendPadded(text, parts.m_nParts / nMinute, 2);
    text += '\'';
    AppendSixtieths(text, parts.m_nParts % nMinute, nDecimals);
    return text += '"';
}

CString ToDigits(double dDegrees)
{
    const TParts parts = SplitDegrees(dDegrees, 3600);
    CString text;
    AppendDegrees(text, parts, 3);
    AppendPadded(text, parts.m_nParts / 60, 2);
    AppendPadded(text, parts.m_nParts % 60, 2);
    return text;
}

// ---- reading

/// An angle as the digits of a text tell it.
struct TSexagesimal {
    std::uint64_t m_nDegrees = 0;
    std::uint64_t m_nPico = 0; ///< the part of a degree in 1e-12 of a second
};

/// The double nearest to the angle, so that a text comes back from its value. The two quotients make the part of the
/// degree with twice the digits of a double, so only the last sum rounds.
double ToDegrees(const TSexagesimal& angle)
{
    constexpr double dPartsOfDegree = 3600e12;
    const auto dParts = static_cast<double>(angle.m_nPico);
    const double dQuotient = dParts / dPartsOfDegree;
    const double dRest = std::fma(-dQuotient, dPartsOfDegree, dParts) / dPartsOfDegree;
    const auto dWhole = static_cast<double>(angle.m_nDegrees);
    const double dSum = dWhole + dQuotient;
    return dSum + (dQuotient - (dSum - dWhole) + dRest);
}

/// Takes the sign off a text without blanks around it; true for a minus.
bool TakeSign(std::string_view& text)
{
    const bool bNegative = text.starts_with('-');
    if (bNegative || text.starts_with('+'))
        text.remove_prefix(1);
    return bNegative;
}

/// Takes the digits at the front of a text.
std::string_view TakeDigits(std::string_view& text)
{
    std::size_t nCount = 0;
    while (nCount < text.size() && IsDigit(text[nCount]))
        ++nCount;
    const std::string_view digits = text.substr(0, nCount);
    text.remove_prefix(nCount);
    return digits;
}

/// Value of a row of digits, 0 for an empty one. False above what an angle may have.
bool ToWhole(std::string_view digits, std::uint64_t& nValue)
{
    nValue = 0;
    for (char c : digits) {
        nValue = nValue * 10 + static_cast<std::uint64_t>(c - '0');
        if (nValue > static_cast<std::uint64_t>(kMostDegrees))
            return false;
    }
    return true;
}

/// The first `nWidth` digits as a whole number, zeros standing for those that are missing.
std::uint64_t ToPaddedWhole(std::string_view digits, std::size_t nWidth)
{
    std::uint64_t nValue = 0;
    for (std::size_t i = 0; i < nWidth; ++i)
        nValue = nValue * 10 + (i < digits.size() ? static_cast<std::uint64_t>(digits[i] - '0') : 0);
    return nValue;
}

/// Stores minutes, and seconds in 1e-12 of one. False for 60 or more of either.
bool SetParts(TSexagesimal& angle, std::uint64_t nMinutes, std::uint64_t nPicoSeconds)
{
    if (nMinutes >= 60 || nPicoSeconds >= 60 * kPicoPerSecond)
        return false;
    angle.m_nPico = nMinutes * 60 * kPicoPerSecond + nPicoSeconds;
    return true;
}

/// Works on the digits: as a double, 12.0505 is 12 degrees, 5 minutes and 4.999... seconds.
bool ReadPacked(std::string_view text, TSexagesimal& angle)
{
    const std::string_view whole = TakeDigits(text);
    std::string_view part;
    if (text.starts_with('.')) {
        text.remove_prefix(1);
        part = TakeDigits(text);
    }
    if (!text.empty() || (whole.empty() && part.empty()) || !ToWhole(whole, angle.m_nDegrees))
        return false;
    const std::string_view seconds = part.substr(std::min<std::size_t>(2, part.size()));
    return SetParts(angle, ToPaddedWhole(part, 2), ToPaddedWhole(seconds, 2 + kMostDecimals));
}

/// The last four digits are minutes and seconds; digits that are missing ahead of them are zeros.
bool ReadDigits(std::string_view text, TSexagesimal& angle)
{
    const std::string_view digits = TakeDigits(text);
    if (digits.empty() || !text.empty())
        return false;
    const std::size_t nDegreeDigits = digits.size() - std::min<std::size_t>(4, digits.size());
    std::uint64_t nLast = 0;
    return ToWhole(digits.substr(0, nDegreeDigits), angle.m_nDegrees) && ToWhole(digits.substr(nDegreeDigits), nLast) &&
           SetParts(angle, nLast / 100, nLast % 100 * kPicoPerSecond);
}

/// A part of an angle in signs: its digits, and which sign stands behind them.
struct TSignedPart {
    enum EKind { Degrees, Minutes, Seconds, None };
    std::string_view m_Whole;
    std::string_view m_Decimals;
    bool m_bHasPoint = false;
    EKind m_eKind = None;
};

/// Takes the sign of a part. Two minute signs are a sign of seconds, so that one is looked for first.
TSignedPart::EKind TakeUnitSign(std::string_view& text)
{
    struct TSign {
        std::string_view m_Text;
        TSignedPart::EKind m_eKind;
    };
    constexpr TSign kSigns[] = {
        {"\u00B0", TSignedPart::Degrees}, {"\u00BA", TSignedPart::Degrees}, {"d", TSignedPart::Degrees},
        {"D", TSignedPart::Degrees},      {"\"", TSignedPart::Seconds},     {"\u2033", TSignedPart::Seconds},
        {"\u201D", TSignedPart::Seconds}, {"''", TSignedPart::Seconds},     {"'", TSignedPart::Minutes},
        {"\u2032", TSignedPart::Minutes}, {"\u2019", TSignedPart::Minutes},
    };
    for (const TSign& sign : kSigns) {
        if (text.starts_with(sign.m_Text)) {
            text.remove_prefix(sign.m_Text.size());
            return sign.m_eKind;
        }
    }
    return TSignedPart::None;
}

/// Takes a number, its sign and the blanks around both. False if there is no such thing.
bool TakeSignedPart(std::string_view& text, TSignedPart& part)
{
    part = {};
    part.m_Whole = TakeDigits(text);
    part.m_bHasPoint = text.starts_with('.');
    if (part.m_bHasPoint) {
        text.remove_prefix(1);
        part.m_Decimals = TakeDigits(text);
    }
    text = IEUtils::TrimLeft(text);
    part.m_eKind = TakeUnitSign(text);
    text = IEUtils::TrimLeft(text);
    return part.m_eKind != TSignedPart::None && !(part.m_Whole.empty() && part.m_Decimals.empty());
}

/// Degrees, then minutes, then seconds; only the last part may have decimals.
bool ReadSigned(std::string_view text, TSexagesimal& angle)
{
    std::array<std::uint64_t, 3> values = {};
    std::uint64_t nPicoDecimals = 0; // of the last part
    std::size_t nCount = 0;
    TSignedPart part;
    for (; !text.empty(); ++nCount) {
        if (part.m_bHasPoint || !TakeSignedPart(text, part) || part.m_eKind != static_cast<int>(nCount) ||
            !ToWhole(part.m_Whole, values[nCount]))
            return false;
        nPicoDecimals = ToPaddedWhole(part.m_Decimals, kMostDecimals);
    }
    constexpr std::array<std::uint64_t, 3> kSeconds = {3600, 60, 1};
    if (nCount == 0 || values[1] >= 60 || values[2] >= 60)
        return false;
    angle.m_nDegrees = values[0];
    angle.m_nPico = (values[1] * 60 + values[2]) * kPicoPerSecond + nPicoDecimals * kSeconds[nCount - 1];
    return true;
}

/// Reads decimal degrees, or whatever else stands as a plain number.
bool ReadPlain(std::string_view text, double& dValue)
{
    return IEUtils::StringToDouble(text, dValue, false);
}

using TSexagesimalReader = bool (*)(std::string_view, TSexagesimal&);

bool ReadWith(TSexagesimalReader read, std::string_view text, double& dDegrees)
{
    text = IEUtils::Trim(text);
    const bool bNegative = TakeSign(text);
    TSexagesimal angle;
    if (!read(text, angle))
        return false;
    dDegrees = bNegative ? -ToDegrees(angle) : ToDegrees(angle);
    return true;
}

bool ReadCoords(ECOORDS_STYLE style, std::string_view text, double& dDegrees)
{
    switch (style) {
    case ECOORDS_STYLE::Packed:
        return ReadWith(ReadPacked, text, dDegrees);
    case ECOORDS_STYLE::DegreesMinutes:
    case ECOORDS_STYLE::DegreesMinutesSeconds:
        return ReadWith(ReadSigned, text, dDegrees);
    case ECOORDS_STYLE::Digits:
        return ReadWith(ReadDigits, text, dDegrees);
    case ECOORDS_STYLE::DecimalDegrees:
    case ECOORDS_STYLE::Plain:
        break;
    }
    return ReadPlain(text, dDegrees);
}

/// What half a circle is in a unit that has plain numbers.
double HalfCircle(EANGLE_UNITS units)
{
    switch (units) {
    case EANGLE_UNITS::Radians:
        return std::numbers::pi;
    case EANGLE_UNITS::Grads:
        return 200;
    case EANGLE_UNITS::Mils:
        return 3200;
    case EANGLE_UNITS::DecimalDegrees:
    case EANGLE_UNITS::DegreesMinutesSeconds:
        break;
    }
    return 180;
}

double Checked(bool bRead, double dDegrees, bool& bOk)
{
    if (bRead && std::fabs(dDegrees) <= kMostDegrees)
        return dDegrees;
    bOk = false;
    return 0;
}

} // namespace

namespace IEUtils {

CString CoordsByStyleToString(ECOORDS_STYLE style, double dDegrees, int nDecimals)
{
    switch (style) {
    case ECOORDS_STYLE::Packed:
        return ToPacked(dDegrees, nDecimals);
    case ECOORDS_STYLE::DegreesMinutes:
        return ToDegreesMinutes(dDegrees, nDecimals);
    case ECOORDS_STYLE::DegreesMinutesSeconds:
        return ToDegreesMinutesSeconds(dDegrees, nDecimals);
    case ECOORDS_STYLE::Digits:
        return ToDigits(dDegrees);
    case ECOORDS_STYLE::Plain:
        return DoubleToString(dDegrees, nDecimals < 0 ? 3 : nDecimals);
    case ECOORDS_STYLE::DecimalDegrees:
        break;
    }
    return DoubleToString(dDegrees, nDecimals);
}

double StringByStyleToCoords(ECOORDS_STYLE style, std::string_view text, bool& bOk)
{
    double dDegrees = 0;
    const bool bRead = ReadCoords(style, text, dDegrees);
    return Checked(bRead, dDegrees, bOk);
}

CString AngleByStyleToString(EANGLE_UNITS units, double dDegrees, int nDecimals)
{
    if (units == EANGLE_UNITS::DegreesMinutesSeconds)
        return ToPacked(dDegrees, nDecimals);
    const double dHalfCircle = HalfCircle(units);
    return DoubleToString(dHalfCircle == 180 ? dDegrees : dDegrees * dHalfCircle / 180, nDecimals);
}

double StringByStyleToAngle(EANGLE_UNITS units, std::string_view text, bool& bOk)
{
    if (units == EANGLE_UNITS::DegreesMinutesSeconds)
        return StringByStyleToCoords(ECOORDS_STYLE::Packed, text, bOk);
    double dValue = 0;
    const bool bRead = ReadPlain(text, dValue);
    const double dHalfCircle = HalfCircle(units);
    return Checked(bRead, dHalfCircle == 180 ? dValue : dValue * 180 / dHalfCircle, bOk);
}

double StringByStyleToAngle(EANGLE_UNITS units, std::string_view text)
{
    bool bOk = true;
    return StringByStyleToAngle(units, text, bOk);
}

} // namespace IEUtils
