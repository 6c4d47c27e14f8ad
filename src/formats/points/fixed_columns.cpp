#include "formats/points/fixed_columns.h"

namespace {

using enum EIEPiece;
using Piece::Free;
using Piece::Left;
using Piece::Number;
using Piece::Text;

constexpr int kDecimals = 6;

constexpr TIEPlace kPlaces[] = {
    {Name, 0, 8}, {North, 13, 13}, {East, 26, 12}, {Height, 39, 12}, {Notes, 56, TIEPlace::kToEnd}};
constexpr TIEReadForm kReadForm = {
    .m_nCode = 7, .m_Places = kPlaces, .m_eName = TIEReadForm::Any, .m_eNumbers = TIEReadForm::Coordinates};

constexpr TIEPiece kRecord[] = {Left(Name, 8),
                                Text(" 001 "),
                                Number(North, -12, kDecimals),
                                Text(" "),
                                Number(East, -12, kDecimals),
                                Text(" "),
                                Number(Height, -12, kDecimals),
                                Text("    "),
                                Free(Name)};
constexpr TIEWriteForm kWriteForm = {
    .m_nCode = 7, .m_Record = kRecord, .m_nDecimals = kDecimals, .m_pWayBack = &kReadForm, .m_bJoins = true};

} // namespace

CIEFixedColumnImporter::CIEFixedColumnImporter(CIEData* pData, const CString& strFileName)
    : CIEPointImporter(pData, strFileName), m_Reader(kReadForm, *pData->GetJobInfo())
{
}

EIEResult CIEFixedColumnImporter::ParseLine(std::string_view line, std::unique_ptr<CIEObject>& pObject)
{
    TIEPointRecord record;
    if (!m_Reader.Read(line, record)) {
        Refuse(m_Reader.GetRefusalCode(), m_Reader.GetRefusal());
        return IE_BAD_CONTENT;
    }
    pObject = CIERecordReader::MakePoint(*m_pData, record);
    for (const CIERecordReader::TDoubt& doubt : m_Reader.GetDoubts())
        NoteLine(doubt.m_eCode, *pObject, doubt.m_strReason);
    return IE_OK;
}

CIEFixedColumnExporter::CIEFixedColumnExporter(CIEData* pData, const CString& strFileName)
    : CIERecordExporter(pData, strFileName, kWriteForm)
{
}
