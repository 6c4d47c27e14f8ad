// The read loop: what a stop and a want of memory leave behind, and how often the memory is looked at.

#include "alidade/platform/system.h"
#include "frame/point_importer.h"
#include "support/files.h"
#include "support/jobs.h"

namespace {

/// Sets the stop while it reads the last of `nLines` lines.
class CStoppingImporter : public CIEPointImporter {
public:
    CStoppingImporter(CIEData* pData, const CString& strFile, int nLines)
        : CIEPointImporter(pData, strFile), m_nLines(nLines)
    {
    }
    EIEResult ParseLine(std::string_view line, std::unique_ptr<CIEObject>& pObject) override
    {
        if (--m_nLines == 0)
            CIEData::m_bStopProcess = true;
        return CIEPointImporter::ParseLine(line, pObject);
    }

private:
    int m_nLines;
};

/// A ring of `nLines` lines under one name, which closes with its last line.
CString Ring(int nLines)
{
    CString text;
    for (int i = 0; i < nLines - 1; ++i)
        text += "R," + std::to_string(i) + ",0,0\r\n";
    return text + "R,0,0,0\r\n";
}

class ImporterTest : public testing::Test {
protected:
    ~ImporterTest() override { Platform::SetFreeMemory({}); }

    CString Write(const CString& text)
    {
        const CString strFile = m_Folder / "in.txt";
        WriteFile(strFile, text);
        SetLayout(m_Job, "name,north,east,height");
        return strFile;
    }

    CTempFolder m_Folder;
    TStopGuard m_Guard;
    CIEData m_Job;
};

TEST_F(ImporterTest, AfterAStopAClosedLineStaysALine)
{
    CStoppingImporter importer(&m_Job, Write(Ring(4)), 4);
    EXPECT_EQ(importer.Import(), IE_STOPPED);
    EXPECT_EQ(Describe(m_Job).find("polygon"), CString::npos) << Describe(m_Job);
    EXPECT_EQ(m_Job.GetDatasetAt(0)->GetObjectAt(0)->GetNumberOfStations(), 4);
}

TEST_F(ImporterTest, WithoutMemoryAClosedLineStaysALine)
{
    Platform::SetFreeMemory([] { return std::uint64_t{0x3FFFFF}; });
    CIEPointImporter importer(&m_Job, Write(Ring(1001) + "R,1,1,1\r\n"));
    EXPECT_EQ(importer.Import(), IE_OUT_OF_MEMORY);
    ASSERT_EQ(m_Job.GetNumberOfObjectsInAllDatasets(), 1);
    EXPECT_EQ(m_Job.GetDatasetAt(0)->GetObjectAt(0)->GetType(), EIEObjectsType::PolyLine);
}

TEST_F(ImporterTest, MemoryIsLookedAtEvery1001Lines)
{
    int nLooks = 0;
    Platform::SetFreeMemory([&nLooks] { return std::uint64_t{++nLooks < 3 ? 0x400000U : 0x3FFFFFU}; });
    CString text;
    for (int i = 0; i < 5000; ++i)
        text += "P" + std::to_string(i) + ",1,2,3\r\n";
    CIEPointImporter importer(&m_Job, Write(text));
    EXPECT_EQ(importer.Import(), IE_OUT_OF_MEMORY);
    EXPECT_EQ(m_Job.GetNumberOfObjectsInAllDatasets(), 3 * 1001);
}

TEST_F(ImporterTest, ALineOfDelimitersAloneIsntSplit)
{
    CIELedger ledger;
    m_Job.SetObserver(&ledger);
    CIEPointImporter importer(&m_Job, Write("P1,1,2,3\r\n" + CString(50000, ',') + "\r\n"));
    EXPECT_EQ(importer.Import(), IE_PARTIAL);
    EXPECT_EQ(ledger.GetCount(EIENote::LineTooLong), 1);
}

} // namespace
