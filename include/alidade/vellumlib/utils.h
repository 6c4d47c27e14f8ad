// The operations on text, numbers, units and names that all formats share.
// The functions keep nothing; any thread may call them.
#pragma once

#include "alidade/platform/api.h"
#include "alidade/vellumlib/settings.h"
#include "alidade/vellumlib/text_file.h"
#include "alidade/vellumlib/types.h"

#include <cstdint>
#include <string_view>

namespace IEUtils {

// ---- lines

/// Next line of a file without its end, as UTF-8; empty, and false, at the file's end. The file knows its encoding (see
/// CIETextFile), so `bUnicode`, by which a caller says that the text is of 16 bits, and `bFlag` change nothing.
ALIDADE_API bool ReadLine(CIETextFile& file, CString& line, bool bUnicode, bool bFlag);
/// The same.
ALIDADE_API bool Read1Line(CIETextFile& file, CString& line);
/// True for 16-bit text.
ALIDADE_API bool IsUnicodeFile(const CIETextFile& file);
/// Appends the text alone, without a line end. True if written.
ALIDADE_API bool WriteString(CIETextWriter& file, std::string_view text);

// ---- fields

/// Fields between delimiters, in order, empty ones kept: one more than there are delimiters. An empty text has no
/// field. A delimiter between two equal characters out of `quotes` doesn't split; an empty `quotes` lets every
/// delimiter split. Quotes stay in the fields.
ALIDADE_API void ParseValues(std::string_view text, CStringArray& out, char16_t cDelimiter, std::string_view quotes);
/// The same as used for SIMA lines, where every comma splits.
ALIDADE_API void ParseValuesForSIMAFormat(std::string_view text, CStringArray& out, char16_t cDelimiter,
                                          std::string_view quotes);
/// The same as used for framed comma lists, whose names may hold anything but the delimiter: every delimiter splits.
ALIDADE_API void ParseValuesForAPAFormat(std::string_view text, CStringArray& out, char16_t cDelimiter,
                                         std::string_view quotes);
/// Fields between delimiters that all split, as views of `text`, for the readers of long lists.
ALIDADE_API void ParseValues(std::string_view text, std::vector<std::string_view>& out, char16_t cDelimiter);
/// Fields between delimiters; a delimiter within double quotes doesn't split. A quote opens only at the start of a
/// field or behind a blank, "=", "&", "@", "(" or "#", and only if it closes again on the line, so that an inch or
/// second mark behind its number is a character like any other. With a blank as delimiter, a run of blanks is one
/// delimiter, and blanks at either end of the line are none. Quotes stay in the fields.
ALIDADE_API void ParseValuesInQuotes(std::string_view text, CStringArray& out, char16_t cDelimiter);
/// The same into views of `text`, for the readers of long lists.
ALIDADE_API void ParseValuesInQuotes(std::string_view text, std::vector<std::string_view>& out, char16_t cDelimiter);
/// The text without the double quotes at its ends; each end loses at most one.
ALIDADE_API CString RemoveBorderQuotes(std::string_view text);
/// The text without blanks and tabs at both ends, at its left, at its right.
ALIDADE_API std::string_view Trim(std::string_view text);
ALIDADE_API std::string_view TrimLeft(std::string_view text);
ALIDADE_API std::string_view TrimRight(std::string_view text);

// ---- characters: one is a code point, and a cut never splits one

ALIDADE_API int Length(std::string_view text);
/// The same, for forms whose columns were counted in 8-bit text: a character of several bytes is one column.
ALIDADE_API int GetMBCSLength(std::string_view text);
/// The first `nCount` characters, all of them if there are fewer.
ALIDADE_API std::string_view Left(std::string_view text, int nCount);
ALIDADE_API std::string_view Right(std::string_view text, int nCount);
/// `nCount` characters from index `nFirst` on; what there is of them.
ALIDADE_API std::string_view Mid(std::string_view text, int nFirst, int nCount);
/// Mid without the blanks at both ends: a field of a record in columns.
ALIDADE_API std::string_view Column(std::string_view text, int nFirst, int nWidth);
/// The text in a field of `nWidth` characters, filled with `cFill`, at the field's right if `bRight`, else at its left.
/// A text that is longer stays whole.
ALIDADE_API CString GetReportString(char cFill, int nWidth, bool bRight, std::string_view text);
ALIDADE_API CString GetStringOfSpaces(int nCount);
/// Appends the UTF-8 of one character; what is none, a lone surrogate among them, gives U+FFFD.
ALIDADE_API void AppendCharacter(CString& out, char32_t c);
/// UTF-8 of one 16-bit character; a lone surrogate gives U+FFFD.
ALIDADE_API CString CharToString(char16_t c);
/// The first character if it fits 16 bits, else 0.
ALIDADE_API char16_t StringToChar(std::string_view text);
ALIDADE_API bool IsValidUtf8(std::string_view text);
/// ASCII letters in lower case; all others stay.
ALIDADE_API CString ToLower(std::string_view text);
/// ASCII letters in upper case; all others stay.
ALIDADE_API CString ToUpper(std::string_view text);

// ---- numbers

/// A decimal number with point; blanks around it and a leading "+" are taken. False, with 0 stored, if the text is no
/// number, has more behind it, or isn't finite. An empty text is no number unless `bEmptyIsZero`.
ALIDADE_API bool StringToDouble(std::string_view text, double& dValue, bool bEmptyIsZero);
/// The value, or 0 where the text is no number.
ALIDADE_API double StringToDouble(std::string_view text, bool bEmptyIsZero = false);
/// The same for whole numbers of 32 bits.
ALIDADE_API bool StringToInt(std::string_view text, int& nValue);
ALIDADE_API int StringToInt(std::string_view text);
/// Whether StringToInt reads the text.
ALIDADE_API bool IsValidInteger(std::string_view text);
/// Whether a value lies from `dLeast` to `dMost`; a value that isn't a number doesn't.
ALIDADE_API bool IsInBorders(double dValue, double dLeast, double dMost);
/// `nDecimals` digits behind the point, at most 40, rounded to nearest from the exact binary value; never "-0". With -1
/// decimals the shortest text without an exponent that reads back as the same value. A value that isn't finite is "0"
/// with its decimals.
ALIDADE_API CString DoubleToString(double dValue, int nDecimals);
ALIDADE_API void AppendDouble(CString& out, double dValue, int nDecimals);
ALIDADE_API CString IntToString(std::int64_t nValue);
/// The value to print: 0 for minus zero and for less than half a thousandth of a millionth, else the value itself.
ALIDADE_API double CheckZeroVal(double dValue);

// ---- distances

/// A value in `units` as metres, and metres as `units`. EDIST_UNITS::None, and any number that is no unit, leaves the
/// value.
ALIDADE_API double ToMetersFactor(double dValue, EDIST_UNITS units);
ALIDADE_API double FromMetersFactor(double dValue, EDIST_UNITS units);
/// A number in `units` as metres. `bOk` is cleared, and 0 given, if the text is no number; it is never set.
ALIDADE_API double StringByStyleToDist(EDIST_UNITS units, std::string_view text, bool& bOk);
ALIDADE_API double StringByStyleToDist(EDIST_UNITS units, std::string_view text);
/// Metres as text in `units`.
ALIDADE_API CString DistByStyleToString(EDIST_UNITS units, double dMeters, int nDecimals);

// ---- latitude, longitude and angles; in the job they are decimal degrees

/// Degrees as text. A value below 0 begins with "-", unless it rounds to 0. Rounding goes through all parts, so no part
/// ever reads 60. Minutes and seconds have at most 12 decimals. A value that isn't finite, or is beyond a million
/// degrees where minutes are shown, is written as 0.
///
/// | style | form | `nDecimals` |
/// |---|---|---|
/// | DecimalDegrees | 45.5042 | behind the point; -1 the shortest exact text |
/// | Packed | ddd.mmssfff: 45.30151 is 45 degrees 30 minutes 15.1 seconds | behind the point, 0 to 16; -1 is 9 |
/// | DegreesMinutes | 45°30.2517' | of the minutes; -1 is 7 |
/// | DegreesMinutesSeconds | 45°30'15.1000" | of the seconds; -1 is 5 |
/// | Digits | 0453015: three digits of degrees, two of minutes, two of seconds | without effect |
/// | Plain | 45.504 | behind the point; -1 is 3 |
ALIDADE_API CString CoordsByStyleToString(ECOORDS_STYLE style, double dDegrees, int nDecimals);
/// Reads the same forms. In those with signs either form is taken, blanks may stand around a part, parts at the end may
/// be missing, and the last one may have decimals. `bOk` is cleared, and 0 given, if the text isn't of the form, has 60
/// minutes or seconds or more, or is beyond a million degrees; it is never set.
ALIDADE_API double StringByStyleToCoords(ECOORDS_STYLE style, std::string_view text, bool& bOk);
/// Degrees as text in `units`; DegreesMinutesSeconds is packed as in ECOORDS_STYLE::Packed.
ALIDADE_API CString AngleByStyleToString(EANGLE_UNITS units, double dDegrees, int nDecimals);
ALIDADE_API double StringByStyleToAngle(EANGLE_UNITS units, std::string_view text, bool& bOk);
ALIDADE_API double StringByStyleToAngle(EANGLE_UNITS units, std::string_view text);

// ---- names and files

/// Whether the text may name an object: 1 to 64 characters, none of them a control character, valid UTF-8.
ALIDADE_API bool IsValidName(std::string_view text);
/// The same rule for codes.
ALIDADE_API bool IsValidCodeName(std::string_view text);
/// Whether the text may name a file in a folder: a valid name of at most 200 bytes without / \ : * ? " < > |, not "."
/// or "..", not ending in a point or a blank nor beginning with a blank, and no name of a device (CON, PRN, AUX, NUL,
/// CONIN$, CONOUT$, COM and LPT with a digit, raised ones among them; in any case, with or without an extension).
ALIDADE_API bool IsValidFileName(std::string_view text);
/// A file name without its extension, in the folder of `base`: named `name` if `bUseName`, else as `base` without its
/// extension. Both / and \ end a folder in `base`. `name` is trusted to be a valid file name.
ALIDADE_API CString CreateFileName(std::string_view base, std::string_view name, bool bUseName);
/// True if writing may go on: there is no such file, or the message box agrees to replace it. Without a box an existing
/// file stays.
ALIDADE_API bool IsExportFileWithSameName(const CString& strFileName, IIEMessageBox* pMessageBox, HWND hWnd);
/// Name of a path without its folder and extension.
ALIDADE_API CString ExtractFileNameWithoutExtFromPathName(std::string_view path);
/// The extension of a path in lower case without its point; empty if there is none.
ALIDADE_API CString GetExtension(std::string_view path);

/// Bytes of memory that the process can still get.
ALIDADE_API std::uint64_t GetFreeVirtMemory();

} // namespace IEUtils
