// The importer of SIMA point records, which hosts reach through the entries alone.
#pragma once

#include "alidade/frame/importer.h"

#include <string_view>

/// Reads SIMA point records. Values enter the job as they stand in the file: the form states no unit, so a file written
/// in feet reads back as metres unless the job's units are metres.
class CIESimaImporter : public CIEImporter {
public:
    /// With `bNumbersOnly` the running number is the point's name.
    CIESimaImporter(CIEData* pData, CString strFileName, bool bNumbersOnly)
        : CIEImporter(pData, std::move(strFileName)), m_bNumbersOnly(bNumbersOnly)
    {
    }

    /// IE_OK with or without the closing line, if there was a point; IE_NOTHING_DONE for a file that isn't one of these
    /// or has no point; IE_BAD_CONTENT at the first bad record, with the points ahead of it in the job;
    /// IE_CANNOT_OPEN_FILE. A stop gives what the records read so far give.
    EIEResult Import() override;

private:
    EIEResult ReadRecords(CIETextFile& file, CIEDataset& dataset);
    bool ReadHead(CIETextFile& file, CString& line);
    void NoteRest(CIETextFile& file) const;
    [[nodiscard]] bool IsEnd(const CIETextFile& file, std::string_view line) const;
    EIEResult ParseRecord(std::string_view line, std::int64_t nLine, std::unique_ptr<CIEDesignPoint>& pPoint);
    EIEResult Refuse(std::int64_t nLine, const CString& strName, EIENote eCode, CString strReason) const;

    bool m_bNumbersOnly;
    bool m_bFirstLine = true; ///< the two opening lines are still to come
    std::uint64_t m_nFileLength = 0;
    std::unique_ptr<CIEStation> m_pStation; ///< under construction, the same for every record
    CStringArray m_Fields;
};
