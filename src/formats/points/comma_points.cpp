#include "formats/points/comma_points.h"

#include <iterator>

namespace {

using enum EIEPiece;
using Piece::Free;
using Piece::Number;
using Piece::Right;
using Piece::Text;

constexpr int kFiveLines = 10;

// ---- reading

constexpr TIEPlace kEastFirst[] = {{Name, 0}, {East, 1}, {North, 2}, {Height, 3}, {Code, 4}, {CodeString, 5}};
constexpr TIEPlace kPieceLines[] = {{Name, 0}, {North, 1}, {East, 2}, {Height, 3}, {Code, 4}};
constexpr TIEPlace kColumns[] = {{CodeString, 8, 8}, {Code, 16, 8},  {Name, 24, 8},
                                 {North, 32, 14},    {East, 46, 14}, {Height, 60, 14}};
constexpr int kPieceLineCount = static_cast<int>(std::size(kPieceLines));

constexpr TIEReadForm kReadForms[] = {
    {.m_nCode = kFiveLines, .m_Places = kPieceLines, .m_cDelimiter = '\n', .m_bFirstFieldOnly = true},
    CommaForm(13, kEastFirst),
    CommaForm(14, kEastFirst),
    {.m_nCode = 15, .m_Places = kColumns, .m_nColumns = 128},
    kNorthFirstComma,
    CommaForm(29, kNorthFirstFields),
};

constexpr const TIEReadForm& ReadFormOf(int nCode)
{
    return FindForm(kReadForms, nCode);
}

// ---- writing

constexpr TIEPiece kComma = Text(",");

constexpr TIEPiece kFiveLinesRecord[] = {
    Free(Name),   Text("\r\n"),    Free(North, 5), Text("\r\n"), Free(East, 5),
    Text("\r\n"), Free(Height, 5), Text("\r\n"),   Free(Code),
};
constexpr TIEPiece kColumnsRecord[] = {
    Text("       0        "), Right(Code, 8),        Right(Name, 8),   Number(North, 14, 3),
    Number(East, 14, 3),      Number(Height, 14, 3), Text("     0 0"),
};
constexpr TIEPiece kEnh[] = {Free(Name), kComma,          Free(East, 4), kComma,    Free(North, 4),
                             kComma,     Free(Height, 4), kComma,        Free(Code)};
constexpr TIEPiece kEnhString[] = {Free(Name),      kComma, Free(East, 4), kComma, Free(North, 4),  kComma,
                                   Free(Height, 4), kComma, Free(Code),    kComma, Free(CodeString)};
constexpr TIEPiece kNeh[] = {Free(Name), kComma,          Free(North, 4), kComma,    Free(East, 4),
                             kComma,     Free(Height, 4), kComma,         Free(Code)};
constexpr TIEPiece kNehString[] = {Free(Name),      kComma, Free(North, 4), kComma, Free(East, 4),   kComma,
                                   Free(Height, 4), kComma, Free(Code),     kComma, Free(CodeString)};
// a point-to-line point has its reference line behind it, and its coordinates stand in an order of their own
constexpr TIEPiece kEnhRelative[] = {Free(Name),           kComma, Free(East, 4), kComma, Free(North, 4),       kComma,
                                     Free(Height, 4),      kComma, Free(Code),    kComma, Free(FirstReference), kComma,
                                     Free(SecondReference)};
constexpr TIEPiece kNehRelative[] = {Free(Name),           kComma, Free(North, 4), kComma, Free(East, 4),        kComma,
                                     Free(Height, 4),      kComma, Free(Code),     kComma, Free(FirstReference), kComma,
                                     Free(SecondReference)};
constexpr TIEPiece kEnhStringRelative[] = {
    Free(Name), kComma, Free(East, 4),    kComma, Free(North, 4),       kComma, Free(Height, 4),      kComma,
    Free(Code), kComma, Free(CodeString), kComma, Free(FirstReference), kComma, Free(SecondReference)};
constexpr TIEPiece kNehStringRelative[] = {
    Free(Name), kComma, Free(North, 4),   kComma, Free(East, 4),        kComma, Free(Height, 4),      kComma,
    Free(Code), kComma, Free(CodeString), kComma, Free(FirstReference), kComma, Free(SecondReference)};

constexpr TIEWriteForm Comma(int nCode, TIEWriteForm::TPieces record, int nWayBack, TIEWriteForm::TPieces regular,
                             TIEWriteForm::TPieces toLine)
{
    return {.m_nCode = nCode,
            .m_Record = record,
            .m_nDecimals = 4,
            .m_pWayBack = &ReadFormOf(nWayBack),
            .m_Regular = regular,
            .m_ToLine = toLine};
}

constexpr TIEWriteForm kWriteForms[] = {
    {.m_nCode = 8, .m_Record = kFiveLinesRecord, .m_nDecimals = 5, .m_pWayBack = &ReadFormOf(kFiveLines)},
    Comma(11, kEnh, 13, kEnhRelative, kNehRelative),
    Comma(12, kEnhString, 14, kEnhStringRelative, kNehStringRelative),
    {.m_nCode = 13, .m_Record = kColumnsRecord, .m_nDecimals = 3, .m_pWayBack = &ReadFormOf(15)},
    Comma(36, kNeh, 28, kEnhRelative, kNehRelative),
    Comma(37, kNehString, 29, kEnhStringRelative, kNehStringRelative),
};

} // namespace

