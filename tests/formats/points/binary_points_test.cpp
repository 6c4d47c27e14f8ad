#include "formats/points/points_fixture.h"
#include "support/places.h"
#include "transfer/factory.h"
#include "vellumlib/little_endian.h"

#include <gmock/gmock.h>

#include <limits>

namespace {

using testing::ElementsAre;

constexpr int kRead = 18, kWrite = 20;

class BinaryPointsTest : public CPointsTest {};

std::unique_ptr<CIEData> MakeJob(EDIST_UNITS units, TIEJobInfo::ECSType type = TIEJobInfo::Plane)
{
    auto pJob = std::make_unique<CIEData>();
    pJob->GetJobInfo()->SetDistUnits(units);
    pJob->GetJobInfo()->SetCSType(type);
    CIEDataset& dataset = *pJob->AddDataset(std::make_unique<CIEDataset>("Site"));
    GiveCode(AddPoint(dataset, "7", 1200, -2400.25, 12.5), AddCode(*pJob, "ROAD"));
    AddPoint(dataset, "X", 0.1, 0.2, -0.3);
    AddLine<CIEPolyLine>(dataset, "8", {MakeStation("8", 1, 2, 3), MakeStation("8", 4, 5, 6)});
    GiveCode(AddPoint(dataset, "Y", 1e9, -1e9, 0), AddCode(*pJob, "0123456789ABCDEF"));
    GiveCode(AddPoint(dataset, "-1", 1, 2, 3), AddCode(*pJob, "0123456789ABCDEFG"));
    CIEObject& point = AddPoint(dataset, "007", 4, 5, 6);
    GiveCode(point, AddCode(*pJob, "Stra\u00DFe"));
    GiveCode(point, AddCode(*pJob, "second"));
    GiveCode(AddPoint(dataset, "12", -0.0, 1.0 / 3, 1e-300), AddCode(*pJob, CString("A\0B", 3)));
    return pJob;
}

TEST_F(BinaryPointsTest, WritesWhatItsRulesSay)
{
    ExpectGolden("binary-points/metres.bin", Export(MakeJob(EDIST_UNITS::Meters), kWrite));
    EXPECT_THAT(Notes(), ElementsAre("object.name X", "object.kind 8", "object.name Y", "object.codes -1",
                                     "object.name 007", "object.codes 007", "object.codes 12"));
    ExpectGolden("binary-points/us_feet.bin", Export(MakeJob(EDIST_UNITS::USSurveyFeet), kWrite));
    ExpectGolden("binary-points/geographic_feet.bin",
                 Export(MakeJob(EDIST_UNITS::USSurveyFeet, TIEJobInfo::Geographic), kWrite));
}

TEST_F(BinaryPointsTest, ReadsBackToTheLastBit)
{
    const CString strPoints = "point 7 1200 -2400.25 12.5 ROAD()\npoint 13 0.1 0.2 -0.3\n"
                              "point 14 1000000000 -1000000000 0 0123456789ABCDEF()\n"
                              "point -1 1 2 3 0123456789ABCDEF()\npoint 7 4 5 6 Stra\u00DFe()\n";
    CIEData job;
    const TImported read = Import(job, kRead, ReadFile(DataPath("binary-points/metres.bin")));
    EXPECT_EQ(read.m_eResult, IE_OK);
    EXPECT_EQ(read.m_strObjects.substr(0, strPoints.size()), strPoints);
    const CIEStation& last = *job.GetDatasetAt(0)->GetObjectAt(5)->GetStation(0);
    EXPECT_EQ(last.m_dEast, 1.0 / 3);
    EXPECT_EQ(last.GetHeight(), 1e-300);
}

TEST_F(BinaryPointsTest, NumbersThatNoReaderTakesAreTold)
{
    struct {
        std::vector<const char*> m_Names;
        int m_nHighest;
        std::vector<CString> m_Notes;
    } const rows[] = {
        {{}, 0, {}},
        {{"-5", "-7"}, 0, {}},
        {{"7", "X", "Y"}, 9, {"object.name X", "object.name Y"}},
        {{"99999", "X"}, 100000, {"object.name X"}},
        {{"100000", "X"}, 100001, {"job.point-numbers ", "object.name X", "line.unreadable X"}},
        {{"-100001"}, 0, {"line.unreadable -100001"}},
        {{"+1", " 2", "3.0", ""}, 4, {"object.name +1", "object.name  2", "object.name 3.0", "object.name "}},
        {{"2147483647", "X"},
         -2147483647 - 1, // as 32 bits have it
         {"job.point-numbers ", "line.unreadable 2147483647", "object.name X", "line.unreadable X"}},
    };
    for (const auto& row : rows) {
        auto pJob = std::make_unique<CIEData>();
        CIEDataset& dataset = *pJob->AddDataset(std::make_unique<CIEDataset>("Site"));
        for (const char* const pName : row.m_Names)
            AddPoint(dataset, pName);
        const CString bytes = Export(std::move(pJob), kWrite);
        ASSERT_EQ(bytes.size(), 38 + row.m_Names.size() * 45);
        EXPECT_EQ(LittleEndian::ReadInt32(bytes, 30), row.m_nHighest);
        EXPECT_EQ(Notes(), row.m_Notes);
    }
    for (const double dValue : {1.0000001e9, -HUGE_VAL, std::numeric_limits<double>::quiet_NaN()}) {
        auto pJob = std::make_unique<CIEData>();
        AddPoint(*pJob->AddDataset(std::make_unique<CIEDataset>("Site")), "1", 1, dValue, 3);
        Export(std::move(pJob), kWrite);
        EXPECT_THAT(Notes(), ElementsAre("line.unreadable 1"));
    }
}

/// The header of a file covers all datasets that stand in it.
TEST_F(BinaryPointsTest, NumbersOfAllDatasetsAreApart)
{
    auto pJob = std::make_unique<CIEData>();
    AddPoint(*pJob->AddDataset(std::make_unique<CIEDataset>("First")), "X");
    AddPoint(*pJob->AddDataset(std::make_unique<CIEDataset>("Second")), "1");
    CIEData back;
    EXPECT_EQ(Import(back, kRead, Export(std::move(pJob), kWrite)).m_strObjects, "point 2 1 2 3\npoint 1 1 2 3\n");
}

TEST_F(BinaryPointsTest, ACodeIsCutBetweenCharacters)
{
    struct {
        const char* m_pCodePage;
        const char* m_pCode;
        const char* m_pRead;
    } const rows[] = {
        {"CP1252", "\u00E4\u00E4\u00E4\u00E4\u00E4\u00E4\u00E4\u00E4\u00E4\u00E4\u00E4\u00E4\u00E4\u00E4\u00E4\u00E4",
         nullptr},
        {"UTF-8", "12345678901234\u00E4", nullptr},
        {"UTF-8", "123456789012345\u00E4", "123456789012345"},
        {"SHIFT_JIS", "123456789012345\u6E2C", "123456789012345"},
        {"CP1252", "\u6E2C", "?"},
    };
    for (const auto& row : rows) {
        auto pJob = std::make_unique<CIEData>();
        ChangeSettings(*pJob, [&](TIESettings& settings) { settings.m_strCodePage = row.m_pCodePage; });
        const auto pBack = MakeJobLike(*pJob);
        GiveCode(AddPoint(*pJob->AddDataset(std::make_unique<CIEDataset>("Site")), "1"), AddCode(*pJob, row.m_pCode));
        const CString bytes = Export(std::move(pJob), kWrite);
        EXPECT_EQ(Import(*pBack, kRead, bytes).m_strObjects,
                  "point 1 1 2 3 " + CString(row.m_pRead ? row.m_pRead : row.m_pCode) + "()\n");
        EXPECT_EQ(m_Ledger.GetCount(EIENote::ObjectCodes), row.m_pRead ? 1 : 0) << row.m_pCode;
    }
}

CString Header(int nHighest, int nDeleted)
{
    CString bytes(30, 'x'); // nobody looks at the mark
    LittleEndian::AppendInt32(bytes, nHighest);
    LittleEndian::AppendInt32(bytes, nDeleted);
    return bytes;
}

CString Record(int nNumber, double dNorth = 1, double dEast = 2, double dHeight = 3, CString strCode = {})
{
    CString bytes;
    LittleEndian::AppendInt32(bytes, nNumber);
    for (const double dValue : {dNorth, dEast, dHeight})
        LittleEndian::AppendDouble(bytes, dValue);
    strCode.resize(17);
    return bytes + strCode;
}

TEST_F(BinaryPointsTest, Reads)
{
    const double kNan = std::numeric_limits<double>::quiet_NaN();
    struct {
        CString m_strBytes;
        const char* m_pObjects;
        EIEResult m_eResult;
        const char* m_pNotes; ///< offset and code of each
    } const rows[] = {
        {Header(0, -1) + Record(7) + Record(-1), "point 7 1 2 3\npoint -1 1 2 3\n", IE_OK, ""},
        {Header(100000, 100000) + Record(7) + Record(-1) + Record(-2), "point 7 1 2 3\npoint -2 1 2 3\n", IE_OK,
         "83:record.deleted "},
        {Header(0, 0) + Record(-1), "", IE_NOTHING_DONE, "38:record.deleted "},
        {Header(0, -1), "", IE_NOTHING_DONE, ""},
        {Header(0, -1).substr(0, 37), "", IE_BAD_CONTENT, "0:file.header "},
        {Header(-1, -1) + Record(1), "", IE_BAD_CONTENT, "30:file.header "},
        {Header(100001, -1) + Record(1), "", IE_BAD_CONTENT, "30:file.header "},
        {Header(0, -100001) + Record(1), "", IE_BAD_CONTENT, "34:file.header "},
        {Header(0, -1) + Record(1) + Record(2).substr(0, 44), "", IE_BAD_CONTENT, "83:record.short "},
        {Header(0, -1) + Record(1) + Record(100001), "", IE_BAD_CONTENT, "83:record.number "},
        {Header(0, -1) + Record(1) + Record(-100001), "", IE_BAD_CONTENT, "83:record.number "},
        {Header(0, -1) + Record(100000, 1e9, -1e9, 0), "point 100000 1000000000 -1000000000 0\n", IE_OK, ""},
        {Header(0, -1) + Record(1, 1.1e9), "", IE_BAD_CONTENT, "38:record.coordinates "},
        {Header(0, 0) + Record(-1, 1, 2, kNan), "", IE_BAD_CONTENT, "38:record.coordinates "},
        {Header(0, -1) + Record(1, 1, 2, 3, CString("A\0B", 3)), "point 1 1 2 3 A()\n", IE_OK, ""},
        {Header(0, -1) + Record(1, 1, 2, 3, "0123456789abcdefg"), "point 1 1 2 3 0123456789abcdefg()\n", IE_OK, ""},
        {Header(0, -1) + Record(1, 1, 2, 3, "\x81"), "point 1 1 2 3 \uFFFD()\n", IE_OK, "38:record.bad-characters "},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(&row - rows);
        WriteFile(m_Folder / "in", row.m_strBytes);
        CIEData job;
        CIELedger ledger;
        job.SetObserver(&ledger);
        EXPECT_EQ(ImportInTheSameThread(&job, m_Folder / "in", kRead), row.m_eResult);
        EXPECT_EQ(Describe(job), row.m_pObjects);
        EXPECT_EQ(job.GetNumberOfDatasets(), row.m_eResult > 0 ? 1 : 0);
        CString strNotes;
        for (const TIENote& note : ledger.GetNotes())
            strNotes += std::to_string(note.m_Place.m_nOffset) + ":" + note.GetWord() + " ";
        EXPECT_EQ(strNotes, row.m_pNotes);
    }
}

TEST_F(BinaryPointsTest, LengthsAreInTheJobsUnits)
{
    for (const bool bGeographic : {false, true}) {
        CIEData job;
        job.GetJobInfo()->SetDistUnits(EDIST_UNITS::InternationalFeet);
        job.GetJobInfo()->SetCSType(bGeographic ? TIEJobInfo::Geographic : TIEJobInfo::Plane);
        EXPECT_EQ(Import(job, kRead, Header(0, -1) + Record(1, 10, 20, 30)).m_strObjects,
                  bGeographic ? "point 1 10 20 9.144\n" : "point 1 3.048 6.096 9.144\n");
    }
}

TEST_F(BinaryPointsTest, ItsFileIsntAmongThoseThatAStopTakesAway)
{
    CIEData job;
    AddPoint(*job.AddDataset(std::make_unique<CIEDataset>("Site")), "1");
    const CString strFile = m_Folder / "out.bin";
    EXPECT_EQ(CreateExporter(&job, strFile, 20)->Export(), IE_OK);
    EXPECT_TRUE(job.GetCreatedFileNames().empty());
    EXPECT_EQ(m_Folder.List(), "out.bin ");
}

} // namespace
