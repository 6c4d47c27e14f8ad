// Angles as text in every style: what is written reads back within half of the last digit and gives the same text
// again.

#include "support.h"

#include "alidade/vellumlib/utils.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <numbers>

namespace {

constexpr double kMostDegrees = 1e6;
constexpr double kNotTold = 0; ///< stands for a text that is exact

/// Degrees that one step of the last digit makes.
double StepOf(ECOORDS_STYLE style, int nDecimals)
{
    switch (style) {
    case ECOORDS_STYLE::DecimalDegrees:
        return nDecimals < 0 ? kNotTold : std::pow(10, -nDecimals);
    case ECOORDS_STYLE::Packed: {
        constexpr double kCoarse[] = {1, 1.0 / 6, 1.0 / 60, 1.0 / 360};
        nDecimals = nDecimals < 0 ? 9 : std::min(nDecimals, 16);
        return nDecimals < 4 ? kCoarse[nDecimals] : std::pow(10, 4 - nDecimals) / 3600;
    }
    case ECOORDS_STYLE::DegreesMinutes:
        return std::pow(10, nDecimals < 0 ? -7 : -std::min(nDecimals, 12)) / 60;
    case ECOORDS_STYLE::DegreesMinutesSeconds:
        return std::pow(10, nDecimals < 0 ? -5 : -std::min(nDecimals, 12)) / 3600;
    case ECOORDS_STYLE::Digits:
        return 1.0 / 3600;
    case ECOORDS_STYLE::Plain:
        return std::pow(10, nDecimals < 0 ? -3 : -nDecimals);
    }
    return 0;
}

/// Error that the digits of a double allow.
double Slack(double dDegrees)
{
    return std::fabs(dDegrees) * 0x1p-50 + 1e-300;
}

void CheckCoordinate(ECOORDS_STYLE style, double dDegrees, int nDecimals)
{
    const CString text = IEUtils::CoordsByStyleToString(style, dDegrees, nDecimals);
    bool bOk = true;
    const double dRead = IEUtils::StringByStyleToCoords(style, text, bOk);
    Require(bOk, "a written coordinate can be read");
    Require(std::fabs(dRead - dDegrees) <= StepOf(style, nDecimals) * 0.5000001 + Slack(dDegrees),
            "a written coordinate is within half of its last digit");
    RequireEqual(IEUtils::CoordsByStyleToString(style, dRead, nDecimals), text,
                 "a coordinate is written the same again");
}

void CheckAngle(EANGLE_UNITS units, double dDegrees, int nDecimals)
{
    constexpr double kHalfCircles[] = {std::numbers::pi, 200, 3200, 180};
    if (units == EANGLE_UNITS::DegreesMinutesSeconds) {
        RequireEqual(IEUtils::AngleByStyleToString(units, dDegrees, nDecimals),
                     IEUtils::CoordsByStyleToString(ECOORDS_STYLE::Packed, dDegrees, nDecimals), "packed is packed");
        return;
    }
    const double dDegreesOfUnit = 180 / kHalfCircles[static_cast<int>(units)];
    const double dStep = nDecimals < 0 ? 0 : std::pow(10, -nDecimals) * dDegreesOfUnit;
    const CString text = IEUtils::AngleByStyleToString(units, dDegrees, nDecimals);
    bool bOk = true;
    const double dRead = IEUtils::StringByStyleToAngle(units, text, bOk);
    if (std::fabs(dDegrees) < kMostDegrees - 100) // nearer to the end, the rounding may step over it
        Require(bOk, "a written angle can be read");
    if (!bOk)
        return;
    Require(std::fabs(dRead - dDegrees) <= dStep * 0.5000001 + 4 * Slack(dDegrees),
            "a written angle is within half of its last digit");
    if (dStep > 16 * Slack(dDegrees)) // below that, the conversion to degrees and back shows
        RequireEqual(IEUtils::AngleByStyleToString(units, dRead, nDecimals), text,
                     "an angle is written the same again");
}

void CheckValue(unsigned nStyle, double dDegrees, int nDecimals)
{
    if (nStyle < 6)
        CheckCoordinate(static_cast<ECOORDS_STYLE>(nStyle), dDegrees, nDecimals);
    else
        CheckAngle(static_cast<EANGLE_UNITS>(nStyle - 6), dDegrees, nDecimals);
}

void CheckText(unsigned nStyle, std::string_view text, int nDecimals)
{
    bool bOk = true;
    const double dDegrees = nStyle < 6
                                ? IEUtils::StringByStyleToCoords(static_cast<ECOORDS_STYLE>(nStyle), text, bOk)
                                : IEUtils::StringByStyleToAngle(static_cast<EANGLE_UNITS>(nStyle - 6), text, bOk);
    Require(std::isfinite(dDegrees) && std::fabs(dDegrees) <= kMostDegrees, "a text gives an angle or 0");
    Require(bOk || dDegrees == 0, "a text that can't be read gives 0");
    CheckValue(nStyle, dDegrees, nDecimals);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t nSize)
{
    CFuzzInput input(pData, nSize);
    const unsigned nStyle = input.TakeChoice() % 11;
    const int nDecimals = static_cast<int>(input.TakeChoice() % 20) - 1;
    const std::string_view rest = input.GetRest();
    CheckText(nStyle, rest, nDecimals);

    double dValue = 0;
    if (rest.size() >= sizeof dValue) {
        std::memcpy(&dValue, rest.data(), sizeof dValue);
        if (std::isfinite(dValue))
            CheckValue(nStyle, std::fabs(dValue) <= kMostDegrees ? dValue : std::remainder(dValue, 720), nDecimals);
    }
    return 0;
}
