// Readers of points in framed blocks.
#pragma once

#include "alidade/frame/importer.h"
#include "formats/points/blocks/block_record.h"

class CIELineJoiner;

namespace Blocks {
class CPending;
class CReader;
} // namespace Blocks

/// Reads the records of a stream of blocks. Points in a row that share a name make a line.
class CIEBlockStreamImporter : public CIEImporter {
public:
    /// IE_OK, also for a file without a record and after a stop; IE_BAD_CONTENT at the first record that is refused,
    /// with the points ahead of it in the job; IE_CANNOT_OPEN_FILE.
    EIEResult Import() override;

protected:
    CIEBlockStreamImporter(CIEData* pData, CString strFileName, Blocks::EDialect eDialect)
        : CIEImporter(pData, std::move(strFileName)),
          m_eDialect(eDialect),
          m_CodePage(pData->GetSettings().m_strCodePage)
    {
    }

private:
    EIEResult ReadRecords(Blocks::CReader& reader, CIEDataset& dataset);
    bool TakeRecord(Blocks::CPending& pending, bool bLast, CIELineJoiner& joiner);
    std::unique_ptr<CIEObject> MakePoint(const Blocks::TRecord& record);
    void NoteRecord(const Blocks::TRecord& record, std::int64_t nLine, bool bTaken) const;
    void NoteBlock(const Blocks::CReader& reader, std::string_view text) const;
    void NoteEnd(Blocks::CReader& reader) const;
    void NoteProgress(const Blocks::CReader& reader) const;

    Blocks::EDialect m_eDialect;
    CIECodePage m_CodePage;
    bool m_bRefused = false;
    std::int64_t m_nRecords = 0;
};

/// Reads records that begin with "_0.": names of 16 characters, no codes.
class CIEWideBlockPointImporter : public CIEBlockStreamImporter {
public:
    CIEWideBlockPointImporter(CIEData* pData, CString strFileName)
        : CIEBlockStreamImporter(pData, std::move(strFileName), Blocks::EDialect::Wide)
    {
    }
};

/// Reads records that begin with "_+", in blocks or as plain lines: names of 12 characters, codes.
class CIEBlockPointImporter : public CIEBlockStreamImporter {
public:
    CIEBlockPointImporter(CIEData* pData, CString strFileName)
        : CIEBlockStreamImporter(pData, std::move(strFileName), Blocks::EDialect::Narrow)
    {
    }
};
