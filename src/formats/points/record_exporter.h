// Base of the exporters that write each point as one record.
#pragma once

#include "alidade/frame/point_exporter.h"
#include "formats/points/point_record.h"

#include <span>

class CIECodePage;

/// One piece of a record that is written. A number has `m_nPrecision` decimals; a text loses what goes beyond that many
/// characters.
struct TIEPiece {
    EIEPiece m_ePiece;
    int m_nPrecision = kWhole; ///< decimals, or characters; kWhole cuts nothing
    int m_nWidth = 0;          ///< columns to fill with blanks, at the left, or at the right if it is below 0
    const char* m_pText = "";  ///< of a literal; with notes: what stands ahead of them if there are any

    static constexpr int kWhole = -1;
};

namespace Piece {

constexpr TIEPiece Text(const char* pText)
{
    return {EIEPiece::Literal, TIEPiece::kWhole, 0, pText};
}
/// A piece without columns; a number with that many decimals.
constexpr TIEPiece Free(EIEPiece ePiece, int nDecimals = TIEPiece::kWhole)
{
    return {ePiece, nDecimals};
}
/// Notes with a mark ahead of them; nothing if there are none.
constexpr TIEPiece MarkedNotes(const char* pMark)
{
    return {EIEPiece::Notes, TIEPiece::kWhole, 0, pMark};
}
/// A text in columns: cut to `nWidth` characters, at the right of the field.
constexpr TIEPiece Right(EIEPiece ePiece, int nWidth)
{
    return {ePiece, nWidth, nWidth};
}
/// The same at the left of the field.
constexpr TIEPiece Left(EIEPiece ePiece, int nWidth)
{
    return {ePiece, nWidth, -nWidth};
}
/// A number in columns, at the right of the field, or at the left with a width below 0; a wider one moves what follows.
constexpr TIEPiece Number(EIEPiece ePiece, int nWidth, int nDecimals)
{
    return {ePiece, nDecimals, nWidth};
}

} // namespace Piece

/// How the records of one export code are written.
struct TIEWriteForm {
    using TPieces = std::span<const TIEPiece>;
    int m_nCode;
    TPieces m_Record;              ///< lines end in CR LF; the last one gets its end from the writer
    int m_nDecimals;               ///< of north and east
    const TIEReadForm* m_pWayBack; ///< how a reader of the form takes a record
    TPieces m_Regular{};           ///< point-to-line points with coordinates of type CIEPTLPoint::Regular ...
    TPieces m_ToLine{};            ///< ... and CIEPTLPoint::PointToLine; without these two they are like any point
    bool m_bAnyCoordType = false;  ///< m_ToLine serves every type; otherwise others aren't written
    bool m_bJoins = false;         ///< a reader joins points in a row that share a name
    const char* m_pHead = "";      ///< first line without its end; empty for none
    const char* m_pFoot = "";      ///< last line
    char m_cNoteMark = '\0';       ///< if it isn't 0: the record has a second line, which is empty or has a note ...
    std::string_view (*m_pReadNote)(std::string_view noteLine) = nullptr; ///< ... and how a reader takes that one
};

/// Writes each point-like object as one record of a form; nothing else. North and east are in the job's units, or
/// decimal degrees in a geographic job; heights are in the job's units. Tells the host of all that a reader of the form
/// won't give back as it is: it reads each record as that one would.
class CIERecordExporter : public CIEPointExporter {
public:
    bool OpenFile() override;
    bool WriteHeader() override;
    bool WriteFooter() override;
    bool ExportObject(int nIndex) override;
    bool WriteStation(const CIEStation* pStation, const CIEObject* pObject) override;

protected:
    /// `form` is one of the constant forms.
    CIERecordExporter(CIEData* pData, const CString& strFileName, const TIEWriteForm& form);

    const TIEWriteForm& m_Form;

private:
    [[nodiscard]] TIEWriteForm::TPieces PiecesFor(const CIEObject& object) const;
    [[nodiscard]] unsigned CarriedFor(const CIEObject& object) const;
    void AddPiece(const TIEPiece& piece, const CIEStation& station, const CIEObject& object);
    void AddNumber(const TIEPiece& piece, double dValue);
    void AddField(const TIEPiece& piece, std::string_view text);
    void AddCheck();
    bool WriteLine(const char* pText);

    void NoteUnits() const;
    void NoteWayBack(const CIEStation& station, const CIEObject& object);
    void NoteNumbers(const CIEStation& station, const CIEObject& object, const TIEPointRecord& record) const;
    void NoteCodes(const CIEObject& object, const TIEPointRecord& record) const;
    void NoteKind(const CIEObject& object, const TIEPointRecord& record) const;
    void NoteJoin(const CIEObject& object, std::string_view name);
    void NoteChanged(EIENote eCode, const CIEObject& object, const char* pReason) const;

    std::shared_ptr<CIERecordReader> m_pReader; ///< null without an observer
    std::shared_ptr<CIECodePage> m_pBytes;      ///< of the file, for check characters; made with the first
    bool m_bFirstLine = true;                   ///< nothing of the file is written yet
    CString m_strLastName;                      ///< of the point ahead
    CString m_strLastRead;                      ///< the name that a reader sees on it
};
