// Drawings of many programs. The collection isn't part of the project; its place is told by ALIDADE_CORPUS.
#include "drawing.h"
#include "support/places.h"

#include <set>

namespace {

namespace fs = std::filesystem;

class CorpusDrawings : public Drawing::CDrawingTest {
protected:
    void SetUp() override
    {
        const char* const pPlace = std::getenv("ALIDADE_CORPUS");
        m_strFolder = pPlace ? CString(pPlace) : SourcePath("../shared/corpus");
        if (!fs::exists(m_strFolder + "/dxf"))
            GTEST_SKIP() << "no collection of drawings: " << m_strFolder << "; ALIDADE_CORPUS can name its folder";
    }

    /// The drawings of a folder below, in order.
    [[nodiscard]] std::set<CString> Files(const char* pFolder) const
    {
        std::set<CString> files;
        for (const fs::directory_entry& entry : fs::directory_iterator(m_strFolder + "/" + pFolder)) {
            if (entry.path().extension() == ".dxf")
                files.insert(entry.path().string());
        }
        return files;
    }

    EIEResult ImportFile(CIEData& job, const CString& strFile)
    {
        m_Ledger.Clear();
        job.SetObserver(&m_Ledger);
        const EIEResult eResult = ImportInTheSameThread(&job, strFile, Drawing::kImportCode);
        job.SetObserver(nullptr);
        EXPECT_EQ(FindNumberFault(job), "") << strFile;
        return eResult;
    }

    CString m_strFolder;
};

TEST_F(CorpusDrawings, EveryTextDrawingComesIn)
{
    int nObjects = 0, nLayers = 0, nFaces = 0;
    for (const CString& strFile : Files("dxf")) {
        CIEData job;
        EXPECT_EQ(ImportFile(job, strFile), IE_OK) << strFile;
        // one of them ends within its entities
        EXPECT_EQ(m_Ledger.GetCount(EIENote::DrawingCut), strFile.ends_with("gdal-header_extended.dxf") ? 1 : 0)
            << strFile;
        nObjects += job.GetNumberOfObjectsInAllDatasets();
        nLayers += job.GetIEDrawDictionary()->GetNumberOfLayers();
        if (const CIESurface* const pSurface = job.GetDatasetAt(0)->GetSurfaceAt(0))
            nFaces += pSurface->GetNumberOfTriangles();
    }
    RecordProperty("objects", nObjects);
    EXPECT_GT(nObjects, 1000);
    EXPECT_GT(nLayers, 100);
    EXPECT_GT(nFaces, 100);
}

/// The binary form of these drawings has another mark and shorter codes.
TEST_F(CorpusDrawings, BinaryDrawingsOfOthersAreToldApart)
{
    for (const CString& strFile : Files("dxf-binary")) {
        CIEData job;
        EXPECT_EQ(ImportFile(job, strFile), IE_BAD_CONTENT) << strFile;
        EXPECT_EQ(m_Ledger.GetCount(EIENote::DrawingOtherBinary), 1) << strFile;
        EXPECT_EQ(job.GetNumberOfObjectsInAllDatasets(), 0) << strFile;
    }
}

} // namespace
