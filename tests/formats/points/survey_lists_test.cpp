// The lists of GPS positions, of sheet points and of the job history.

#include "formats/points/points_fixture.h"
#include "transfer/factory.h"

#include <gmock/gmock.h>

namespace {

using testing::ElementsAre;

constexpr int kSheetPoints = 15;
constexpr int kJobHistory = 44;
constexpr int kGPSList = 46;

std::unique_ptr<CIEData> MakeJob(const CString& fields, char16_t cDelimiter = u',', bool bHeader = false)
{
    auto pJob = std::make_unique<CIEData>();
    SetLayout(*pJob, fields, cDelimiter, bHeader);
    pJob->AddDataset(std::make_unique<CIEDataset>("Site"));
    return pJob;
}

void SetGeographic(CIEData& job)
{
    job.GetJobInfo()->SetCSType(TIEJobInfo::Geographic);
    job.GetJobInfo()->SetDistUnits(EDIST_UNITS::USSurveyFeet);
    ChangeSettings(job, [](TIESettings& settings) {
        settings.m_eCoordsStyle = ECOORDS_STYLE::DegreesMinutesSeconds;
        settings.m_nNorthDecimals = 4;
        settings.m_nEastDecimals = 2;
        settings.m_nHeightDecimals = 1;
    });
}

CIEGPSPosition& AddPosition(CIEDataset& dataset, const CString& name, double dNorth, double dEast, double dHeight)
{
    return AddPoint<CIEGPSPosition>(dataset, name, dNorth, dEast, dHeight);
}

/// Objects of kinds that neither list holds.
void AddOthers(CIEDataset& dataset)
{
    AddPoint(dataset, "plain");
    AddPoint<CIEPTLPoint>(dataset, "relative").SetPTLParams("A", "B", CIEPTLPoint::Regular);
    AddLine<CIEPolyLine>(dataset, "line", {{1, 2, 3}, {4, 5, 6}});
    AddLine<CIEPolygon>(dataset, "area", {{1, 2, 3}, {4, 5, 6}, {1, 2, 3}});
    dataset.Add(std::make_unique<CIEArc>())->SetName("arc");
}

/// What a receiver said: all, nothing, accuracy alone, satellites of which nothing is told, odd values.
void AddPositions(CIEData& job)
{
    CIEDataset& dataset = *job.GetDatasetAt(0);
    const auto* const pRoad = AddCode(job, "ROAD", {CIEAttrDescription("width", CIEAttrDescription::REAL)});
    CIEGPSPosition& full = AddPosition(dataset, "G1", 1200, 2400.5, 12);
    CIEStation station = *full.GetStation();
    station.SetGeoidHeight(48.25);
    station.SetNotes("by the gate");
    full.SetStation(station);
    full.SetCV({0.0009, 0.0016, 0.0036, 0, 0, 0});
    EXPECT_TRUE(full.SetTime({2026, 3, 7, 5, 9, 2, 250}));
    full.SetDOP({2.5, 0.9, 1.5, 1.75});
    full.SetSolutionType(CIEGPSPosition::Fixed);
    full.SetNumberOfGpsSats(9);
    full.SetNumberOfGlonassSats(5);
    CIECodeValues& code = GiveCode(full, pRoad, {"3.5"});
    code.AddCodeString("s1");
    code.SetControlCode(0, "c1");
    AddOthers(dataset);
    AddPosition(dataset, "G2", 1, 2, 0);
    AddPosition(dataset, "Größe", -3.00049, 4, 5).SetCV({9, 16, 2.25, 1, 1, 1});
    AddPosition(dataset, "G4", 6, 7, 8).SetRawDataType(CIEGPSPosition::SatelliteData);
    CIEGPSPosition& odd = AddPosition(dataset, "two\r\nlines", 0, 0, 0);
    odd.SetDOP({0, 0.0004, -1, 99.9996});
    odd.SetSolutionType(77);
    odd.SetNumberOfGpsSats(12);
}

void AddSheet(CIEData& job, const CString& name, const CIEStation& design,
              std::initializer_list<CIEOffsetStation> measurements, const CIECodeDescription* pCode = nullptr)
{
    auto pSheet = std::make_unique<CIESheetPoint>();
    pSheet->SetName(name);
    pSheet->SetDesignStation(design);
    for (const CIEOffsetStation& measurement : measurements)
        EXPECT_TRUE(pSheet->AddOffsetStation(measurement));
    if (pCode)
        GiveCode(*pSheet, pCode, {"left"}).AddCodeString("7");
    job.GetDatasetAt(0)->Add(std::move(pSheet));
}

/// Values of an offset station in the order in which they are declared.
CIEOffsetStation Measured(CIEStation station, const std::array<double, 8>& values)
{
    CIEOffsetStation measured(std::move(station));
    measured.m_dDeltaNorth = values[0];
    measured.m_dDeltaEast = values[1];
    measured.m_dDeltaHeight = values[2];
    measured.m_dLineStation = values[3];
    measured.m_dLineOffset = values[4];
    measured.m_dDeltaStation = values[5];
    measured.m_dDeltaOffset = values[6];
    measured.m_dDistance = values[7];
    return measured;
}

/// A cut and a fill of one point, points without a measurement, and differences that round to nothing.
void AddSheets(CIEData& job)
{
    const auto* const pKerb = AddCode(job, "KERB", {CIEAttrDescription("side")});
    CIEStation first = MakeStation("S1-1", 1000.02, 1999.99, 100.24);
    first.SetTimeStamps("2026-11-22 09:40:00");
    AddSheet(job, "S1", MakeStation("D1", 1000, 2000, 100),
             {Measured(first, {0.02, -0.01, 0.24, 120.5, -3.25, 0.015, -0.005, 0.0224}),
              Measured(MakeStation("S1-2", 999.98, 2000.01, 99.85), {-0.02, 0.01, -0.15})},
             pKerb);
    AddOthers(*job.GetDatasetAt(0));
    AddSheet(job, "design only", MakeStation("D2", 1, 2, 3), {});
    job.GetDatasetAt(0)->Add(std::make_unique<CIESheetPoint>())->SetName("nothing");
    AddPosition(*job.GetDatasetAt(0), "gps", 1, 2, 3);
    AddSheet(job, "two\r\nlines", CIEStation(),
             {Measured(CIEStation(), {-0.0004, 0.0006, -0.0004, 0, 0, 0, 0, -0.0004})});
}

class SurveyListsTest : public CPointsTest {};

TEST_F(SurveyListsTest, WritesGPSPositionsAsTheRulesSay)
{
    auto pJob = MakeJob("name,north,east,height,geoid,notes,codes,hrms,vrms,date,time,pdop,hdop,vdop,solution,gps,"
                        "glonass,cut",
                        u',', true);
    AddPositions(*pJob);
    ExpectGolden("gps_list/metres.txt", Export(std::move(pJob), kGPSList));

    pJob = MakeJob("glonass,solution,vdop,date,vrms,hrms,name,east,height,code", u';');
    pJob->GetJobInfo()->SetDistUnits(EDIST_UNITS::USSurveyFeet);
    AddPositions(*pJob);
    ExpectGolden("gps_list/us_feet.txt", Export(std::move(pJob), kGPSList));

    pJob = MakeJob("name,north,east,height,hrms,vrms", u'\t', true);
    SetGeographic(*pJob);
    AddPosition(*pJob->GetDatasetAt(0), "Z", 47.37519, -8.9999999, 408).SetCV({0.0009, 0.0016, 0.0036, 0, 0, 0});
    ExpectGolden("gps_list/geographic.txt", Export(std::move(pJob), kGPSList));
}

TEST_F(SurveyListsTest, WritesSheetPointsAsTheRulesSay)
{
    auto pJob = MakeJob("sheet-name,sheet-codes,measured-name,cut,fill,to-grade,measured-time,measurement,line-station,"
                        "line-offset,design-north,design-east,design-height,name,measured-north,measured-east,"
                        "measured-height,delta-north,delta-east,delta-height,delta-station,delta-offset,distance",
                        u',', true);
    AddSheets(*pJob);
    ExpectGolden("sheet_points/metres.txt", Export(std::move(pJob), kSheetPoints));

    pJob = MakeJob("27,20,23,24,25,28,29,30,31,32,33,34,35,36,37,38,39,40,41", u'\t');
    pJob->GetJobInfo()->SetDistUnits(EDIST_UNITS::USSurveyFeet);
    ChangeSettings(*pJob, [](TIESettings& settings) {
        settings.m_nNorthDecimals = 1;
        settings.m_nEastDecimals = 2;
        settings.m_nHeightDecimals = 4;
    });
    AddSheets(*pJob);
    ExpectGolden("sheet_points/us_feet.txt", Export(std::move(pJob), kSheetPoints));

    pJob = MakeJob("sheet-name,design-north,design-east,design-height,measured-north,measured-east,measured-height,"
                   "delta-north,delta-east,line-station",
                   u';', true);
    SetGeographic(*pJob);
    AddSheet(*pJob, "S", CIEStation(47.5, -8.25, 408),
             {Measured(CIEStation(47.50001, -8.250001, 407.9), {12, -1.2, 0, 0.12})});
    ExpectGolden("sheet_points/geographic.txt", Export(std::move(pJob), kSheetPoints));
}

TEST_F(SurveyListsTest, WritesTheJobHistoryAsTheRulesSay)
{
    auto pHistory = std::make_unique<CIEJobHistory>();
    pHistory->AddJHTable({"Stakeout", "P1", {{"cut", "", "0,5, or so"}, {"note", "n", ""}, {"fill", "text", "1"}}});
    pHistory->AddJHTable({"Survey", "", {{"empty", "text", ""}}});
    pHistory->AddJHTable({"", "a,b", {{"", "", ","}, {"größer", "", "a\r\nb"}}});
    pHistory->AddJHTable({"named", "", {{"c,d", "", "1"}}});
    pHistory->AddJHTable({"two\nlines", "", {{"unwritten,\n", "", ""}}});
    auto pJob = MakeJob("name", u';', true); // neither the layout nor its header counts
    AddOthers(*pJob->GetDatasetAt(0));
    pJob->GetDatasetAt(0)->SetJobHistory(std::move(pHistory));
    ExpectGolden("job_history_list/tables.txt", Export(std::move(pJob), kJobHistory));
    EXPECT_THAT(Notes(),
                ElementsAre("history.comma Stakeout P1", "history.tag Stakeout P1", "history.tag Survey ",
                            "history.comma  a,b", "history.comma  a,b", "history.line-end  a,b", "history.comma named ",
                            "history.line-end two\nlines ", "history.tag two\nlines ", "object.kind plain",
                            "object.kind relative", "object.kind line", "object.kind area", "object.kind arc"));
}

TEST_F(SurveyListsTest, WithoutThingsToListThereIsTheHeaderAlone)
{
    constexpr const char* kHeader = "Header>> Delimiter(,) FileFormat(name,cut) <<\r\n";
    for (const int nCode : {kGPSList, kSheetPoints}) {
        for (const bool bHeader : {true, false}) {
            auto pJob = MakeJob("name,cut", u',', bHeader);
            AddOthers(*pJob->GetDatasetAt(0));
            AddSheet(*pJob, "design only", CIEStation(1, 2, 3), {});
            EXPECT_EQ(Export(std::move(pJob), nCode), bHeader ? kHeader : "") << nCode;
        }
    }
}

TEST_F(SurveyListsTest, TheHistoryOfTheCurrentDatasetIsListedTableByTable)
{
    const CString strFile = m_Folder / "out.txt";
    auto pJob = MakeJob("name");
    pJob->AddDataset(std::make_unique<CIEDataset>("Second"))->SetJobHistory(MakeHistory(2));
    pJob->SetCurDataset(0);
    EXPECT_EQ(CreateExporter(pJob.get(), strFile, kJobHistory)->GetNumberOfSteps(), 2);
    EXPECT_EQ(CreateExporter(pJob.get(), strFile, kJobHistory)->Export(), IE_CANNOT_OPEN_FILE);
    EXPECT_EQ(m_Folder.List() + (pJob->GetCreatedFileNames().empty() ? "" : "recorded"), "");

    pJob->SetCurDataset(1);
    const auto pExporter = CreateExporter(pJob.get(), strFile, kJobHistory);
    EXPECT_EQ(pExporter->GetNumberOfSteps(), 4);
    for (const bool bMore : {true, true, true, false})
        EXPECT_EQ(pExporter->SingleStep(), bMore);
    EXPECT_EQ(ReadFile(strFile), "1,Stakeout,P0,cut{0.5}\r\n2,Stakeout,P1,cut{0.5}\r\n");
    EXPECT_EQ(pJob->GetCreatedFileNames(), CStringArray{strFile});

    pJob->GetDatasetAt(1)->SetJobHistory(std::make_unique<CIEJobHistory>());
    EXPECT_EQ(CreateExporter(pJob.get(), strFile, kJobHistory)->Export(), IE_OK);
    EXPECT_EQ(ReadFile(strFile), "");
}

TEST_F(SurveyListsTest, AFailedWriteEndsTheRunWithinItsObject)
{
    constexpr int kRows = 100000;
    const auto count = [&](int nCode, std::unique_ptr<CIEData> pJob) {
        CFileFaults faults;
        faults.m_nDiskSpace = 0;
        const auto pExporter = CreateExporter(pJob.get(), m_Folder / "out.txt", nCode);
        int nSteps = 1;
        while (pExporter->SingleStep())
            ++nSteps;
        EXPECT_EQ(pExporter->GetResult(), IE_OK);
        return nSteps;
    };
    auto pJob = MakeJob("sheet-name,design-north,measured-north");
    for (int i = 0; i < 3; ++i) {
        AddSheet(*pJob, "S", CIEStation(1, 2, 3), {});
        auto& sheet = static_cast<CIESheetPoint&>(*pJob->GetDatasetAt(0)->GetObjectAt(i));
        for (int j = 0; j < kRows; ++j)
            (void)sheet.AddOffsetStation(CIEOffsetStation(CIEStation(1, 2, 3)));
    }
    EXPECT_EQ(count(kSheetPoints, std::move(pJob)), 2) << "the file, and the first object";

    pJob = MakeJob("name,north,east,height");
    for (int i = 0; i < kRows; ++i)
        AddPosition(*pJob->GetDatasetAt(0), "G", 1, 2, 3);
    EXPECT_LT(count(kGPSList, std::move(pJob)), kRows);

    pJob = MakeJob("name");
    pJob->GetDatasetAt(0)->SetJobHistory(MakeHistory(kRows));
    EXPECT_LT(count(kJobHistory, std::move(pJob)), kRows);
}

// clang-format off
#define FILL []([[maybe_unused]] CIEData & job, [[maybe_unused]] CIEDataset & set)
const struct {
    int m_nCode;
    const char* m_pFields;
    void (*m_pFill)(CIEData& job, CIEDataset& set);
    CStringArray m_Notes;
} kTold[] = {
    {kGPSList, "name,north,east,height,geoid,notes,codes,date,time,pdop,hdop,vdop,solution,gps,glonass",
     FILL { AddPositions(job); set.RemoveObjectsIf([](const CIEObject& object) { return object.GetName() != "G1"; }); },
     {"object.gps-data G1"}},
    {kGPSList, "PNEZ", FILL { AddPosition(set, "G", 1, 2, 3); }, {}},
    {kGPSList, "name,north,east,height,cut", FILL { AddPosition(set, "G", 1, 2, 3); }, {"layout.field "}},
    {kGPSList, "name,north,east,height,hrms,time", FILL { AddPosition(set, "G", 1, 2, 3); }, {"object.no-accuracy G", "object.no-time G"}},
    {kGPSList, "hrms", FILL { AddPosition(set, "G", 1, 2, 3).SetCV({1, 0, 0, 0, 0, 0}); },
     {"object.name G", "object.coordinates G", "object.height G", "object.gps-data G"}},
    {kGPSList, "name,hrms,vrms", FILL { AddPosition(set, "G", 0, 0, 0).SetCV({1, 0, 0, 1, 0, 0}); }, {"object.gps-data G"}},
    {kGPSList, "name,hrms,vrms", FILL { AddPosition(set, "G", 0, 0, 0).SetCV({1, 1, 1, 0, 0, 0}); }, {}},
    {kGPSList, "name,north,east,height,code+strings", FILL {
        GiveCode(AddPosition(set, "G", 1, 2, 3), AddCode(job, "T", {CIEAttrDescription("w")}), {"1"}); }, {"object.attributes G"}},
    {kGPSList, "name,north,east,height,notes,codes,solution", FILL {
        CIEGPSPosition& position = AddPosition(set, "a,", 1, 2, 3);
        CIEStation station = *position.GetStation();
        station.SetNotes("b\rc");
        position.SetStation(station);
        GiveCode(position, AddCode(job, "T")).AddCodeString("d,e");
        GiveCode(position, AddCode(job, "U")); }, {"object.name a,", "object.notes a,", "object.codes a,"}},
    {kGPSList, "name,north,east,height,codes", FILL {
        ChangeSettings(job, [](TIESettings& settings) { settings.m_bAttrQuotes = true; });
        CIEGPSPosition& position = AddPosition(set, "\"a,b\"", 1, 2, 3);
        GiveCode(position, AddCode(job, "T")).AddCodeString("d,e");
        GiveCode(position, AddCode(job, "U")); }, {}},
    {kGPSList, "name,north,east,height", FILL { SetGeographic(job); ChangeSettings(job, [](TIESettings& settings) { settings.m_eCoordsStyle = {}; }); },
     {"job.geographic "}},
    {kSheetPoints, "sheet-name,design-north,design-east,design-height,measured-north,measured-east,measured-height,cut,fill",
     FILL { AddSheet(job, "S", CIEStation(1, 2, 3), {Measured(CIEStation(4, 5, 6), {0, 0, 7})}); }, {}},
    {kSheetPoints, "cut", FILL { AddSheet(job, "S", CIEStation(1, 0, 0), {Measured(CIEStation(0, 2, 0), {0, 0, 7, 8})}); },
     {"object.name S", "object.coordinates S", "object.offsets S", "object.offsets S"}},
    {kSheetPoints, "sheet-name,to-grade", FILL { AddSheet(job, "S", {}, {Measured({}, {0, 0, 7})}); }, {}},
    {kSheetPoints, "sheet-name", FILL { AddSheet(job, "S", MakeStation("D", 0, 0, 0), {Measured(MakeStation("M", 0, 0, 0), {})}); }, {"object.name S"}},
    {kSheetPoints, "sheet-name,north", FILL { AddSheet(job, "S", {}, {}); }, {"layout.field ", "object.no-measurement S"}},
    {kSheetPoints, "sheet-name,measured-time", FILL {
        CIEStation stamped;
        stamped.SetTimeStamps("7:00");
        AddSheet(job, "S", stamped, {Measured(stamped, {})}); }, {"object.time-stamps S"}},
    {kSheetPoints, "sheet-name,sheet-codes,measured-name,measured-time", FILL {
        CIEStation measured = MakeStation("M,1", 0, 0, 0);
        measured.SetTimeStamps("7:00\n");
        AddSheet(job, "S,1", {}, {Measured({}, {}), Measured(measured, {})}, AddCode(job, "T,", {CIEAttrDescription("side")}));
        AddSheet(job, "S,2", {}, {}); },
     {"object.name S,1", "object.codes S,1", "object.name S,1", "object.time-stamps S,1", "object.no-measurement S,2"}},
    {kSheetPoints, "sheet-name,design-height", FILL { SetGeographic(job); }, {}},
    {kSheetPoints, "sheet-name,design-north", FILL { SetGeographic(job); ChangeSettings(job, [](TIESettings& settings) { settings.m_eCoordsStyle = {}; }); },
     {"job.geographic "}},
};
#undef FILL
// clang-format on

TEST_F(SurveyListsTest, TellsWhatTheirLayoutsLeaveOut)
{
    for (const auto& row : kTold) {
        auto pJob = MakeJob(row.m_pFields);
        row.m_pFill(*pJob, *pJob->GetDatasetAt(0));
        const CString bytes = Export(std::move(pJob), row.m_nCode);
        EXPECT_EQ(Notes(), row.m_Notes) << row.m_pFields << "\n" << bytes;
    }
}

} // namespace
