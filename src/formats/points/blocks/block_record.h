// Records of a stream of blocks: tagged fields, one point a record.
#pragma once

#include "alidade/vellumlib/notes.h"
#include "vellumlib/code_page.h"

#include <string_view>

namespace Blocks {

enum class EDialect {
    Wide,  ///< records begin with "_0.", names have 16 characters, the height ends a record
    Narrow ///< records begin with "_+", names have 12 characters, codes end a record
};

/// No record is longer than this, in characters; a reader refuses what is.
inline constexpr int kLongestRecord = 256;

std::string_view MarkerOf(EDialect eDialect);
/// Place of the marker that ends the record which begins at the start of `text`, or npos. `nFrom`: up to there it was
/// looked for before.
std::size_t FindRecordEnd(std::string_view text, EDialect eDialect, std::size_t nFrom = 0);
/// The bytes of a record as text: UTF-8 stays, anything else is in the code page.
/// `scratch` may keep it: the view lives as long as both.
std::string_view Decode(std::string_view bytes, CIECodePage& codePage, CString& scratch);

/// Something in a record that didn't come in, or not as it stands.
struct TLoss {
    EIENote m_eCode;
    CString m_strReason;
};

/// What a record says. Lengths are in metres if its numbers bear the letter of feet, and else as they stand.
struct TRecord {
    CString m_strName;
    double m_dNorth = 0.0;
    double m_dEast = 0.0;
    double m_dHeight = 0.0;
    bool m_bFeet = false; ///< a number bore the letter of feet
    CStringArray m_Codes;
    std::vector<TLoss> m_Losses;
};

/// Reads one record. False if it is refused; the last loss tells why. Losses are gathered if somebody is to be told.
bool Parse(std::string_view text, EDialect eDialect, TRecord& record, bool bLosses);

} // namespace Blocks
