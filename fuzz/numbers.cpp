// Numbers as text, both ways, against the standard library's conversions.

#include "support.h"

#include "alidade/vellumlib/utils.h"

#include <charconv>
#include <cmath>
#include <cstring>

namespace {

/// The number that the standard library reads, by the same rules for blanks and signs. False where it reads none, or
/// one that a double can't hold.
bool ReadReference(std::string_view text, double& dValue)
{
    text = IEUtils::Trim(text);
    const bool bPlus = text.starts_with('+');
    if (bPlus)
        text.remove_prefix(1);
    const char* const pEnd = text.data() + text.size();
    const auto read = std::from_chars(text.data(), pEnd, dValue);
    return read.ec == std::errc() && read.ptr == pEnd && std::isfinite(dValue) && !(bPlus && text.starts_with('-'));
}

void CheckWritten(double dValue, int nDecimals)
{
    const CString text = IEUtils::DoubleToString(dValue, nDecimals);
    char buffer[400];
    char* const pEnd = buffer + sizeof buffer;
    const auto written = nDecimals >= 0 ? std::to_chars(buffer, pEnd, dValue, std::chars_format::fixed, nDecimals)
                                        : std::to_chars(buffer, pEnd, dValue, std::chars_format::fixed);
    std::string_view reference(buffer, static_cast<std::size_t>(written.ptr - buffer));
    if (reference.starts_with('-') && reference.find_first_of("123456789") == std::string_view::npos)
        reference.remove_prefix(1);
    RequireEqual(text, reference, "a number is written as the standard library writes it");

    double dRead = 0;
    Require(IEUtils::StringToDouble(text, dRead, false), "a written number can be read");
    Require(nDecimals >= 0 || dRead == dValue, "the shortest text reads back as the same value");
    RequireEqual(IEUtils::DoubleToString(dRead, nDecimals), text, "a number that was read is written the same");
}

void CheckValue(double dValue)
{
    if (!std::isfinite(dValue))
        return;
    for (const int nDecimals : {-1, 0, 1, 2, 3, 4, 6, 8, 9, 12, 15, 16, 20, 40})
        CheckWritten(dValue, nDecimals);
    RequireEqual(IEUtils::DoubleToString(IEUtils::CheckZeroVal(dValue), 3), IEUtils::DoubleToString(dValue, 3),
                 "a value that isn't zero stays");
}

void CheckUnits(double dValue)
{
    for (int nUnits = -1; nUnits <= 7; ++nUnits) {
        const auto units = static_cast<EDIST_UNITS>(nUnits);
        const double dBack = IEUtils::FromMetersFactor(IEUtils::ToMetersFactor(dValue, units), units);
        if (std::fabs(dValue) < 1e9)
            Require(std::fabs(dBack - dValue) <= std::fabs(dValue) * 1e-15 + 1e-300,
                    "a length survives its way to metres and back");
    }
}

void CheckText(std::string_view text)
{
    double dValue = -1;
    const bool bRead = IEUtils::StringToDouble(text, dValue, false);
    Require(std::isfinite(dValue) && (bRead || dValue == 0), "a text gives a finite value, and 0 if it is no number");
    double dReference = 0;
    const bool bReference = ReadReference(text, dReference);
    Require(bReference ? bRead && dValue == dReference : !bRead || dValue == 0,
            "a text is read as the standard library reads it");
    double dOrZero = -1;
    const bool bReadOrEmpty = IEUtils::StringToDouble(text, dOrZero, true);
    Require(dOrZero == dValue && bReadOrEmpty == (bRead || IEUtils::Trim(text).empty()), "only an empty text differs");
    if (bRead) {
        CheckValue(dValue);
        CheckUnits(dValue);
    }

    int nValue = -1;
    if (IEUtils::StringToInt(text, nValue)) {
        Require(bRead && dValue == nValue, "a whole number is a number");
        Require(IEUtils::StringToInt(IEUtils::IntToString(nValue)) == nValue, "a whole number comes back");
    } else {
        Require(nValue == 0, "what is no whole number gives 0");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t nSize)
{
    const std::string_view text(reinterpret_cast<const char*>(pData), nSize);
    CheckText(text);
    double dValue = 0;
    if (nSize >= sizeof dValue) {
        std::memcpy(&dValue, pData, sizeof dValue);
        CheckValue(dValue);
    }
    return 0;
}
