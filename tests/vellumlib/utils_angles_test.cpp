#include "alidade/vellumlib/utils.h"

#include <cmath>
#include <limits>
#include <numbers>
#include <random>

#include <gtest/gtest.h>

namespace {

using enum ECOORDS_STYLE;

TEST(UtilsAngles, EveryStyleHasItsText)
{
    const double d = 45 + 30 / 60.0 + 15.1 / 3600;
    const double dNearly = 60 - 1e-9 / 3600; // rounds up through all parts
    const struct {
        ECOORDS_STYLE m_eStyle;
        double m_dDegrees;
        int m_nDecimals;
        std::string_view m_Text;
    } kRows[] = {
        {DecimalDegrees, 45.5042, 4, "45.5042"},
        {DecimalDegrees, 45.5042, -1, "45.5042"},
        {Plain, 45.5042, -1, "45.504"},
        {Packed, d, 5, "45.30151"},
        {Packed, d, -1, "45.301510000"},
        {Packed, d, 4, "45.3015"},
        {Packed, d, 3, "45.302"},
        {Packed, d, 2, "45.30"},
        {Packed, d, 1, "45.3"},
        {Packed, d, 0, "46"},
        {Packed, 12 + 5 / 60.0 + 5 / 3600.0, 4, "12.0505"},
        {Packed, -0.5, 4, "-0.3000"},
        {Packed, -1e-9, 4, "0.0000"},
        {Packed, dNearly, 4, "60.0000"},
        {Packed, dNearly, 3, "60.000"},
        {Packed, 12 + 59.6 / 60, 2, "13.00"},
        {Packed, 12 + 56.0 / 60, 1, "13.0"},
        {DegreesMinutes, d, 4, "45\u00B030.2517'"},
        {DegreesMinutes, -5.05, 0, "-5\u00B003'"},
        {DegreesMinutes, dNearly, 4, "60\u00B000.0000'"},
        {DegreesMinutes, 0.125, -1, "0\u00B007.5000000'"},
        {DegreesMinutesSeconds, d, 4, "45\u00B030'15.1000\""},
        {DegreesMinutesSeconds, d, -1, "45\u00B030'15.10000\""},
        {DegreesMinutesSeconds, -d, 0, "-45\u00B030'15\""},
        {DegreesMinutesSeconds, 59.9999999, 2, "60\u00B000'00.00\""},
        {Digits, d, 7, "0453015"},
        {Digits, -123.5, 0, "-1233000"},
        {Digits, 59.9999, 0, "0600000"},
        {Digits, -1e-5, 0, "0000000"},
        {Digits, 1234.5, 0, "12343000"},
        {Packed, std::numeric_limits<double>::infinity(), 4, "0.0000"},
        {DegreesMinutesSeconds, std::numeric_limits<double>::quiet_NaN(), 0, "0\u00B000'00\""},
        {Digits, 1e300, 0, "0000000"},
        {Plain, -std::numeric_limits<double>::infinity(), 2, "0.00"},
    };
    for (const auto& row : kRows)
        EXPECT_EQ(IEUtils::CoordsByStyleToString(row.m_eStyle, row.m_dDegrees, row.m_nDecimals), row.m_Text);
}

TEST(UtilsAngles, EveryStyleIsRead)
{
    const struct {
        ECOORDS_STYLE m_eStyle;
        std::string_view m_Text;
        double m_dDegrees;
    } kRows[] = {
        {DecimalDegrees, " -45.5 ", -45.5},
        {Plain, "1e1", 10},
        {Packed, "12.3", 12.5},
        {Packed, "12.05", 12 + 5 / 60.0},
        {Packed, "12.0505", 12 + 305 / 3600.0},
        {Packed, "0.5960", 99}, // refused below
        {Packed, "12.595999999999999999", 13},
        {Packed, " +12. ", 12},
        {Packed, "-.3", -0.5},
        {Packed, "-0.30", -0.5},
        {Packed, "1000000", 1e6},
        {DegreesMinutes, "45\u00B030.25'", 45.5 + 0.25 / 60},
        {DegreesMinutes, "-45 \u00B0 30 '", -45.5},
        {DegreesMinutes, "45\u00BA", 45},
        {DegreesMinutesSeconds, "45\u00B030'15.75\"", 45.5 + 15.75 / 3600},
        {DegreesMinutesSeconds, " 45d 30\u2032 15\u2033 ", 45.5 + 15 / 3600.0},
        {DegreesMinutesSeconds, "45D30\u201915''", 45.5 + 15 / 3600.0},
        {DegreesMinutesSeconds, "-0\u00B030'", -0.5},
        {DegreesMinutesSeconds, "45.25\u00B0", 45.25},
        {DegreesMinutesSeconds, "45\u00B0.5'", 45 + 0.5 / 60},
        {Digits, "0453000", 45.5},
        {Digits, "-1233000", -123.5},
        {Digits, "3000", 0.5},
        {Digits, "36", 0.01},
        {Digits, "12343000", 1234.5},
    };
    for (const auto& row : kRows) {
        bool bOk = true;
        const double dDegrees = IEUtils::StringByStyleToCoords(row.m_eStyle, row.m_Text, bOk);
        if (row.m_dDegrees == 99) {
            EXPECT_FALSE(bOk) << row.m_Text;
            continue;
        }
        EXPECT_TRUE(bOk) << row.m_Text;
        EXPECT_DOUBLE_EQ(dDegrees, row.m_dDegrees) << row.m_Text;
        bOk = false;
        IEUtils::StringByStyleToCoords(row.m_eStyle, row.m_Text, bOk);
        EXPECT_FALSE(bOk) << "the flag is never set";
    }
}

TEST(UtilsAngles, WhatIsNoAngleClearsTheFlag)
{
    const std::pair<ECOORDS_STYLE, std::string_view> kRows[] = {
        {DecimalDegrees, ""},
        {DecimalDegrees, "45\u00B0"},
        {DecimalDegrees, "1000000.1"},
        {Plain, "nan"},
        {Packed, ""},
        {Packed, "."},
        {Packed, "-"},
        {Packed, "12.6"},
        {Packed, "12.0060"},
        {Packed, "12.5960"},
        {Packed, "12.0x"},
        {Packed, "1e1"},
        {Packed, "--1"},
        {Packed, "+-1"},
        {Packed, "12.30.15"},
        {Packed, "1000000.0001"},
        {Packed, "99999999999999999999"},
        {DegreesMinutes, "45"},
        {DegreesMinutes, "45\u00B060'"},
        {DegreesMinutes, "45\u00B030"},
        {DegreesMinutes, "30'"},
        {DegreesMinutes, "\u00B0"},
        {DegreesMinutes, "45\u00B0'"},
        {DegreesMinutes, "45.5\u00B030'"},
        {DegreesMinutes, "45.0\u00B030'"},
        {DegreesMinutesSeconds, "45\u00B030\""},
        {DegreesMinutesSeconds, "45\u00B030'60\""},
        {DegreesMinutesSeconds, "45\u00B030'59.5\"x"},
        {DegreesMinutesSeconds, "45\u00B030'15\"16\""},
        {DegreesMinutesSeconds, "45\u00B045\u00B0"},
        {DegreesMinutesSeconds, "45\u00B0.'"},
        {DegreesMinutesSeconds, "45\u00B030'1e1\""},
        {DegreesMinutesSeconds, "45\xC2"},
        {Digits, ""},
        {Digits, "-"},
        {Digits, "45.3"},
        {Digits, "0456000"},
        {Digits, "0450060"},
        {Digits, "99"},
        {Digits, "99999999999999999999999999"},
        {Digits, "045 3000"},
    };
    for (const auto& [style, text] : kRows) {
        bool bOk = true;
        EXPECT_EQ(IEUtils::StringByStyleToCoords(style, text, bOk), 0) << text;
        EXPECT_FALSE(bOk) << text;
    }
}

TEST(UtilsAngles, ATextComesBackFromItsValue)
{
    std::mt19937_64 random(11);
    std::uniform_real_distribution<double> angles(-400, 400);
    for (int i = 0; i < 60000; ++i) {
        double dDegrees = angles(random);
        if (i % 3 == 0) // at and beside whole seconds
            dDegrees = std::nextafter(std::round(dDegrees * 3600) / 3600, i % 2 == 0 ? -1000 : 1000);
        else if (i % 3 == 1)
            dDegrees *= std::pow(10, -static_cast<double>(random() % 14));
        const int nDecimals = static_cast<int>(random() % 14) - 1;
        for (ECOORDS_STYLE style : {DecimalDegrees, Packed, DegreesMinutes, DegreesMinutesSeconds, Digits, Plain}) {
            const CString text = IEUtils::CoordsByStyleToString(style, dDegrees, nDecimals);
            bool bOk = true;
            const double dRead = IEUtils::StringByStyleToCoords(style, text, bOk);
            ASSERT_TRUE(bOk) << text;
            ASSERT_EQ(IEUtils::CoordsByStyleToString(style, dRead, nDecimals), text);
            // twelve decimals of a second tell doubles above 2 apart
            if (style == DegreesMinutesSeconds && nDecimals == 12 && std::fabs(dDegrees) > 2) {
                ASSERT_EQ(dRead, dDegrees) << text;
            }
        }
    }
}

TEST(UtilsAngles, UnitsOfAngleMakeOneCircle)
{
    const std::tuple<EANGLE_UNITS, double, int, std::string_view> kRows[] = {
        {EANGLE_UNITS::Radians, 180, 6, "3.141593"},
        {EANGLE_UNITS::Grads, -45, 4, "-50.0000"},
        {EANGLE_UNITS::Mils, 90, 1, "1600.0"},
        {EANGLE_UNITS::DecimalDegrees, 12.5, 3, "12.500"},
        {EANGLE_UNITS::DegreesMinutesSeconds, 12.5, 6, "12.300000"},
    };
    for (const auto& [units, dDegrees, nDecimals, text] : kRows) {
        EXPECT_EQ(IEUtils::AngleByStyleToString(units, dDegrees, nDecimals), text);
        EXPECT_NEAR(IEUtils::StringByStyleToAngle(units, text), dDegrees, 2e-5);
        bool bOk = true;
        EXPECT_EQ(IEUtils::StringByStyleToAngle(units, "12.60x", bOk), 0);
        EXPECT_FALSE(bOk);
    }
    bool bOk = true;
    EXPECT_EQ(IEUtils::StringByStyleToAngle(EANGLE_UNITS::Radians, "1e300", bOk), 0);
    EXPECT_FALSE(bOk);
}

} // namespace
