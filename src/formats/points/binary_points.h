// Binary point list: a header, then records of one size to the end of the file.
#pragma once

#include "alidade/frame/format_row.h"
#include "alidade/frame/importer.h"
#include "alidade/frame/point_exporter.h"
#include "vellumlib/code_page.h"

#include <string_view>

class CIEFileReader;

/// Surely with the mark. Perhaps if the numbers of the header are ones that a file of this form can have.
EIERecognition RecognizeBinaryPoints(std::string_view head);

/// Reads a binary point list. Lengths are in the job's units; point numbers become names.
class CIEBinaryPointImporter : public CIEImporter {
public:
    CIEBinaryPointImporter(CIEData* pData, CString strFileName);

    /// IE_OK; IE_BAD_CONTENT for a bad header or record, and IE_NOTHING_DONE for a list without points, both with no
    /// dataset; IE_CANNOT_OPEN_FILE; IE_STOPPED, with the points that were read in the job.
    EIEResult Import() override;

private:
    bool ReadHeader(CIEFileReader& file);
    EIEResult ReadRecords(CIEFileReader& file, CIEDataset& dataset);
    bool ReadRecord(CIEFileReader& file, CIEDataset& dataset);
    void AddCode(CIEObject& point, std::string_view bytes, std::uint64_t nOffset);
    bool Refuse(EIENote eCode, std::uint64_t nOffset, CString strRecord, CString strReason) const;

    CIECodePage m_CodePage;
    bool m_bSkipDeleted = false; ///< records with the number -1 are none
};

/// Writes the point-like objects as a binary point list. A name that is a whole number is the point's number; any other
/// is lost, and the point gets the next number that is free. The job isn't told of the file.
class CIEBinaryPointExporter : public CIEPointExporter {
public:
    CIEBinaryPointExporter(CIEData* pData, const CString& strFileName);

    bool OpenFile() override;
    bool WriteHeader() override;
    bool ExportObject(int nIndex) override;
    bool WriteStation(const CIEStation* pStation, const CIEObject* pObject) override;

private:
    [[nodiscard]] CString MakeCode(const CIEObject& object);
    void NoteNumber(const CString& strName) const;
    void NoteCode(const CIEObject& object, std::string_view bytes);

    CIECodePage m_CodePage;
    std::int64_t m_nLastNumber = 0; ///< the highest number so far
    CString m_strRecord;
};
