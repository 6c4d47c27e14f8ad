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

/// Objects without their numbers, which have fewer digits in text form, and the names of codes, which are the files'.
CString WithoutNumbers(const CIEData& job)
{
    CString text = Drawing::TellJob(job);
    std::erase_if(text, [](char c) { return (c >= '0' && c <= '9') || c == '.' || c == '-'; });
    for (const std::string_view word : {"ascii", "binary"}) {
        for (std::size_t n = 0; (n = text.find(word, n)) != CString::npos;)
            text.erase(n, word.size());
    }
    return text;
}

/// The binary form of other programs. Some of the drawings lie there in both forms.
TEST_F(CorpusDrawings, BinaryDrawingsOfOthersComeIn)
{
    int nObjects = 0, nPairs = 0;
    for (const CString& strFile : Files("dxf-binary")) {
        CIEData job;
        EXPECT_EQ(ImportFile(job, strFile), IE_OK) << strFile;
        for (const EIENote eFault : {EIENote::DrawingCut, EIENote::DrawingBroken, EIENote::DrawingOtherBinary})
            EXPECT_EQ(m_Ledger.GetCount(eFault), 0) << strFile;
        nObjects += job.GetNumberOfObjectsInAllDatasets();
        CString strText = m_strFolder + "/dxf/" + fs::path(strFile).filename().string();
        if (const std::size_t n = strText.find("-binary.dxf"); n != CString::npos)
            strText.replace(n, CString::npos, "-ascii.dxf");
        if (!fs::exists(strText))
            continue;
        CIEData other;
        EXPECT_EQ(ImportFile(other, strText), IE_OK) << strText;
        EXPECT_EQ(WithoutNumbers(job), WithoutNumbers(other)) << strFile;
        EXPECT_EQ(Drawing::DescribeLayers(job), Drawing::DescribeLayers(other)) << strFile;
        ++nPairs;
    }
    EXPECT_GT(nObjects, 100);
    EXPECT_GT(nPairs, 3);
}

} // namespace
