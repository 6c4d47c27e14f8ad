#include "alidade/formats/points/sima.h"
#include "formats/points/points_fixture.h"
#include "support/places.h"

#include <gmock/gmock.h>

namespace {

using testing::ElementsAre;

constexpr int kReadNamed = 49;
constexpr int kReadNumbers = 50;
constexpr int kWriteNamed = 63;
constexpr int kWriteNumbers = 66;

class SimaTest : public CPointsTest {};

struct TCase {
    const char* m_pText;
    const char* m_pObjects; ///< without the last line end
    EIEResult m_eResult = IE_OK;
    const char* m_pNotes = "";
    int m_nCode = kReadNamed;
};

// clang-format off
#define HEAD "G00,03,job,\r\nA00,\r\n"
#define P "A01,1,P,1,2,3,\r\n"
const TCase kCases[] = {
    {HEAD P "A01,7,Q,-4.5,+5,1e1,\r\nA99,\r\n",  "point P 1 2 3\npoint Q -4.5 5 10"},
    {HEAD P "A99,",                              "point P 1 2 3"},
    {HEAD P,                                     "point P 1 2 3"},
    {HEAD P "\r\n",                              "point P 1 2 3"},
    {"\xEF\xBB\xBF" HEAD P,                      "point P 1 2 3"},
    {HEAD "A99,",                                ""},
    // the opening lines
    {"",                                         "", IE_NOTHING_DONE},
    {HEAD,                                       "", IE_NOTHING_DONE},
    {"G00",                                      "", IE_NOTHING_DONE, "1:sima.no-data-start "},
    {"G00\nA00,\n" P,                            "point P 1 2 3"},
    {"\r\n" HEAD P,                              "", IE_NOTHING_DONE, "1:sima.no-job-line "},
    {"G001,03,job,\r\nA00,\r\n" P,               "", IE_NOTHING_DONE, "1:sima.no-job-line "},
    {" G00,03,job,\r\nA00,\r\n" P,               "", IE_NOTHING_DONE, "1:sima.no-job-line "},
    {"G00,03,job,\r\nA00\r\n" P,                 "", IE_NOTHING_DONE, "2:sima.no-data-start "},
    {"G00,03,job,\r\n" P,                        "", IE_NOTHING_DONE, "2:sima.no-data-start "},
    // a bad record ends the file, and what was read stays
    {HEAD P "A01,2,,1,2,3,\r\n" P,               "point P 1 2 3", IE_BAD_CONTENT, "4:line.name "},
    {HEAD P "A01,2,Q,x,2,3,\r\n" P,              "point P 1 2 3", IE_BAD_CONTENT, "4:line.number "},
    {HEAD P "A01,2,Q,1,,3,\r\n" P,               "point P 1 2 3", IE_BAD_CONTENT, "4:line.number "},
    {HEAD P "A01,2,Q,1,nan,3,\r\n" P,            "point P 1 2 3", IE_BAD_CONTENT, "4:line.number "},
    {HEAD P "A01,2,Q,1\r\n" P,                   "point P 1 2 3", IE_BAD_CONTENT, "4:line.number "},
    {HEAD P "A01\r\n",                           "point P 1 2 3", IE_BAD_CONTENT, "4:line.name "},
    {HEAD P "\r\n" P,                            "point P 1 2 3", IE_BAD_CONTENT, "4:line.empty "},
    {HEAD P "A99\r\n",                           "point P 1 2 3", IE_BAD_CONTENT, "4:line.name "},
    {HEAD "A01,x,P,1,2,3,",                      "point P 1 2 3"},
    // a height may be missing
    {HEAD "A01,1,P,1,2,,\r\n",                   "point P 1 2 0"},
    {HEAD P "A01,2,Q,1,2\r\n",                   "point P 1 2 3\npoint Q 1 2 0"},
    {HEAD P "A01,2,Q,1,2,x,\r\n",                "point P 1 2 3\npoint Q 1 2 0", IE_OK, "4:line.height "},
    // the form with numbers
    {HEAD "A01,17,,1,2,3,\r\nA99,\r\n",          "point 17 1 2 3", IE_OK, "", kReadNumbers},
    {HEAD P "A99,\r\n",                          "point 1 1 2 3", IE_OK, "", kReadNumbers},
    {HEAD "A01,,P,1,2,3,\r\n",                   "", IE_BAD_CONTENT, "3:line.name ", kReadNumbers},
    // nothing is read behind the end
    {HEAD P "A99,\r\n\r\n",                      "point P 1 2 3"},
    {HEAD P "A99,\r\n" P,                        "point P 1 2 3", IE_OK, "5:line.behind-end "},
};
#undef HEAD
#undef P
// clang-format on

TEST_F(SimaTest, Reads)
{
    for (const TCase& row : kCases) {
        SCOPED_TRACE(row.m_pText);
        CIEData job;
        job.GetJobInfo()->SetDistUnits(EDIST_UNITS::USSurveyFeet); // the values come in as they stand all the same
        const CString strObjects = *row.m_pObjects ? CString(row.m_pObjects) + "\n" : CString();
        EXPECT_EQ(Import(job, row.m_nCode, row.m_pText), (TImported{row.m_eResult, strObjects, row.m_pNotes}));
        ASSERT_EQ(job.GetNumberOfDatasets(), 1);
        EXPECT_EQ(job.GetCurDatasetID(), 0);
        EXPECT_EQ(job.GetDatasetAt(0)->GetName(), "Import dataset");
    }
}

std::unique_ptr<CIEData> MakeJob(EDIST_UNITS units, TIEJobInfo::ECSType type = TIEJobInfo::Plane)
{
    auto pJob = std::make_unique<CIEData>();
    pJob->GetJobInfo()->m_strJobName = "Site, north";
    pJob->GetJobInfo()->SetDistUnits(units);
    pJob->GetJobInfo()->SetCSType(type);
    CIEDataset& dataset = *pJob->AddDataset(std::make_unique<CIEDataset>("Site"));
    AddPoint(dataset, "P1", 1200, -2400.25, 12.5);
    AddLine<CIEPolyLine>(dataset, "L", {MakeStation("L", 1, 2, 3), MakeStation("L", 4, 5, 6)});
    AddPoint(dataset, "ä, b", -0.0004, -0.0006, 0.0005);
    AddLine<CIEPolygon>(dataset, "R",
                        {MakeStation("R", 1, 2, 3), MakeStation("R", 4, 5, 6), MakeStation("R", 1, 2, 3)});
    AddPoint<CIEGPSPosition>(dataset, "G", 500000.25, 400000.5, 100);
    dataset.Add(std::make_unique<CIEArc>())->SetName("arc");
    AddPoint<CIEPTLPoint>(dataset, "K", 5, 6, 7);
    return pJob;
}

TEST_F(SimaTest, WritesWhatItsRulesSay)
{
    ExpectGolden("sima/metres.sim", Export(MakeJob(EDIST_UNITS::Meters), kWriteNamed));
    EXPECT_THAT(Notes(), ElementsAre("object.kind L", "line.unreadable ä, b", "object.kind R", "object.point-kind G",
                                     "object.kind arc", "object.point-kind K"));
    ExpectGolden("sima/us_feet.sim", Export(MakeJob(EDIST_UNITS::USSurveyFeet), kWriteNamed));
    EXPECT_EQ(m_Ledger.GetCount(EIENote::JobUnits), 1);
    ExpectGolden("sima/geographic.sim",
                 Export(MakeJob(EDIST_UNITS::USSurveyFeet, TIEJobInfo::Geographic), kWriteNamed));
    EXPECT_EQ(m_Ledger.GetCount(EIENote::JobGeographic), 1);
    ExpectGolden("sima/numbers.sim", Export(MakeJob(EDIST_UNITS::Meters), kWriteNumbers));
    EXPECT_EQ(m_Ledger.GetCount(EIENote::ObjectName), 4);

    auto pEmpty = std::make_unique<CIEData>();
    EXPECT_EQ(Export(MakeJobLike(*pEmpty), kWriteNamed), "G00,03,,\r\nA00,\r\nA99,\r\n");
    pEmpty->GetJobInfo()->m_strJobName = "two\r\nlines";
    EXPECT_EQ(Export(std::move(pEmpty), kWriteNamed), "G00,03,two  lines,\r\nA00,\r\nA99,\r\n");
}

TEST_F(SimaTest, ReadingNamesFromAFileOfNumbersFails)
{
    const CString bytes = Export(MakeJob(EDIST_UNITS::Meters), kWriteNumbers);
    CIEData named, numbers;
    EXPECT_EQ(Import(named, kReadNamed, bytes), (TImported{IE_BAD_CONTENT, "", "3:line.name "}));
    EXPECT_EQ(Import(numbers, kReadNumbers, bytes).m_strObjects,
              "point 1 1200 -2400.25 12.5\npoint 2 0 -0.001 0.001\npoint 3 500000.25 400000.5 100\npoint 4 5 6 7\n");
}

TEST_F(SimaTest, ACopyOfAnExporterGoesOnWhereTheFirstStands)
{
    const auto pJob = MakeJob(EDIST_UNITS::Meters);
    const CString strFile = m_Folder / "out.sim";
    {
        CSimaPtExporterJ first(pJob.get(), strFile, false);
        first.SingleStep();
        first.SingleStep(); // the head and point 1
        CSimaPtExporterJ second(pJob.get(), m_Folder / "unused.sim", true);
        second = first;
        CSimaPtExporterJ third(second);
        EXPECT_EQ(third.Export(), IE_OK);
    }
    EXPECT_EQ(ReadFile(strFile), ReadFile(DataPath("sima/metres.sim")));
    EXPECT_EQ(m_Folder.List(), "out.sim ");
}

} // namespace
