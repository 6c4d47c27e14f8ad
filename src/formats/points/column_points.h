// Points in fixed columns: a row a point, or a row and a note line.
#pragma once

#include "formats/points/record_exporter.h"
#include "formats/points/record_importer.h"

/// Import codes 36, 45 and 47. In a file of code 36 a line that begins with "!" is the note of the point ahead; with
/// none ahead it is passed over. In one of code 47, lines of other records are passed over.
class CIEColumnPointImporter : public CIERecordImporter {
public:
    /// `nCode` is one of these.
    CIEColumnPointImporter(CIEData* pData, const CString& strFileName, int nCode);

protected:
    EAnswer TakeLine(std::string_view line) override;
    /// The held line is finished at the end of the file.
    [[nodiscard]] bool AwaitsLine() const override { return !m_strHeld.empty(); }
    void NoteEnd() const override;

private:
    EAnswer TakeWithNotes(std::string_view line);
    EAnswer TakeHeld(std::string_view noteLine);

    int m_nCode;
    CString m_strHeld; ///< the data line that waits for its note; empty for none
    std::int64_t m_nHeldLine = 0;
    bool m_bMarked = false; ///< a line of our records was among the lines
};

namespace ColumnPoints {

/// The note that a note line holds behind its mark: without blanks at both ends, and of a line no more than counts.
std::string_view ReadNote(std::string_view noteLine);

} // namespace ColumnPoints

/// Export codes 47, 57 and 60.
class CIEColumnListExporter : public CIERecordExporter {
public:
    /// `nCode` is one of these.
    CIEColumnListExporter(CIEData* pData, const CString& strFileName, int nCode);
};
