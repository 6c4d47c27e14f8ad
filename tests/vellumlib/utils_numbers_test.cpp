#include "alidade/vellumlib/utils.h"

#include <bit>
#include <charconv>
#include <cmath>
#include <limits>
#include <random>

#include <gtest/gtest.h>

namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNoNumber = std::numeric_limits<double>::quiet_NaN();

CString Zeros(std::string_view front, std::size_t nCount, std::string_view back)
{
    return CString(front).append(nCount, '0').append(back);
}

/// The correctly rounded text, by the way that has no shortcuts.
CString Fixed(double dValue, int nDecimals)
{
    char text[500];
    CString number(text, std::to_chars(text, text + sizeof text, dValue, std::chars_format::fixed, nDecimals).ptr);
    const bool bZero = number.find_first_of("123456789") == CString::npos;
    return bZero && number[0] == '-' ? number.substr(1) : number;
}

TEST(UtilsNumbers, NumbersAreTaken)
{
    const std::pair<CString, double> kRows[] = {
        {"0", 0},
        {"-0", 0},
        {"507830.722", 507830.722},
        {" \t+1.5\t ", 1.5},
        {"-1.5", -1.5},
        {"1.", 1},
        {".5", 0.5},
        {"-.5", -0.5},
        {"1e3", 1000},
        {"1E+3", 1000},
        {"+1.25e-2", 0.0125},
        {"0001", 1},
        {"9007199254740993", 9007199254740992.0},
        {"9007199254740993.00000000000000000001", 9007199254740994.0},
        {"18446744073709551617", 18446744073709551616.0},
        {"0.30000000000000004", 0.30000000000000004},
        {"123456789012345678901234567890", 123456789012345678901234567890.0},
        {"1.7976931348623157e308", 1.7976931348623157e308},
        {"4.9e-324", 4.9e-324},
        // too small for a double is no fault of the file
        {"1e-400", 0},
        {"-1e-400", 0},
        {"1e-99999999999999999999", 0},
        {"0e99999999999999999999", 0},
        {Zeros("0.", 400, "1"), 0},
        {Zeros("0.", 400, "1e401"), 1},
        {Zeros("1", 400, "e-400"), 1},
        {Zeros("1", 10, "e-400"), 0},
    };
    for (const auto& [text, dExpected] : kRows) {
        double dValue = 99;
        EXPECT_TRUE(IEUtils::StringToDouble(text, dValue, false)) << text;
        EXPECT_EQ(dValue, dExpected) << text;
    }
}

TEST(UtilsNumbers, WhatIsNoNumberIsZero)
{
    const CString kRows[] = {
        "+",
        "-",
        ".",
        "-.",
        "e5",
        ".e5",
        "1e",
        "1e+",
        "+-1",
        "-+1",
        "--1",
        "++1",
        "+ 1",
        "- 1",
        "1 2",
        "1,5",
        "1.5.2",
        "1.5x",
        "nan",
        "NaN",
        "-nan",
        "inf",
        "-inf",
        "+inf",
        "infinity",
        "nan(1)",
        "0x10",
        "0x",
        "1e400",
        "-1e400",
        "1e99999999999999999999",
        Zeros("1", 400, ""),
        "0.001e400",
        "\u00A01",
        CString("1\0", 2),
    };
    for (const CString& text : kRows) {
        double dValue = 99;
        EXPECT_FALSE(IEUtils::StringToDouble(text, dValue, true)) << text;
        EXPECT_EQ(dValue, 0) << text;
    }
    for (std::string_view text : {"", " ", "\t "}) {
        double dValue = 99;
        EXPECT_FALSE(IEUtils::StringToDouble(text, dValue, false));
        EXPECT_EQ(dValue, 0);
        EXPECT_TRUE(IEUtils::StringToDouble(text, dValue, true));
    }
}

TEST(UtilsNumbers, EveryRowOfDigitsReadsAsTheNearestDouble)
{
    std::mt19937_64 random(5);
    for (int i = 0; i < 200000; ++i) {
        CString text = std::to_string(random() >> random() % 64);
        text.insert(text.begin() + static_cast<std::ptrdiff_t>(random() % (text.size() + 1)), '.');
        if (i % 4 == 0)
            text.append(1, 'e').append(std::to_string(static_cast<int>(random() % 40) - 20));
        double dExpected = 0;
        std::from_chars(text.data(), text.data() + text.size(), dExpected);
        double dValue = 0;
        ASSERT_TRUE(IEUtils::StringToDouble(text, dValue, false)) << text;
        ASSERT_EQ(dValue, dExpected) << text;
    }
}

TEST(UtilsNumbers, WholeNumbersKeepTo32Bits)
{
    const std::tuple<std::string_view, bool, int> kRows[] = {
        {"12", true, 12},
        {" +12 ", true, 12},
        {"-2147483648", true, INT32_MIN},
        {"2147483647", true, INT32_MAX},
        {"2147483648", false, 0},
        {"99999999999999999999", false, 0},
        {"", false, 0},
        {"+-1", false, 0},
        {"1.0", false, 0},
        {"1 2", false, 0},
        {"0x1", false, 0},
        {"007", true, 7},
    };
    for (const auto& [text, bTaken, nExpected] : kRows) {
        int nValue = 99;
        EXPECT_EQ(IEUtils::StringToInt(text, nValue), bTaken) << text;
        EXPECT_EQ(nValue, nExpected) << text;
    }
    EXPECT_EQ(IEUtils::IntToString(INT64_MIN), "-9223372036854775808");
}

