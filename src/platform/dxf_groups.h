// The group codes of drawings, and what kind of value stands behind each: for all that reads or writes one.
#pragma once

#include <cstdint>

namespace DXFGroup {

// what all things of a drawing share
inline constexpr int kKind = 0; ///< begins a section, a table, an entry or an entity
inline constexpr int kText = 1; ///< a text, the value of an attribute, a version
inline constexpr int kName = 2; ///< of a section, a table, an entry or a block; the tag of an attribute
inline constexpr int kPrompt = 3;
inline constexpr int kLineType = 6;
inline constexpr int kLayer = 8;
inline constexpr int kVariable = 9; ///< names a variable of the header
inline constexpr int kEast = 10;    ///< of the first place; that of the next one is 11 ...
inline constexpr int kNorth = 20;
inline constexpr int kHeight = 30;
inline constexpr int kNextAxis = 10; ///< from one axis of a place to the next
inline constexpr int kElevation = 38;
inline constexpr int kThickness = 39;
inline constexpr int kSize = 40; ///< a radius, a text's height, a width at the start, a scale
inline constexpr int kEndWidth = 41;
inline constexpr int kBulge = 42;
inline constexpr int kWidth = 43;
inline constexpr int kDash = 49;
inline constexpr int kAngle = 50;
inline constexpr int kEndAngle = 51;
inline constexpr int kInvisible = 60;
inline constexpr int kColor = 62;
inline constexpr int kFollowed = 66; ///< vertices or attributes follow
inline constexpr int kPaperSpace = 67;
inline constexpr int kFlags = 70;
inline constexpr int kRows = 71;
inline constexpr int kCount = 90;
inline constexpr int kEmbedded = 101; ///< begins an object within an entity
inline constexpr int kExtrusionEast = 210;
inline constexpr int kExtrusionNorth = 220;
inline constexpr int kExtrusionHeight = 230;
inline constexpr int kPlotted = 290;
inline constexpr int kLineWeight = 370;
inline constexpr int kTrueColor = 420;
inline constexpr int kComment = 999;
inline constexpr int kNotes = 1000;

// a block reference
inline constexpr int kEastScale = 41;
inline constexpr int kNorthScale = 42;
inline constexpr int kHeightScale = 43;
inline constexpr int kColumns = 70;

/// How a value stands in a drawing. In text form it is a line in any case.
enum class EValue : std::uint8_t {
    Text,   ///< ends with a zero in binary form
    Handle, ///< a text of hexadecimal digits
    Bytes,  ///< hexadecimal digits; in binary form a byte with the number, and the bytes
    Double,
    Bool, ///< one byte in binary form
    Int16,
    Int32,
    Int64,
};

struct TRange {
    int m_nFirst;
    int m_nLast;
    EValue m_eValue;
};
/// In order; what is in none of them is a text.
inline constexpr TRange kRanges[] = {
    {5, 5, EValue::Handle},       {10, 59, EValue::Double},     {60, 79, EValue::Int16},
    {90, 99, EValue::Int32},      {105, 105, EValue::Handle},   {110, 149, EValue::Double},
    {160, 169, EValue::Int64},    {170, 179, EValue::Int16},    {210, 239, EValue::Double},
    {270, 289, EValue::Int16},    {290, 299, EValue::Bool},     {310, 319, EValue::Bytes},
    {320, 369, EValue::Handle},   {370, 389, EValue::Int16},    {390, 399, EValue::Handle},
    {400, 409, EValue::Int16},    {420, 429, EValue::Int32},    {440, 459, EValue::Int32},
    {460, 469, EValue::Double},   {480, 481, EValue::Handle},   {1004, 1004, EValue::Bytes},
    {1005, 1005, EValue::Handle}, {1010, 1059, EValue::Double}, {1060, 1070, EValue::Int16},
    {1071, 1071, EValue::Int32},
};

constexpr EValue ValueOf(int nCode)
{
    for (const TRange& range : kRanges) {
        if (nCode <= range.m_nLast)
            return nCode >= range.m_nFirst ? range.m_eValue : EValue::Text;
    }
    return EValue::Text;
}

} // namespace DXFGroup
