// Comma lists of points, the list of five lines a point, and the fixed columns with code and name.
#pragma once

#include "formats/points/record_exporter.h"
#include "formats/points/record_importer.h"

/// Import codes 10, 13, 14, 15, 28 and 29.
class CIECommaPointImporter : public CIERecordImporter {
public:
    /// `nCode` is one of these.
    CIECommaPointImporter(CIEData* pData, const CString& strFileName, int nCode);

protected:
    EAnswer TakeLine(std::string_view line) override;
    /// The last point of a file of five lines a point may lack its code line.
    [[nodiscard]] bool AwaitsLine() const override;
    void NoteEnd() const override;

private:
    EAnswer TakePieceLine(std::string_view line);
    void KeepBehindComma(EIEPiece ePiece, std::string_view rest);

    int m_nCode;
    int m_nPiece = 0;          ///< five lines a point: which of them comes next
    bool m_bNumberCut = false; ///< and that a number of the point goes on behind a comma has been seen
    CString m_strName;
    TIEPointRecord m_Record;
};

/// Export codes 8, 11, 12, 13, 36 and 37.
class CIECommaPointExporter : public CIERecordExporter {
public:
    /// `nCode` is one of these.
    CIECommaPointExporter(CIEData* pData, const CString& strFileName, int nCode);
};