TEST(UtilsNumbers, RoundingIsThatOfTheExactValue)
{
    const std::tuple<double, int, std::string_view> kRows[] = {
        {507830.722, 3, "507830.722"},
        {1.005, 2, "1.00"},
        {0.285, 2, "0.28"},
        {1.115, 2, "1.11"},
        {2.675, 2, "2.67"},
        {0.125, 2, "0.12"},
        {0.375, 2, "0.38"},
        {2.5, 0, "2"},
        {3.5, 0, "4"},
        {0.5, 0, "0"},
        {-0.5, 0, "0"},
        {-0.0004, 3, "0.000"},
        {-0.0005, 3, "-0.001"},
        {-0.0, 2, "0.00"},
        {999.9996, 3, "1000.000"},
        {0.05, 1, "0.1"},
        {1e15, 0, "1000000000000000"},
        {-12, 15, "-12.000000000000000"},
        {kInfinity, 3, "0.000"},
        {kNoNumber, 0, "0"},
        {-kInfinity, -1, "0"},
        {100000, -1, "100000"},
        {0.1, -1, "0.1"},
        {-0.0, -1, "0"},
        {1e-7, -1, "0.0000001"},
        {1e22, -1, "10000000000000000000000"},
    };
    for (const auto& [dValue, nDecimals, text] : kRows)
        EXPECT_EQ(IEUtils::DoubleToString(dValue, nDecimals), text);
    EXPECT_EQ(IEUtils::DoubleToString(1, 1000), Zeros("1.", 40, ""));
    EXPECT_EQ(IEUtils::DoubleToString(-1e308, 40).size(), 1U + 309 + 1 + 40);

    std::mt19937_64 random(7);
    for (int i = 0; i < 300000; ++i) {
        // halves, eighths and their neighbours, decimals that lie near a tie, and any bits at all
        double dValue = static_cast<double>(static_cast<std::int64_t>(random()) >> random() % 63);
        if (i % 4 == 0)
            dValue /= 16;
        else if (i % 4 == 1)
            dValue = std::nextafter(dValue / 2, kInfinity);
        else if (i % 4 == 2)
            dValue = (dValue * 10 + 5) / std::pow(10, random() % 16);
        else
            dValue = std::bit_cast<double>(random());
        if (!std::isfinite(dValue))
            continue;
        const int nDecimals = static_cast<int>(random() % 20);
        ASSERT_EQ(IEUtils::DoubleToString(dValue, nDecimals), Fixed(dValue, nDecimals)) << dValue << ' ' << nDecimals;
        ASSERT_EQ(IEUtils::StringToDouble(IEUtils::DoubleToString(dValue, -1)), dValue);
    }
}

TEST(UtilsNumbers, MinusZeroDoesNotPrint)
{
    for (const double dValue : {-0.0005, -0.0004, 0.0001, -6e-10})
        EXPECT_EQ(IEUtils::CheckZeroVal(dValue), dValue);
    for (const double dValue : {-0.0, -1e-300, -4e-10}) {
        EXPECT_EQ(IEUtils::CheckZeroVal(dValue), 0);
        EXPECT_FALSE(std::signbit(IEUtils::CheckZeroVal(dValue)));
    }
    EXPECT_EQ(IEUtils::DoubleToString(IEUtils::CheckZeroVal(-0.0004), 3), "0.000");
}

TEST(UtilsNumbers, UnitsAreExact)
{
    const std::tuple<EDIST_UNITS, double, double> kRows[] = {
        {EDIST_UNITS::None, 5, 5},
        {EDIST_UNITS::Meters, 5, 5},
        {EDIST_UNITS::USSurveyFeet, 3937, 1200},
        {EDIST_UNITS::InternationalFeet, 10000, 3048},
        {EDIST_UNITS::InternationalFeet, 3, 0.9144},
        {EDIST_UNITS::USInches, 3937, 100},
        {EDIST_UNITS::InternationalInches, 3, 0.0762},
        {EDIST_UNITS::USMiles, 3937, 6336000},
        {static_cast<EDIST_UNITS>(77), 5, 5},
    };
    for (const auto& [units, dValue, dMeters] : kRows) {
        EXPECT_EQ(IEUtils::ToMetersFactor(dValue, units), dMeters);
        EXPECT_EQ(IEUtils::FromMetersFactor(dMeters, units), dValue);
    }
    EXPECT_EQ(IEUtils::DistByStyleToString(EDIST_UNITS::USSurveyFeet, 1200, 4), "3937.0000");
}

TEST(UtilsNumbers, ADistanceThatIsNoneClearsTheFlagAndNeverSetsIt)
{
    bool bOk = false;
    EXPECT_EQ(IEUtils::StringByStyleToDist(EDIST_UNITS::USSurveyFeet, " 3937 ", bOk), 1200);
    EXPECT_FALSE(bOk);
    for (std::string_view text : {"", "abc", "1e308"}) {
        bOk = true;
        EXPECT_EQ(IEUtils::StringByStyleToDist(EDIST_UNITS::USMiles, text, bOk), 0) << text;
        EXPECT_FALSE(bOk) << text;
    }
}

} // namespace
