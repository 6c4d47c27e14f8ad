#include "formats/points/framed_points.h"

namespace {

using enum EIEPiece;
using Piece::Free;
using Piece::Text;

constexpr const char* kFrameStart = "A,01,Z,";
constexpr const char* kFrameEnd = "Z,&,";

// ---- reading

constexpr TIEPlace kPlaces[] = {{Name, 1}, {North, 2}, {East, 3}, {Height, 4}}; // behind the tag
constexpr TIEReadForm kReadForm = {.m_nCode = 38,
                                   .m_Places = kPlaces,
                                   .m_cDelimiter = ',',
                                   .m_eNumbers = TIEReadForm::WithoutUnits,
                                   .m_nFewestFields = 4,
                                   .m_pTag = "G",
                                   .m_nMostFields = 6};

// ---- writing

constexpr TIEPiece kComma = Text(",");
constexpr TIEPiece kTag = Text("G,");

constexpr TIEPiece kFramed[] = {kTag,          Free(Name), kComma,          Free(North, 3), kComma,
                                Free(East, 3), kComma,     Free(Height, 3), kComma,         Free(Check)};
constexpr TIEPiece kPlain[] = {Free(Name), kComma, Free(North, 3), kComma, Free(East, 3), kComma, Free(Height, 3)};
constexpr TIEPiece kString[] = {Free(Name),      kComma, Free(North, 3), kComma, Free(East, 3),   kComma,
                                Free(Height, 3), kComma, Free(Code),     kComma, Free(CodeString)};
// point-to-line points have a decimal more and no check character
constexpr TIEPiece kFramedRelative[] = {
    kTag,   Free(Name), kComma, Free(North, 4),       kComma, Free(East, 4),        kComma, Free(Height, 4),
    kComma, Free(Code), kComma, Free(FirstReference), kComma, Free(SecondReference)};
constexpr TIEPiece kPlainRelative[] = {
    Free(Name), kComma, Free(North, 4),       kComma, Free(East, 4),        kComma, Free(Height, 4), kComma,
    Free(Code), kComma, Free(FirstReference), kComma, Free(SecondReference)};
constexpr TIEPiece kStringRelative[] = {
    Free(Name), kComma, Free(North, 4),   kComma, Free(East, 4),        kComma, Free(Height, 4),      kComma,
    Free(Code), kComma, Free(CodeString), kComma, Free(FirstReference), kComma, Free(SecondReference)};

// a list without a frame is read as any comma list with north first
constexpr TIEWriteForm kWriteForms[] = {
    {.m_nCode = 49,
     .m_Record = kFramed,
     .m_nDecimals = 3,
     .m_pWayBack = &kReadForm,
     .m_ToLine = kFramedRelative,
     .m_bAnyCoordType = true,
     .m_pHead = kFrameStart,
     .m_pFoot = kFrameEnd},
    {.m_nCode = 50,
     .m_Record = kPlain,
     .m_nDecimals = 3,
     .m_pWayBack = &kNorthFirstComma,
     .m_ToLine = kPlainRelative,
     .m_bAnyCoordType = true},
    {.m_nCode = 51,
     .m_Record = kString,
     .m_nDecimals = 3,
     .m_pWayBack = &kNorthFirstComma,
     .m_ToLine = kStringRelative,
     .m_bAnyCoordType = true},
};

} // namespace

CIEFramedPointImporter::CIEFramedPointImporter(CIEData* pData, const CString& strFileName)
    : CIERecordImporter(pData, strFileName, kReadForm)
{
}

CIERecordImporter::EAnswer CIEFramedPointImporter::TakeLine(std::string_view line)
{
    if (m_bFirstLine) {
        if (line != kFrameStart) {
            Refuse(m_nLine, {}, EIENote::FileNoFrame, CString("the first line isn't \"") + kFrameStart + "\"");
            return NotOurs;
        }
        m_bFirstLine = false;
        return Passed;
    }
    if (line == kFrameEnd)
        return Closed;
    return TakeRecord(line, m_nLine);
}

void CIEFramedPointImporter::NoteEnd() const
{
    if (!m_bFirstLine)
        Note(TIENote::LeftOut, EIENote::FileNoEnd, m_nLine, {},
             CString("the file lacks the line \"") + kFrameEnd + "\" that closes the data; it may be cut");
}

CIEFramedPointExporter::CIEFramedPointExporter(CIEData* pData, const CString& strFileName, int nCode)
    : CIERecordExporter(pData, strFileName, FindForm(kWriteForms, nCode))
{
}
