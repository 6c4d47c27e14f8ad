// The first bytes of a file, looked at to tell what it is. Crude on purpose: only the ASCII characters of a text count
// here.
#pragma once

#include "alidade/vellumlib/types.h"

#include <cstddef>
#include <string_view>

namespace FileHead {

/// So much of a file is looked at. A head of this size may have been cut in the middle of a line.
inline constexpr std::size_t kMaxBytes = std::size_t{64} << 10;

/// The head as text without its byte order mark. 16-bit text, known by its mark or its zero bytes, comes back with its
/// ASCII characters and a "?" for each other one.
CString ToText(std::string_view head);

/// Name of the first element of an XML text, without a prefix. Empty if the head holds none; remarks, instructions and
/// a document type are passed over.
CString GetXmlRoot(std::string_view head);

/// A group of the drawing exchange form: a line with a number, a line with its value.
struct TIEGroup {
    int m_nCode = -1; ///< -1: the head doesn't begin with such a group
    CString m_strValue;
};
/// The first group that isn't a remark (999).
TIEGroup GetFirstGroup(std::string_view head);

} // namespace FileHead

/// Walks over the lines of a head. CR LF, LF and CR each end a line; a last piece that may have been cut isn't given.
class CIEHeadLines {
public:
    explicit CIEHeadLines(std::string_view head);
    /// False behind the last line. The view lives as long as this object.
    bool Next(std::string_view& line);

private:
    CString m_strText;
    std::size_t m_nPlace = 0;
    bool m_bMaybeCut;
};
