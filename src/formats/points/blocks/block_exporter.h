// Writers of points in framed blocks.
#pragma once

#include "alidade/frame/point_exporter.h"
#include "formats/points/blocks/block_record.h"
#include "frame/block_writer.h"

#include <array>

/// Makes the fields that both forms share, and tells the host what a reader will not take from a record as it is in the
/// job.
class CIEBlockStreamExporter : public CIEPointExporter {
public:
    using CIEPointExporter::CIEPointExporter;

    /// The header line of delimited text has no place in these forms.
    bool WriteHeader() override { return true; }

protected:
    static constexpr int kCoordinates = 3; ///< north, east, height
    using TCoordinates = std::array<double, kCoordinates>;

    /// Metres, or US survey feet for a job in any other unit. Latitude and longitude are treated like lengths.
    [[nodiscard]] TCoordinates GetCoordinates(const CIEStation& station) const;
    [[nodiscard]] bool IsMetric() const;
    /// Thousandths without their sign, rounded half up, modulo a power of ten: only the lowest digits stay. 0 for a
    /// value that isn't finite.
    static std::int64_t ToThousandths(double dValue, double dModulus);
    static char SignOf(double dValue) { return dValue < 0 ? '-' : '+'; }
    /// A whole number in at least `nWidth` characters, with zeros ahead.
    static void AppendWhole(CString& out, std::int64_t nValue, int nWidth);
    /// Text without control characters, which mean something to the frame; field marks go too if asked for.
    static CString MakePlain(std::string_view text, bool bFieldMarks);

    void NoteJob(bool bUnitTold) const;
    /// Tells what of the object doesn't come back from its record.
    void NoteRecord(std::string_view record, Blocks::EDialect eDialect, const CIEStation& station,
                    const CIEObject& object);

private:
    void NoteName(const CString& strRead, const CIEObject& object);
    void NoteCoordinates(const Blocks::TRecord& record, const CIEStation& station, const CString& strName) const;

    CString m_strLastName; ///< of the object ahead
    CString m_strLastRead; ///< its name as a reader takes it
};

/// Writes records that begin with "_0.", as bytes in the job's code page: names of 16 characters, nine digits or more.
class CIEWideBlockPointExporter : public CIEBlockStreamExporter {
public:
    using CIEBlockStreamExporter::CIEBlockStreamExporter;

    bool OpenFile() override;
    bool CloseFile() override;
    /// Always true; the observer learns of a file that failed.
    bool WriteStation(const CIEStation* pStation, const CIEObject* pObject) override;

private:
    std::unique_ptr<CIEBlockWriter> m_pBlocks;
    CString m_strRecord;
};

/// Writes records that begin with "_+", as text: names of 10 characters.
class CIEBlockPointExporter : public CIEBlockStreamExporter {
public:
    enum class EForm {
        Fgh, ///< fields f, g, h of nine digits with a unit letter, and codes
        Xyz  ///< fields x, y, z of eleven digits
    };
    CIEBlockPointExporter(CIEData* pData, const CString& strFileName, EForm eForm)
        : CIEBlockStreamExporter(pData, strFileName), m_eForm(eForm)
    {
    }

    bool OpenFile() override;
    bool CloseFile() override;
    /// False once a write has failed. A coordinate beyond the nine digits makes the result IE_VALUE_TOO_WIDE.
    bool WriteStation(const CIEStation* pStation, const CIEObject* pObject) override;

private:
    void AddCoordinates(const CIEStation& station);
    bool WriteBlocks();

    EForm m_eForm;
    bool m_bFirstRecord = true;
    CIEBlockFramer m_Blocks{CIEBlockFramer::EUnit::Character};
    CString m_strRecord;
    CString m_strBlock;
};
