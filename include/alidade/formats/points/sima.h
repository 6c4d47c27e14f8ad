// SIMA point records: comma fields, a head of two lines, a foot of one.
#pragma once

#include "alidade/frame/format_row.h"
#include "alidade/frame/importer.h"
#include "alidade/frame/point_exporter.h"

#include <string_view>

/// What passes through the form.
constexpr TIECarries kSimaCarries = CARRIES_POINTS;

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

/// Writes the point-like objects as SIMA point records, numbered from 1 in the order of writing. North and east are in
/// the job's units, or decimal degrees in a geographic job; the height is in the job's units.
class ALIDADE_API CSimaPtExporterJ : public CIEPointExporter {
public:
    /// With `bNumbersOnly` the records carry no name.
    CSimaPtExporterJ(CIEData* pData, const CString& strFileName, bool bNumbersOnly);
    /// A copy writes on into the same file; the first of the two that closes it, closes it for both.
    CSimaPtExporterJ(const CSimaPtExporterJ& other);
    CSimaPtExporterJ& operator=(const CSimaPtExporterJ& other);
    ~CSimaPtExporterJ() override;

    bool WriteHeader() override;
    bool WriteFooter() override;
    /// True, whatever the write gave; the observer learns of a file that failed.
    bool WriteStation(const CIEStation* pStation, const CIEObject* pObject) override;

private:
    void NoteName(const CString& strName) const;
    /// `values`: north, east, height in the units of the file.
    bool Write1Line(const CString& name, const double* values);

    bool m_bNumbersOnly;
    int m_nPointNumber = 1; ///< next running number
};