CIECommaPointImporter::CIECommaPointImporter(CIEData* pData, const CString& strFileName, int nCode)
    : CIERecordImporter(pData, strFileName, ReadFormOf(nCode)), m_nCode(nCode)
{
}

bool CIECommaPointImporter::AwaitsLine() const
{
    return m_nCode == kFiveLines && m_nPiece == kPieceLineCount - 1;
}

CIERecordImporter::EAnswer CIECommaPointImporter::TakeLine(std::string_view line)
{
    return m_nCode == kFiveLines ? TakePieceLine(line) : TakeRecord(line, m_nLine);
}

CIERecordImporter::EAnswer CIECommaPointImporter::TakePieceLine(std::string_view line)
{
    const EIEPiece ePiece = kPieceLines[m_nPiece].m_ePiece;
    const std::string_view text = line.substr(0, line.find(','));
    KeepMended();
    KeepBehindComma(ePiece, line.substr(text.size()));
    if (!m_Reader.ReadPiece(ePiece, text, m_Record))
        return RefuseRecord(m_nLine, m_strName);
    if (ePiece == Name)
        m_Record.m_Name = m_strName = text; // the line is gone with the next one
    if (++m_nPiece < kPieceLineCount)
        return Taken;
    TakePoint(m_Record, m_nLine);
    m_Record = {};
    m_strName.clear();
    m_bNumberCut = false;
    m_nPiece = 0;
    return Taken;
}

/// What stands behind a comma isn't read; of the numbers of a point the first is told of.
void CIECommaPointImporter::KeepBehindComma(EIEPiece ePiece, std::string_view rest)
{
    if (rest.find_first_not_of(", ") == std::string_view::npos)
        return;
    if (ePiece == Name || ePiece == Code) {
        KeepNote(TIENote::LeftOut, EIENote::LineFields, "what stands behind the comma in its line isn't read");
    } else if (!m_bNumberCut) {
        KeepNote(TIENote::Changed, EIENote::LineNumberCut,
                 "what stands behind the comma in its number isn't read; a decimal point is a point");
        m_bNumberCut = true;
    }
}

void CIECommaPointImporter::NoteEnd() const
{
    if (m_nPiece > 0)
        Note(TIENote::Refused, EIENote::LineCut, m_nLine, m_strName, "the file ends within the lines of this point");
}

CIECommaPointExporter::CIECommaPointExporter(CIEData* pData, const CString& strFileName, int nCode)
    : CIERecordExporter(pData, strFileName, FindForm(kWriteForms, nCode))
{
}
