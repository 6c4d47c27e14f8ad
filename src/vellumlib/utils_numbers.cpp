#include "alidade/vellumlib/utils.h"
#include "vellumlib/rounding.h"

#include <algorithm>
#include <charconv>
#include <cstring>

namespace {

/// Powers of ten that a double holds exactly.
constexpr double kPowersOfTen[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11,
                                   1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
constexpr std::ptrdiff_t kMostExactPower = 22;
constexpr int kMostDecimals = 40;

bool IsDigit(char c)
{
    return c >= '0' && c <= '9';
}

/// A text without its blanks and its plus sign. An empty one stands for what can't be a number: "+-1" must not become
/// "-1".
std::string_view StripNumber(std::string_view text)
{
    text = IEUtils::Trim(text);
    if (!text.starts_with('+'))
        return text;
    text.remove_prefix(1);
    return text.starts_with('-') ? std::string_view() : text;
}

/// Reads the numbers that files are full of: at most 19 digits with a point among them. Digits that a double holds
/// exactly, divided by an exact power of ten, are rounded only once, so the value is the right one. False: look closer.
bool ReadPlainNumber(std::string_view text, double& dValue)
{
    const char* p = text.data();
    const char* const pEnd = p + text.size();
    const bool bNegative = p != pEnd && *p == '-';
    p += bNegative;

    std::uint64_t nMantissa = 0;
    const char* const pFirst = p;
    for (; p != pEnd && IsDigit(*p); ++p)
        nMantissa = nMantissa * 10 + static_cast<std::uint64_t>(*p - '0');
    std::ptrdiff_t nDigits = p - pFirst;
    std::ptrdiff_t nDecimals = 0;
    if (p != pEnd && *p == '.') {
        const char* const pPoint = ++p;
        for (; p != pEnd && IsDigit(*p); ++p)
            nMantissa = nMantissa * 10 + static_cast<std::uint64_t>(*p - '0');
        nDecimals = p - pPoint;
        nDigits += nDecimals;
    }
    constexpr std::uint64_t kMostExactInteger = std::uint64_t{1} << 53U;
    if (p != pEnd || nDigits == 0 || nDigits > 19 || nMantissa > kMostExactInteger || nDecimals > kMostExactPower)
        return false;
    const double dMagnitude = static_cast<double>(nMantissa) / kPowersOfTen[nDecimals];
    dValue = bNegative ? -dMagnitude : dMagnitude;
    return true;
}

/// Which end of the range a number lies beyond that no double can hold: true for the large one. from_chars names both
/// alike.
bool IsHuge(std::string_view number)
{
    const std::size_t nMantissaEnd = std::min(number.find_first_of("eE"), number.size());
    const std::string_view mantissa = number.substr(0, nMantissaEnd);
    std::int64_t nExponent = 0;
    if (nMantissaEnd < number.size()) {
        std::string_view exponent = number.substr(nMantissaEnd + 1);
        if (exponent.starts_with('+'))
            exponent.remove_prefix(1);
        const auto read = std::from_chars(exponent.data(), exponent.data() + exponent.size(), nExponent);
        if (read.ec != std::errc())
            return !exponent.starts_with('-');
    }
    const std::size_t nPoint = std::min(mantissa.find('.'), mantissa.size());
    const std::size_t nFirst = mantissa.find_first_of("123456789");
    if (nFirst == std::string_view::npos)
        return false;
    // the exponent may be all that 64 bits hold, the distance is at most the length of a text
    const auto nDistance = static_cast<std::int64_t>(nPoint) - static_cast<std::int64_t>(nFirst);
    return nExponent > -nDistance;
}

/// Reads whatever ReadPlainNumber leaves.
bool ReadAnyNumber(std::string_view text, double& dValue)
{
    // from_chars would take "nan" and "inf"
    const std::string_view digits = text.substr(text.starts_with('-') ? 1 : 0);
    if (digits.empty() || (!IsDigit(digits[0]) && digits[0] != '.'))
        return false;
    const char* const pEnd = text.data() + text.size();
    double dRead = 0;
    const auto read = std::from_chars(text.data(), pEnd, dRead, std::chars_format::general);
    if (read.ptr != pEnd)
        return false;
    if (read.ec == std::errc::result_out_of_range) {
        dValue = 0;
        return !IsHuge(text);
    }
    if (read.ec != std::errc() || !std::isfinite(dRead))
        return false;
    dValue = dRead;
    return true;
}

/// Appends a value whose digits, all decimals among them, make a whole number that a double holds exactly. False: too
/// large.
bool AppendPlainNumber(CString& out, double dValue, int nDecimals)
{
    constexpr int kMostPlainDecimals = 15;
    const double dMagnitude = std::fabs(dValue);
    if (nDecimals > kMostPlainDecimals || !(dMagnitude * kPowersOfTen[nDecimals] < kRoundedProductLimit))
        return false;
    const std::uint64_t nDigits = RoundedProduct(dMagnitude, kPowersOfTen[nDecimals]);

    constexpr std::ptrdiff_t kMostDigits = 16;
    char text[64];
    char* const pBegin = text + 1 + kMostPlainDecimals; // room for a sign and zeros ahead of the digits
    char* pEnd = std::to_chars(pBegin, pBegin + kMostDigits, nDigits).ptr;
    char* pFirst = pBegin;
    while (pEnd - pFirst <= nDecimals)
        *--pFirst = '0';
    if (dValue < 0 && nDigits != 0)
        *--pFirst = '-';
    if (nDecimals > 0) {
        // a move of a fixed size is faster than one of just the decimals
        char* const pPoint = pEnd - nDecimals;
        std::memmove(pPoint + 1, pPoint, kMostPlainDecimals);
        *pPoint = '.';
        ++pEnd;
    }
    out.append(pFirst, static_cast<std::size_t>(pEnd - pFirst));
    return true;
}

/// A unit of length as a fraction of the metre, in whole numbers: a value that makes whole metres gives them exactly.
struct TFraction {
    double m_dNumerator;
    double m_dDenominator;
};

TFraction MetersOf(EDIST_UNITS units)
{
    switch (units) {
    case EDIST_UNITS::USSurveyFeet:
        return {1200, 3937};
    case EDIST_UNITS::InternationalFeet:
        return {381, 1250};
    case EDIST_UNITS::USInches:
        return {100, 3937};
    case EDIST_UNITS::InternationalInches:
        return {127, 5000};
    case EDIST_UNITS::USMiles:
        return {5280.0 * 1200, 3937};
    case EDIST_UNITS::None:
    case EDIST_UNITS::Meters:
        break;
    }
    return {1, 1};
}

} // namespace

namespace IEUtils {

bool StringToDouble(std::string_view text, double& dValue, bool bEmptyIsZero)
{
    if (ReadPlainNumber(text, dValue))
        return true;
    const std::string_view number = StripNumber(text);
    if (ReadPlainNumber(number, dValue) || ReadAnyNumber(number, dValue))
        return true;
    dValue = 0;
    return bEmptyIsZero && Trim(text).empty();
}

double StringToDouble(std::string_view text, bool bEmptyIsZero)
{
    double dValue = 0;
    StringToDouble(text, dValue, bEmptyIsZero);
    return dValue;
}

bool StringToInt(std::string_view text, int& nValue)
{
    const std::string_view number = StripNumber(text);
    const char* const pEnd = number.data() + number.size();
    int nRead = 0;
    const auto read = std::from_chars(number.data(), pEnd, nRead);
    const bool bTaken = read.ec == std::errc() && read.ptr == pEnd;
    nValue = bTaken ? nRead : 0;
    return bTaken;
}

bool IsValidInteger(std::string_view text)
{
    int nValue = 0;
    return StringToInt(text, nValue);
}

bool IsInBorders(double dValue, double dLeast, double dMost)
{
    return dValue >= dLeast && dValue <= dMost;
}

int StringToInt(std::string_view text)
{
    int nValue = 0;
    StringToInt(text, nValue);
    return nValue;
}

CString DoubleToString(double dValue, int nDecimals)
{
    CString text;
    AppendDouble(text, dValue, nDecimals);
    return text;
}

void AppendDouble(CString& out, double dValue, int nDecimals)
{
    if (!std::isfinite(dValue))
        dValue = 0;
    nDecimals = std::min(nDecimals, kMostDecimals);
    if (nDecimals >= 0 && AppendPlainNumber(out, dValue, nDecimals))
        return;

    // at most 309 digits ahead of kMostDecimals; the shortest text of a tiny value has some 325 behind the point
    char text[400];
    char* const pEnd = text + sizeof text;
    const auto written = nDecimals >= 0 ? std::to_chars(text, pEnd, dValue, std::chars_format::fixed, nDecimals)
                                        : std::to_chars(text, pEnd, dValue, std::chars_format::fixed);
    std::string_view number(text, static_cast<std::size_t>(written.ptr - text));
    if (number.starts_with('-') && number.find_first_of("123456789") == std::string_view::npos)
        number.remove_prefix(1);
    out.append(number);
}

CString IntToString(std::int64_t nValue)
{
    char text[24];
    const auto written = std::to_chars(text, text + sizeof text, nValue);
    return CString(text, written.ptr);
}

double CheckZeroVal(double dValue)
{
    constexpr double kNothing = 5e-10; // half of the finest decimal that a form writes
    return dValue < kNothing && dValue > -kNothing ? 0.0 : dValue;
}

double ToMetersFactor(double dValue, EDIST_UNITS units)
{
    const TFraction meters = MetersOf(units);
    return dValue * meters.m_dNumerator / meters.m_dDenominator;
}

double FromMetersFactor(double dValue, EDIST_UNITS units)
{
    const TFraction meters = MetersOf(units);
    return dValue * meters.m_dDenominator / meters.m_dNumerator;
}

double StringByStyleToDist(EDIST_UNITS units, std::string_view text, bool& bOk)
{
    double dValue = 0;
    if (StringToDouble(text, dValue, false)) {
        dValue = ToMetersFactor(dValue, units);
        if (std::isfinite(dValue))
            return dValue;
    }
    bOk = false;
    return 0;
}

double StringByStyleToDist(EDIST_UNITS units, std::string_view text)
{
    bool bOk = true;
    return StringByStyleToDist(units, text, bOk);
}

CString DistByStyleToString(EDIST_UNITS units, double dMeters, int nDecimals)
{
    return DoubleToString(FromMetersFactor(dMeters, units), nDecimals);
}

} // namespace IEUtils
