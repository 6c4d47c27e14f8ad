// The points that benchmarks work on, and the file that holds them: plain C++ without the library, so that the floor
// program shares them.
#pragma once

#include <array>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace PointList {

struct TPoint {
    std::string m_strName;
    std::string m_strCode;
    double m_dNorth = 0.0;
    double m_dEast = 0.0;
    double m_dHeight = 0.0;
};

inline constexpr std::array<std::string_view, 12> kCodes = {"TREE",   "KERB",  "FENCE", "WALL", "MANHOLE", "LAMP",
                                                            "ROADCL", "GULLY", "HEDGE", "BLDG", "SIGN",    "DITCH"};

/// The same points on every run: a field of some kilometres, in whole millimetres.
inline TPoint MakePoint(std::size_t nIndex)
{
    std::uint64_t nBits = nIndex * 0x9E3779B97F4A7C15U;
    const auto take = [&nBits](std::uint64_t nFirst, std::uint64_t nRange) {
        nBits ^= nBits >> 29U;
        nBits *= 0xBF58476D1CE4E5B9U;
        nBits ^= nBits >> 32U;
        return static_cast<double>(nFirst + nBits % nRange) / 1000.0; // the double nearest to the decimal text
    };
    TPoint point;
    point.m_strName = "P" + std::to_string(nIndex + 1);
    point.m_strCode = kCodes[nIndex % kCodes.size()];
    point.m_dNorth = take(5'400'000'000, 9'000'000);
    point.m_dEast = take(450'000'000, 9'000'000);
    point.m_dHeight = take(200'000, 90'000);
    return point;
}

inline void AppendFixed(std::string& out, double dValue)
{
    char text[64];
    const auto written = std::to_chars(text, text + sizeof text, dValue, std::chars_format::fixed, 3);
    out.append(text, written.ptr);
}

/// P1,5408123.456,451234.567,234.567,TREE
inline void AppendLine(std::string& out, const TPoint& point)
{
    out += point.m_strName;
    for (const double dValue : {point.m_dNorth, point.m_dEast, point.m_dHeight}) {
        out += ',';
        AppendFixed(out, dValue);
    }
    out += ',';
    out += point.m_strCode;
    out += "\r\n";
}

} // namespace PointList
