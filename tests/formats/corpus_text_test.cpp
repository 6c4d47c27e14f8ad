#include "formats/row_fixture.h"
#include "support/places.h"

#include <set>
#include <sstream>

namespace {

struct TList {
    const char* m_pFile;
    const char* m_pFields;
    char m_cDelimiter;
    bool m_bGeographic;
    int m_nPoints;
};

const TList kLists[] = {
    {"bezi-flattri-pnezd.asc", "PNEZD", ',', false, 7},
    {"bezi-samepnts-pnezd.asc", "PNEZD", ',', false, 8},
    {"ddbim-xyz-grid.txt", "east,north,height", ' ', false, 2040},
    {"trails-latlonh.txt", "east,north,height", ' ', true, 8},
    {"trails-points-space.txt", "name,east,north,height,codes", ' ', false, 446},
};

/// The sums of the three numbers that stand side by side on each line, counted apart from the library.
struct TSums {
    int m_nLines = 0;
    double m_dFirst = 0, m_dSecond = 0, m_dHeight = 0;
};

TSums Count(const CString& strFile, const TList& list)
{
    TSums sums;
    std::istringstream lines(ReadFile(strFile));
    lines.imbue(std::locale::classic());
    for (std::string line; std::getline(lines, line);) {
        std::replace(line.begin(), line.end(), ',', ' ');
        std::istringstream fields(line);
        fields.imbue(std::locale::classic());
        std::string name;
        double dFirst = 0, dSecond = 0, dHeight = 0;
        if (*list.m_pFields != 'e')
            fields >> name;
        fields >> dFirst >> dSecond >> dHeight;
        EXPECT_TRUE(fields) << line;
        ++sums.m_nLines;
        sums.m_dFirst += dFirst;
        sums.m_dSecond += dSecond;
        sums.m_dHeight += dHeight;
    }
    return sums;
}

class CorpusText : public CRowTest {
protected:
    void SetUp() override
    {
        const char* const pPlace = std::getenv("ALIDADE_CORPUS");
        m_strFolder = (pPlace ? CString(pPlace) : SourcePath("../shared/corpus")) + "/survey-text/";
        if (!std::filesystem::exists(m_strFolder))
            GTEST_SKIP() << "no collection of survey files: " << m_strFolder << "; ALIDADE_CORPUS can name its folder";
    }

    CString m_strFolder;
};

TEST_F(CorpusText, EveryPointOfTheListsComesIn)
{
    for (const TList& list : kLists) {
        SCOPED_TRACE(list.m_pFile);
        const CString strFile = m_strFolder + list.m_pFile;
        CIELedger ledger;
        CIEData job;
        job.SetObserver(&ledger);
        SetLayout(job, list.m_pFields, static_cast<char16_t>(list.m_cDelimiter));
        if (list.m_bGeographic)
            job.GetJobInfo()->SetCSType(TIEJobInfo::Geographic);
        EXPECT_EQ(ImportInTheSameThread(&job, strFile, 0), IE_OK);
        EXPECT_TRUE(ledger.IsEmpty());

        const TSums expected = Count(strFile, list);
        TSums sums;
        const CIEDataset& dataset = *job.GetDatasetAt(0);
        for (int i = 0; const CIEObject* const pObject = dataset.GetObjectAt(i); ++i) {
            const bool bNorthFirst = *list.m_pFields == 'P';
            for (int j = 0; const CIEStation* const pStation = pObject->GetStation(j); ++j) {
                ++sums.m_nLines;
                sums.m_dFirst += bNorthFirst ? pStation->m_dNorth : pStation->m_dEast;
                sums.m_dSecond += bNorthFirst ? pStation->m_dEast : pStation->m_dNorth;
                sums.m_dHeight += pStation->GetHeight();
            }
        }
        EXPECT_EQ(sums.m_nLines, list.m_nPoints);
        EXPECT_EQ(sums.m_nLines, expected.m_nLines);
        EXPECT_DOUBLE_EQ(sums.m_dFirst, expected.m_dFirst);
        EXPECT_DOUBLE_EQ(sums.m_dSecond, expected.m_dSecond);
        EXPECT_DOUBLE_EQ(sums.m_dHeight, expected.m_dHeight);
    }
}

TEST_F(CorpusText, CommaListsGoOutThroughEveryFormOfPointsAndBack)
{
    constexpr int kNorthFirst = 28;
    constexpr double kNear = 5.01e-4; // the coarsest forms have three decimals
    for (const TList& list : {kLists[0], kLists[1]}) {
        CIEData job;
        ASSERT_EQ(ImportInTheSameThread(&job, m_strFolder + list.m_pFile, kNorthFirst), IE_OK);
        const CIEDataset& dataset = *job.GetDatasetAt(0);
        EXPECT_EQ(dataset.GetNumberOfElements(-1, 2, false, false), Count(m_strFolder + list.m_pFile, list).m_nLines);
        int nForms = 0;
        for (const auto& [pOut, pIn] : BuiltPairs()) {
            if (!(pIn->m_nCarries & CARRIES_POINTS))
                continue;
            SCOPED_TRACE(CString(list.m_pFile) + " " + pOut->m_pKey);
            auto pCopy = std::make_unique<CIEData>();
            ASSERT_EQ(ImportInTheSameThread(pCopy.get(), m_strFolder + list.m_pFile, kNorthFirst), IE_OK);
            const CString strFile = FilesOf(*pOut, FileOf(*pOut))[0];
            EXPECT_EQ(Export(std::move(pCopy), *pOut, FileOf(*pOut)), IE_OK);
            std::set<CString> lost; // names of points whose heights don't come back, as was told
            for (const TIENote& note : m_Ledger.GetNotes()) {
                if (CString(note.GetWord()) == "object.height")
                    lost.insert(note.m_strRecord);
            }
            CIEData back;
            EXPECT_EQ(ImportInTheSameThread(&back, strFile, pIn->m_nCode), IE_OK);
            back.GetCurDataset(false)->RemoveObjectsIf(
                [](const CIEObject& object) { return object.GetStateType() == CIEObject::InBlock; });
            ASSERT_EQ(back.GetNumberOfObjectsInAllDatasets(), dataset.GetNumberOfElements(-1, 2, false, false));
            for (int i = 0; const CIEObject* const pObject = dataset.GetObjectAt(i); ++i) {
                const CIEObject& other = *back.GetDatasetAt(0)->GetObjectAt(i);
                EXPECT_EQ(other.GetName(), pObject->GetName());
                EXPECT_NEAR(other.GetStation(0)->m_dNorth, pObject->GetStation(0)->m_dNorth, kNear);
                EXPECT_NEAR(other.GetStation(0)->m_dEast, pObject->GetStation(0)->m_dEast, kNear);
                if (!lost.contains(pObject->GetName())) {
                    EXPECT_NEAR(other.GetStation(0)->GetHeight(), pObject->GetStation(0)->GetHeight(), kNear);
                }
            }
            ++nForms;
        }
        EXPECT_GT(nForms, 10);
    }
}

} // namespace
