// Points in fixed columns whose rows are marked 001, codes 7.
#pragma once

#include "formats/points/record_exporter.h"
#include "frame/point_importer.h"

/// Reads rows as other lists of delimited text are read: consecutive ones of one name make a line, and a row that can't
/// be read is passed over.
class CIEFixedColumnImporter : public CIEPointImporter {
public:
    CIEFixedColumnImporter(CIEData* pData, const CString& strFileName);

    /// IE_OK, or IE_BAD_CONTENT without an object for a row that can't be read.
    EIEResult ParseLine(std::string_view line, std::unique_ptr<CIEObject>& pObject) override;

private:
    CIERecordReader m_Reader;
};

/// Writes a row a point. The whole name stands behind the numbers, where the reader takes notes from.
class CIEFixedColumnExporter : public CIERecordExporter {
public:
    CIEFixedColumnExporter(CIEData* pData, const CString& strFileName);
};
