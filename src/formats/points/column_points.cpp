#include "formats/points/column_points.h"

#include "alidade/vellumlib/utils.h"

namespace {

using enum EIEPiece;
using Piece::Left;
using Piece::MarkedNotes;
using Piece::Number;
using Piece::Right;
using Piece::Text;

constexpr int kWithNotes = 36;
constexpr int kMarked = 47;
constexpr const char* kNoteStart = "!";
constexpr char kNoteMark = *kNoteStart;
constexpr std::string_view kRecordMark = " 05";
constexpr int kColumns = 128;
constexpr double kNoHeight = 999999.9; // metres

// ---- reading

constexpr TIEPlace kNotePlaces[] = {{ControlCode0, 0, 8}, {CodeString, 8, 8}, {Code, 16, 8},   {Name, 24, 8},
                                    {North, 32, 14},      {East, 46, 14},     {Height, 60, 14}};
constexpr TIEPlace kControlPlaces[] = {{ControlCode0, 4, 3},  {CodeString, 7, 4}, {Name, 11, 7},  {Code, 22, 3},
                                       {ControlCode1, 25, 2}, {North, 28, 11},    {East, 40, 11}, {Height, 59, 8}};
constexpr TIEPlace kMarkedPlaces[] = {{Name, 4, 10},  {Code, 15, 8},   {North, 24, 12},
                                      {East, 37, 11}, {Height, 49, 8}, {Notes, 60, 7}};

constexpr TIEReadForm kReadForms[] = {
    {.m_nCode = kWithNotes,
     .m_Places = kNotePlaces,
     .m_eName = TIEReadForm::Any,
     .m_nColumns = kColumns,
     .m_bAlwaysCode = true},
    {.m_nCode = 45, .m_Places = kControlPlaces, .m_nColumns = kColumns, .m_bAlwaysCode = true},
    {.m_nCode = kMarked,
     .m_Places = kMarkedPlaces,
     .m_eName = TIEReadForm::IfValid,
     .m_eNumbers = TIEReadForm::LengthsIfValid,
     .m_nColumns = kColumns,
     .m_dMissingHeight = kNoHeight},
};

// ---- writing

constexpr TIEPiece kNoteRecord[] = {Right(ControlCode0, 8), Right(CodeString, 8), Right(Code, 8),
                                    Right(Name, 8),         Number(North, 14, 3), Number(East, 14, 3),
                                    Number(Height, 14, 3),  Text("\r\n"),         MarkedNotes(kNoteStart)};
constexpr TIEPiece kControlRecord[] = {Text("    "),           Right(ControlCode0, 3),
                                       Right(CodeString, 4),   Right(Name, 7),
                                       Text("    "),           Right(Code, 3),
                                       Right(ControlCode1, 2), Text(" "),
                                       Number(North, 11, 3),   Text(" "),
                                       Number(East, 11, 3),    Text("        "),
                                       Number(Height, 8, 3)};
constexpr TIEPiece kMarkedRecord[] = {
    Text(" 05 "),         Left(Name, 10), Text(" "),           Left(Code, 8), Text(" "),
    Number(North, 12, 3), Text(" "),      Number(East, 11, 3), Text(" "),     Number(HeightUnlessZero, 8, 3),
    Text("    "),         Right(Notes, 7)};

constexpr TIEWriteForm kWriteForms[] = {
    {.m_nCode = 47,
     .m_Record = kNoteRecord,
     .m_nDecimals = 3,
     .m_pWayBack = &FindForm(kReadForms, kWithNotes),
     .m_cNoteMark = kNoteMark,
     .m_pReadNote = &ColumnPoints::ReadNote},
    {.m_nCode = 57, .m_Record = kControlRecord, .m_nDecimals = 3, .m_pWayBack = &FindForm(kReadForms, 45)},
    {.m_nCode = 60, .m_Record = kMarkedRecord, .m_nDecimals = 3, .m_pWayBack = &FindForm(kReadForms, kMarked)},
};

} // namespace

CIEColumnPointImporter::CIEColumnPointImporter(CIEData* pData, const CString& strFileName, int nCode)
    : CIERecordImporter(pData, strFileName, FindForm(kReadForms, nCode)), m_nCode(nCode)
{
}

CIERecordImporter::EAnswer CIEColumnPointImporter::TakeLine(std::string_view line)
{
    if (m_nCode == kWithNotes)
        return TakeWithNotes(line);
    if (m_nCode == kMarked && !line.starts_with(kRecordMark))
        return Taken;
    m_bMarked = true;
    return TakeRecord(line, m_nLine);
}

void CIEColumnPointImporter::NoteEnd() const
{
    if (m_nCode == kMarked && !m_bMarked && m_nLine > 0)
        Note(TIENote::LeftOut, EIENote::FileNoRecord, m_nLine, {},
             "none of the lines begins with \"" + CString(kRecordMark) + "\", as the records of this form do");
}

CIERecordImporter::EAnswer CIEColumnPointImporter::TakeWithNotes(std::string_view line)
{
    if (line.starts_with(kNoteMark)) {
        if (!m_strHeld.empty()) {
            KeepMended();
            return TakeHeld(line);
        }
        Note(TIENote::LeftOut, EIENote::LineNote, m_nLine, {}, "no point stands ahead of this note");
        return Taken;
    }
    const EAnswer eAnswer = m_strHeld.empty() ? Taken : TakeHeld({});
    m_strHeld = line;
    m_nHeldLine = m_nLine;
    KeepMended();
    return eAnswer;
}

CIERecordImporter::EAnswer CIEColumnPointImporter::TakeHeld(std::string_view noteLine)
{
    const CString strHeld = std::move(m_strHeld);
    m_strHeld.clear();
    TIEPointRecord record;
    if (!m_Reader.Read(strHeld, record))
        return RefuseRecord(m_nHeldLine, record.m_Name);
    record.m_Notes = ColumnPoints::ReadNote(noteLine);
    TakePoint(record, m_nHeldLine);
    if (IEUtils::Length(noteLine) > kColumns)
        Note(TIENote::Changed, EIENote::LineNote, m_nLine, m_pPoint->GetName(),
             "its note is longer than its line may be, and was cut");
    return Taken;
}

std::string_view ColumnPoints::ReadNote(std::string_view noteLine)
{
    return noteLine.empty() ? noteLine : IEUtils::Trim(IEUtils::Left(noteLine, kColumns).substr(1));
}

CIEColumnListExporter::CIEColumnListExporter(CIEData* pData, const CString& strFileName, int nCode)
    : CIERecordExporter(pData, strFileName, FindForm(kWriteForms, nCode))
{
}
