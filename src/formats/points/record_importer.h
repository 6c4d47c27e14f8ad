// Base of the importers that read point records line by line.
#pragma once

#include "alidade/frame/importer.h"
#include "alidade/vellumlib/text_file.h"
#include "formats/points/point_record.h"

#include <string_view>

/// Reads lines into points of a new dataset "Import dataset", up to an empty line at the file's end. The first line
/// that is refused ends the import: IE_BAD_CONTENT, and the points ahead of it stay. IE_OK with a line read,
/// IE_NOTHING_DONE without one, IE_CANNOT_OPEN_FILE. A stop ends the reading with the result of the last line.
class CIERecordImporter : public CIEImporter {
public:
    EIEResult Import() override;

protected:
    /// What becomes of a line.
    enum EAnswer {
        Taken,   ///< it was read; m_pPoint is set if it completed a point
        Passed,  ///< it belongs to the file, but doesn't count as a line read
        Refused, ///< it ends the import; Refuse tells why
        NotOurs, ///< it ends the reading, as if the file ended ahead of it
        Closed   ///< it closes the data: IE_OK
    };

    CIERecordImporter(CIEData* pData, CString strFileName, const TIEReadForm& form);

    /// Takes the next line without its end.
    virtual EAnswer TakeLine(std::string_view line) = 0;
    /// True if an empty line at the file's end still counts.
    [[nodiscard]] virtual bool AwaitsLine() const { return false; }

    /// Tells of what the end of the file cut off.
    virtual void NoteEnd() const {}

    /// Reads a whole record into m_pPoint. `nLine` is where it stands.
    EAnswer TakeRecord(std::string_view text, std::int64_t nLine);
    /// Puts the point of a record into m_pPoint, and tells what was kept of its lines.
    void TakePoint(const TIEPointRecord& record, std::int64_t nLine);
    /// Keeps something of the line being taken until its point is taken, whose name is then known.
    void KeepNote(TIENote::EKind eKind, EIENote eCode, CString strReason);
    /// Keeps it if bytes of the line being taken had no meaning.
    void KeepMended();
    /// Tells of the record that ends the import; `nLine` is where it stands.
    EAnswer Refuse(std::int64_t nLine, CString strName, EIENote eCode, CString strReason) const;
    /// The same with the reader's reason.
    EAnswer RefuseRecord(std::int64_t nLine, std::string_view name) const;

    CIERecordReader m_Reader;
    std::unique_ptr<CIEObject> m_pPoint; ///< completed by the line
    std::int64_t m_nLine = 0;            ///< the line being taken, from 1

private:
    struct TLineNote {
        TIENote::EKind m_eKind;
        EIENote m_eCode;
        std::int64_t m_nLine;
        CString m_strReason;
    };

    EIEResult ReadLines(CIETextFile& file, CIEDataset& dataset);
    void NoteRest(CIETextFile& file) const;
    void NoteUnits() const;

    const TIEReadForm& m_Form;
    std::vector<TLineNote> m_LineNotes; ///< of the lines of the point that is being read
    bool m_bMended = false;             ///< bytes of the line being taken had no meaning ...
    CString m_strEncoding;              ///< ... in this encoding, which is the file's
};
