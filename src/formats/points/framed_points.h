// Comma lists of three decimals, one of them within a frame of lines and with a check character.
#pragma once

#include "formats/points/record_exporter.h"
#include "formats/points/record_importer.h"

/// Import code 38. The frame opens with the first line; without it nothing is read. Check characters aren't looked at.
class CIEFramedPointImporter : public CIERecordImporter {
public:
    CIEFramedPointImporter(CIEData* pData, const CString& strFileName);

protected:
    EAnswer TakeLine(std::string_view line) override;
    void NoteEnd() const override;

private:
    bool m_bFirstLine = true; ///< the line that opens the frame is due
};

/// Export codes 49, 50 and 51.
class CIEFramedPointExporter : public CIERecordExporter {
public:
    /// `nCode` is one of these.
    CIEFramedPointExporter(CIEData* pData, const CString& strFileName, int nCode);
};
